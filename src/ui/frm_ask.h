// A question with two named answers and Cancel.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class FrmAsk;
}

namespace quibra {

class UserInterface;

class FrmAsk : public QDialog {
  public:
    FrmAsk(UserInterface& ui, const QString& info1, const QString& info2, const QString& func1, const QString& func2,
           QWidget* parent);
    ~FrmAsk() override;

    // Modal; 1 or 2 for the two answers, 0 for Cancel.
    int Ask();

  private:
    std::unique_ptr<Ui::FrmAsk> controls_;
};

}  // namespace quibra
