#include "session/windows/frm_other.h"

#include "core/help_topics.h"
#include "core/user_interface.h"
#include "ui/form.h"
#include "ui_frm_other.h"

using namespace Qt::StringLiterals;

namespace quibra {

FrmOther::FrmOther(UserInterface& ui, QWidget* parent) : QDialog(parent), controls_(std::make_unique<Ui::FrmOther>()) {
    controls_->setupUi(this);
    SetUpForm(this, ui, kHelpLock, FormKind::Lasting);
    controls_->Text->SetRefusal(ui, u"助言を参照せよ"_s);
    connect(controls_->Text, &PasswordBox::EnterPressed, controls_->OK, &QPushButton::click);
    connect(controls_->OK, &QPushButton::clicked, this, &QDialog::accept);
}

FrmOther::~FrmOther() = default;

QString FrmOther::Text() const {
    return controls_->Text->text();
}

std::optional<QString> AskPassword(UserInterface& ui, QWidget* parent) {
    FrmOther window(ui, parent);
    if (window.exec() != QDialog::Accepted) return std::nullopt;
    return window.Text();
}

bool VerifyPassword(UserInterface& ui, QWidget* parent, const QString& expected) {
    if (AskPassword(ui, parent) == expected) return true;
    ui.Message(u"パスワードが正しくありません"_s, kOkOnly);
    return false;
}

}  // namespace quibra
