#include "session/windows/password_box.h"

#include <QKeyEvent>

#include "core/user_interface.h"
#include "session/password.h"

namespace quibra {

PasswordBox::PasswordBox(QWidget* parent) : QLineEdit(parent) {
    setEchoMode(QLineEdit::Password);
    setInputMethodHints(Qt::ImhHiddenText | Qt::ImhNoAutoUppercase | Qt::ImhLatinOnly);
    connect(this, &QLineEdit::textEdited, this, &PasswordBox::KeepLetters);
}

void PasswordBox::SetRefusal(UserInterface& ui, const QString& message) {
    ui_ = &ui;
    refusal_ = message;
}

QSize PasswordBox::sizeHint() const {
    return {fontMetrics().averageCharWidth() * (kMaxPasswordLength + 2), QLineEdit::sizeHint().height()};
}

// Enter is swallowed here, so that it starts what the box is for and never a default button.
void PasswordBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->accept();
        Q_EMIT EnterPressed();
        return;
    }
    const QString typed = event->text();
    const bool isCharacter = typed.size() == 1 && typed[0].isPrint();
    if (isCharacter && !PasswordLetter(typed[0])) {
        event->accept();
        if (ui_) ui_->Message(refusal_, kOkOnly);
        return;
    }
    QLineEdit::keyPressEvent(event);
}

// Typed capitals, and what comes from the clipboard or an input method.
void PasswordBox::KeepLetters() {
    const QString entered = text();
    const QString kept = PasswordLetters(entered);
    if (kept == entered) return;
    const QString before = PasswordLetters(entered.left(cursorPosition()));
    setText(kept);
    setCursorPosition(static_cast<int>(before.size()));
    if (kept.size() < entered.size() && ui_) ui_->Message(refusal_, kOkOnly);
}

}  // namespace quibra
