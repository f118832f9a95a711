#include "entry/windows/frm_answer.h"

#include "core/answer_store.h"
#include "core/help_topics.h"
#include "core/labels.h"
#include "core/settings.h"
#include "entry/sample_words.h"
#include "session/survey_session.h"
#include "ui/form.h"
#include "ui/window_place.h"
#include "ui_frm_answer.h"

using namespace Qt::StringLiterals;

namespace quibra {

FrmAnswer::FrmAnswer(SurveySession& session, QWidget* parent)
    : QDialog(parent), session_(session), ui_(std::make_unique<Ui::FrmAnswer>()) {
    ui_->setupUi(this);
    SetUpForm(this, session_.ui, kHelpAnswer);
    connect(ui_->chkQ, &QCheckBox::toggled, this, &FrmAnswer::Refresh);
    connect(ui_->cmdChangeFromQ, &QPushButton::clicked, this, &FrmAnswer::cmdChangeFromQ_Click);
    connect(ui_->cmdClose, &QPushButton::clicked, this, &QWidget::close);
    WinPosRestore(session_.settings, kPosAnswer, this);
    Refresh();
}

FrmAnswer::~FrmAnswer() = default;

void FrmAnswer::ShowSample(qint32 dno, int endQ) {
    dno_ = dno;
    endQ_ = endQ;
    Refresh();
}

void FrmAnswer::hideEvent(QHideEvent* event) {
    WinPosSave(session_.settings, kPosAnswer, this);
    QDialog::hideEvent(event);
}

void FrmAnswer::cmdChangeFromQ_Click() {
    const Survey& survey = session_.survey;
    QStringList names;
    for (int q = 0; q < survey.QuestionCount; ++q)
        names += QuestionLabel(survey, q, {.number = true, .name = true});
    const int q = session_.ui.QuestionBox(u"どの質問から表示しますか"_s, names, 0);
    if (q < 0) return;
    fromQ_ = q;
    Refresh();
}

void FrmAnswer::Refresh() {
    const Survey& survey = session_.survey;
    ui_->lblFromQ->setText(QuestionName(survey, fromQ_) + u"から"_s);
    const bool shown = dno_ >= 0 && dno_ < survey.SampleCount();
    ui_->lblIDno->setText(shown ? SampleIDText(survey, dno_) : QString());
    ui_->txtAnswer->setPlainText(shown ? SampleWords(survey, dno_, fromQ_, endQ_, ui_->chkQ->isChecked()) : QString());
}

}  // namespace quibra
