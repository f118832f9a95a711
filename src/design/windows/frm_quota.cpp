#include "design/windows/frm_quota.h"

#include "core/attempt.h"
#include "core/help_topics.h"
#include "design/survey_properties.h"
#include "ui/form.h"
#include "ui_frm_quota.h"

namespace quibra {

FrmQuota::FrmQuota(SurveySession& session, QWidget* parent)
    : QDialog(parent), session_(session), controls_(std::make_unique<Ui::FrmQuota>()) {
    controls_->setupUi(this);
    SetUpForm(this, session_.ui, kHelpAbout);
    controls_->txtFrom->setText(QString::number(session_.survey.QuotaFirst));
    controls_->txtTo->setText(QString::number(session_.survey.QuotaLast));
    connect(controls_->Do, &QPushButton::clicked, this, &FrmQuota::Do_Click);
    connect(controls_->Cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(controls_->cmdHelpContext, &QPushButton::clicked, this, [this] { session_.ui.HelpContext(kHelpAbout); });
    controls_->txtFrom->setFocus();
    controls_->txtFrom->selectAll();
}

FrmQuota::~FrmQuota() = default;

void FrmQuota::Do_Click() {
    bool taken = false;
    Attempt(session_.ui, [&] {
        taken = SetQuota(session_.survey, session_.ui, controls_->txtFrom->text(), controls_->txtTo->text());
    });
    if (!taken) return;
    session_.WriteSettings();
    accept();
}

}  // namespace quibra
