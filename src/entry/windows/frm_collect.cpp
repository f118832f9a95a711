#include "entry/windows/frm_collect.h"

#include "core/help_topics.h"
#include "core/user_interface.h"
#include "entry/answer_check.h"
#include "ui/form.h"
#include "ui_frm_collect.h"

namespace quibra {

FrmCollect::FrmCollect(UserInterface& ui, qint16 flags, QWidget* parent)
    : QDialog(parent), controls_(std::make_unique<Ui::FrmCollect>()) {
    controls_->setupUi(this);
    SetUpForm(this, ui, kHelpCollect);
    choices_ = {Choice{kOtherForNoChoice, controls_->optNoChoice_0, controls_->optNoChoice_1},
                {kOtherForNoEssay, controls_->optNoEssay_0, controls_->optNoEssay_1},
                {kDropExclusive, controls_->optExcuse_0, controls_->optExcuse_1},
                {kClearUnlimited, controls_->optQLimit_0, controls_->optQLimit_1}};
    others_ = flags;
    for (const Choice& choice : choices_) {
        (flags & choice.flag ? choice.set : choice.clear)->setChecked(true);
        others_ = static_cast<qint16>(others_ & ~choice.flag);
    }
    // Two lines; a layout would give it the height of as wide a line as it can get.
    QLabel* note = controls_->lblNote4;
    note->setMinimumWidth(note->fontMetrics().horizontalAdvance(note->text()) / 2 + note->fontMetrics().maxWidth());
    note->setMinimumHeight(note->heightForWidth(note->minimumWidth()));
    connect(controls_->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(controls_->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(controls_->cmdHelpContext, &QPushButton::clicked, this, [&ui] { ui.HelpContext(kHelpCollect); });
}

FrmCollect::~FrmCollect() = default;

qint16 FrmCollect::CorrectFlags() const {
    int flags = others_;
    for (const Choice& choice : choices_)
        if (choice.set->isChecked()) flags |= choice.flag;
    return static_cast<qint16>(flags);
}

bool EditCorrectFlags(UserInterface& ui, QWidget* parent, qint16& flags) {
    FrmCollect window(ui, flags, parent);
    if (window.exec() != QDialog::Accepted) return false;
    flags = window.CorrectFlags();
    return true;
}

}  // namespace quibra
