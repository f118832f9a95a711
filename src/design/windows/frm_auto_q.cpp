#include "design/windows/frm_auto_q.h"

#include <QScopeGuard>

#include "core/help_topics.h"
#include "core/user_interface.h"
#include "ui/form.h"
#include "ui_frm_auto_q.h"

namespace quibra {

FrmAutoQ::FrmAutoQ(UserInterface& ui, Add add, QWidget* parent)
    : QDialog(parent), user_(ui), add_(std::move(add)), controls_(std::make_unique<Ui::FrmAutoQ>()) {
    controls_->setupUi(this);
    SetUpForm(this, ui, kHelpQuestion);
    connect(controls_->cmdDo, &QPushButton::clicked, this, &FrmAutoQ::cmdDo_Click);
    connect(controls_->cmdCancel, &QPushButton::clicked, this, &FrmAutoQ::reject);
    connect(controls_->cmdHelpContext, &QPushButton::clicked, this, [this] { user_.HelpContext(kHelpQuestion); });
    controls_->txtData->setFocus();
}

FrmAutoQ::~FrmAutoQ() = default;

void FrmAutoQ::reject() {
    if (!adding_) return QDialog::reject();
    stopped_ = true;
    controls_->cmdCancel->setEnabled(false);
}

void FrmAutoQ::cmdDo_Click() {
    adding_ = true;
    controls_->txtData->setEnabled(false);
    controls_->cmdDo->setEnabled(false);
    const auto leave = qScopeGuard([this] {
        adding_ = false;
        done(stopped_ ? Rejected : Accepted);
    });
    add_(controls_->txtData->toPlainText(), [this] {
        user_.LetEventsRun();
        return !stopped_;
    });
}

}  // namespace quibra
