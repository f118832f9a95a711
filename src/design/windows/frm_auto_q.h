// 一括入力: a list that becomes choices, one a line. Modal.
#pragma once

#include <QDialog>
#include <functional>
#include <memory>

namespace Ui {
class FrmAutoQ;
}

namespace quibra {

class UserInterface;

class FrmAutoQ : public QDialog {
    Q_OBJECT
  public:
    // Makes choices of the text's lines; calls the function behind each, false stops.
    using Add = std::function<void(const QString& text, const std::function<bool()>& goOn)>;
    FrmAutoQ(UserInterface& ui, Add add, QWidget* parent = nullptr);
    ~FrmAutoQ() override;

    // While lines are added: stops that.
    void reject() override;

  private:
    void cmdDo_Click();

    UserInterface& user_;
    Add add_;
    std::unique_ptr<Ui::FrmAutoQ> controls_;
    bool adding_ = false;
    bool stopped_ = false;
};

}  // namespace quibra
