// A line for a password: small letters only. Capitals become small ones; anything else, typed or pasted, is
// refused with a message.
#pragma once

#include <QLineEdit>

namespace quibra {

class UserInterface;

class PasswordBox : public QLineEdit {
    Q_OBJECT
  public:
    explicit PasswordBox(QWidget* parent = nullptr);

    // Who is told of a wrong key, and in which words. `ui` must outlive the box.
    void SetRefusal(UserInterface& ui, const QString& message);

    // Room for the longest password.
    QSize sizeHint() const override;

  Q_SIGNALS:
    void EnterPressed();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void KeepLetters();

    UserInterface* ui_ = nullptr;
    QString refusal_;
};

}  // namespace quibra
