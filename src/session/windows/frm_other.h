// Asks for a password.
#pragma once

#include <QDialog>
#include <memory>
#include <optional>

namespace Ui {
class FrmOther;
}

namespace quibra {

class UserInterface;

class FrmOther : public QDialog {
  public:
    FrmOther(UserInterface& ui, QWidget* parent);
    ~FrmOther() override;

    QString Text() const;

  private:
    std::unique_ptr<Ui::FrmOther> controls_;
};

// Has the user enter a password, which may be empty; nothing when they turn away. `parent` may be null.
std::optional<QString> AskPassword(UserInterface& ui, QWidget* parent);
// True when the user enters `expected`; otherwise they are told that it is wrong.
bool VerifyPassword(UserInterface& ui, QWidget* parent, const QString& expected);

}  // namespace quibra
