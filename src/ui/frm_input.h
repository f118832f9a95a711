// Asks for one line of text.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class FrmInput;
}

namespace quibra {

class UserInterface;

class FrmInput : public QDialog {
  public:
    FrmInput(UserInterface& ui, const QString& title, const QString& name, const QString& range, const QString& caution,
             const QString& text, QWidget* parent);
    ~FrmInput() override;

    QString Text() const;

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void txtInput_GotFocus(Qt::FocusReason reason);

    std::unique_ptr<Ui::FrmInput> controls_;
};

}  // namespace quibra
