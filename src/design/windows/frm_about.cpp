#include "design/windows/frm_about.h"

#include <QScopeGuard>

#include "core/help_topics.h"
#include "design/survey_properties.h"
#include "ui/form.h"
#include "ui_frm_about.h"

using namespace Qt::StringLiterals;

namespace quibra {

FrmAbout::FrmAbout(SurveySession& session, QWidget* parent)
    : QDialog(parent), session_(session), controls_(std::make_unique<Ui::FrmAbout>()) {
    controls_->setupUi(this);
    SetUpForm(this, session_.ui, kHelpAbout);
    const AboutTexts texts = AboutOf(session_.survey);
    controls_->txtTitle->setText(texts.title);
    controls_->txtEditer->setText(texts.editor);
    controls_->lblFileName->setText(texts.fileName);
    controls_->lblUseD->setText(u"使用量 "_s + texts.usedBytes);
    controls_->lblShare->setText(u"1サンプルに必要な容量 "_s + texts.sampleBytes);
    controls_->lblrpnum->setText(u"サンプル数 "_s + texts.samples);
    controls_->lblQuotaFrom->setText(texts.quotaFirst);
    controls_->lblQuotaTo->setText(texts.quotaLast);
    controls_->lblQuotaNow->setText(u"最後に発行したＩＤ "_s + texts.quotaUsed);
    RefreshButtons();
    connect(controls_->cmdDo, &QPushButton::clicked, this, &FrmAbout::cmdDo_Click);
    connect(controls_->cmdDoCancel, &QPushButton::clicked, this, &FrmAbout::reject);
    connect(controls_->cmdClose, &QPushButton::clicked, this, &FrmAbout::cmdClose_Click);
    connect(controls_->cmdCancel, &QPushButton::clicked, this, &FrmAbout::reject);
    connect(controls_->cmdHelpContext, &QPushButton::clicked, this, [this] { session_.ui.HelpContext(kHelpAbout); });
    controls_->txtTitle->setFocus();
    resize(sizeHint().expandedTo({44 * fontMetrics().horizontalAdvance(u'あ'), 0}));
}

FrmAbout::~FrmAbout() = default;

void FrmAbout::reject() {
    if (!run_) return QDialog::reject();
    run_->Cancel();
}

void FrmAbout::cmdDo_Click() {
    MeasureRun run(session_.survey, session_.ui, [this](const MeasureRun& now) { ShowFigures(now); });
    run_ = &run;
    RefreshButtons();
    const auto ended = qScopeGuard([this] {
        run_ = nullptr;
        RefreshButtons();
    });
    run.Run();
}

void FrmAbout::cmdClose_Click() {
    SetTitleAndEditor(session_, controls_->txtTitle->text(), controls_->txtEditer->text());
    accept();
}

void FrmAbout::ShowFigures(const MeasureRun& run) {
    controls_->lblAnswer->setText(run.AnswerText());
    controls_->lblEssay->setText(run.EssayText());
    controls_->lblDiffiSym_0->setText(QString::number(run.Figures().dotted));
    controls_->lblDiffiSym_1->setText(QString::number(run.Figures().letters));
    controls_->lblDiffiSym_2->setText(QString::number(run.Figures().kana));
}

void FrmAbout::RefreshButtons() {
    for (QPushButton* button : {controls_->cmdDo, controls_->cmdClose, controls_->cmdCancel})
        button->setEnabled(!run_);
    controls_->cmdDoCancel->setEnabled(run_);
}

}  // namespace quibra
