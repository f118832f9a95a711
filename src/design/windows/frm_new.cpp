#include "design/windows/frm_new.h"

#include "core/help_topics.h"
#include "ui/form.h"
#include "ui_frm_new.h"

using namespace Qt::StringLiterals;

namespace quibra {

FrmNew::FrmNew(SurveySession& session, NewSurveyWindows& windows, QWidget* parent)
    : QDialog(parent), session_(session), steps_(session, windows), controls_(std::make_unique<Ui::FrmNew>()) {
    controls_->setupUi(this);
    SetUpForm(this, session_.ui, kHelpNew);
    QFont title = font();
    title.setBold(true);
    title.setPointSizeF(title.pointSizeF() * 1.3);
    controls_->lblTitle->setFont(title);
    controls_->lblBaseName->setText(steps_.BaseName());
    controls_->optUse->setEnabled(steps_.CanUseBase());
    controls_->lblUse->setEnabled(steps_.CanUseBase());
    RefreshStep();
    connect(controls_->cmdNext_0, &QPushButton::clicked, this, [this] { cmdNext_Click(false); });
    connect(controls_->cmdNext_1, &QPushButton::clicked, this, [this] { cmdNext_Click(true); });
    connect(controls_->optUse, &QRadioButton::toggled, this, [this](bool on) { steps_.SetUsesBase(on); });
    connect(controls_->Cancel, &QPushButton::clicked, this, &FrmNew::reject);
    for (QPushButton* button : {controls_->cmdOverView, controls_->cmdHelpContext})
        connect(button, &QPushButton::clicked, this, [this] { session_.ui.HelpContext(kHelpNew); });
    controls_->cmdNext_0->setFocus();
    const int em = fontMetrics().horizontalAdvance(u'あ');
    resize(sizeHint().expandedTo({52 * em, 24 * em}));
}

FrmNew::~FrmNew() = default;

void FrmNew::reject() {
    steps_.Cancel();
    if (steps_.IsClosed()) done(Rejected);
}

void FrmNew::cmdNext_Click(bool back) {
    back ? steps_.Back() : steps_.Next();
    if (steps_.IsClosed()) return done(Accepted);
    RefreshStep();
    controls_->cmdNext_0->setFocus();
}

void FrmNew::RefreshStep() {
    const NewSurveySteps::Panel panel = steps_.CurrentPanel();
    controls_->lblTitle->setText(panel.title);
    controls_->lblTitle->setVisible(!panel.title.isEmpty());
    controls_->lblTaskTitle->setText(panel.task);
    controls_->lblChangeOK->setText(panel.remark);
    controls_->fraBase->setVisible(steps_.Current() == NewSurveySteps::kBase);
    controls_->cmdNext_1->setEnabled(steps_.CanGoBack());
    static const QStringList kStepNames{u"はじめに"_s,     u"元になるアンケート"_s, u"タイトルと制作者名"_s,
                                        u"質問・選択肢"_s, u"行あたり回答数"_s,     u"割り当てID"_s,
                                        u"保存"_s};
    QStringList way;
    for (qsizetype i = 0; i < kStepNames.size(); ++i)
        way += (i == steps_.Current() ? u"▶ "_s : i < steps_.Current() ? u"✓ "_s : u"　 "_s) + kStepNames[i];
    controls_->pctWizard->setText(way.join(u'\n'));
}

}  // namespace quibra
