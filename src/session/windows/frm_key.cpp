#include "session/windows/frm_key.h"

#include <QApplication>
#include <QButtonGroup>

#include "core/help_topics.h"
#include "session/main_commands.h"
#include "session/password.h"
#include "session/windows/frm_other.h"
#include "ui/form.h"
#include "ui_frm_key.h"

using namespace Qt::StringLiterals;

namespace quibra {

FrmKey::FrmKey(SurveySession& session, QWidget* parent)
    : QDialog(parent), session_(session), controls_(std::make_unique<Ui::FrmKey>()), levels_(new QButtonGroup(this)) {
    controls_->setupUi(this);
    SetUpForm(this, session.ui, kHelpLock, FormKind::Lasting);
    controls_->Word->SetRefusal(session.ui, u"パスワードはすべて半角英６文字です"_s);
    controls_->NewWord->SetRefusal(session.ui, u"パスワードはすべて半角英文字です"_s);
    levels_->addButton(controls_->LV_0, 0);
    levels_->addButton(controls_->LV_1, 1);
    levels_->addButton(controls_->LV_2, 2);

    // Also where a screen reader sets the button without a click.
    connect(levels_, &QButtonGroup::idToggled, this, [this](int index, bool on) {
        if (on && index != session_.survey.LockLevel) LV_Click(index);
    });
    connect(controls_->Lock, &QPushButton::clicked, this, &FrmKey::Lock_Click);
    connect(controls_->Word, &PasswordBox::EnterPressed, this, &FrmKey::Unlock_Click);
    connect(controls_->Unlock, &QPushButton::clicked, this, &FrmKey::Unlock_Click);
    connect(controls_->NewWord, &PasswordBox::EnterPressed, this, &FrmKey::ChangeKey_Click);
    connect(controls_->ChangeKey, &QPushButton::clicked, this, &FrmKey::ChangeKey_Click);
    connect(controls_->Close, &QPushButton::clicked, this, &QDialog::close);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { RefreshDefault(now); });
    connect(&session_, &SurveySession::StateChanged, this, [this](SurveySession::Changes what) {
        if (what & (SurveySession::Change::Lock | SurveySession::Change::File)) RefreshLook();
    });
    RefreshLook();
    FocusFirst();
    WinCenter(this);
}

FrmKey::~FrmKey() {
    // What remains of a shown window still moves the focus, and must not be told so any more.
    qApp->disconnect(this);
}

void FrmKey::LV_Click(int index) {
    SetLockLevel(session_, index);
}

void FrmKey::Lock_Click() {
    // A locked survey can't be saved: the time for that is now.
    if (AskToSaveChanges(session_)) session_.Lock();
    FocusFirst();
}

void FrmKey::Unlock_Click() {
    UnlockWith(session_, controls_->Word->text());
    controls_->Word->clear();
    FocusFirst();
}

void FrmKey::ChangeKey_Click() {
    const QString word = controls_->NewWord->text();
    ChangePassword(session_, word, [this] { return AskPassword(session_.ui, this); });
    if (word.size() <= kMaxPasswordLength) controls_->NewWord->clear();
}

// The other look hides what had the focus.
void FrmKey::FocusFirst() {
    QAbstractButton* level = levels_->checkedButton();
    if (!session_.menu.unlocked)
        controls_->Word->setFocus();
    else if (level)
        level->setFocus();
}

// The button that stands out is the one that Enter presses.
void FrmKey::RefreshDefault(const QWidget* focus) {
    if (focus == controls_->Word)
        controls_->Unlock->setDefault(true);
    else if (focus == controls_->NewWord)
        controls_->ChangeKey->setDefault(true);
    else if (qobject_cast<const QRadioButton*>(focus))
        controls_->Lock->setDefault(true);
}

void FrmKey::RefreshLook() {
    const bool unlocked = session_.menu.unlocked;
    controls_->LockF->setVisible(unlocked);
    controls_->ChangeF->setVisible(unlocked);
    controls_->UnlockF->setVisible(!unlocked);
    if (QAbstractButton* level = levels_->button(session_.survey.LockLevel)) level->setChecked(true);
    adjustSize();
}

}  // namespace quibra
