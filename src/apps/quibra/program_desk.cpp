#include "apps/quibra/program_desk.h"

#include <QEventLoop>

#include "apps/quibra/frm_title.h"
#include "conditions/windows/frm_limit.h"
#include "core/attempt.h"
#include "design/windows/frm_about.h"
#include "design/windows/frm_new.h"
#include "design/windows/frm_question.h"
#include "design/windows/frm_quota.h"
#include "design/windows/frm_table.h"
#include "entry/windows/frm_add_data.h"
#include "entry/windows/frm_answer.h"
#include "entry/windows/frm_collect.h"
#include "entry/windows/frm_paragraph.h"
#include "session/survey_session.h"
#include "session/windows/frm_key.h"
#include "session/windows/frm_other.h"
#include "tabulation/windows/frm_graph.h"
#include "tabulation/windows/frm_grid_base.h"
#include "tabulation/windows/frm_total.h"
#include "ui/form.h"

using namespace Qt::StringLiterals;

namespace quibra {

ProgramDesk::ProgramDesk(SurveySession& session, QWidget& main)
    : session_(session), main_(main), caller_(session.ui, ExternConsentPath()), results_(session, *this) {
    QObject::connect(&session_, &SurveySession::StateChanged, &main_, [this] { CloseForbidden(); });
}

ProgramDesk::~ProgramDesk() {
    // They listen to the result windows, which go before the main window takes its children.
    delete total_;
    delete graph_;
}

void ProgramDesk::ShowNewSurvey() {
    if (total_ && !total_->MayDiscard()) return;
    FrmNew wizard(session_, *this, &main_);
    newSurvey_ = &wizard;
    wizard.exec();
}

void ProgramDesk::CloseOthers() {
    CloseSlotEditor();
    WindowsCloseAll(newSurvey_);
}

// In front of the wizard, where that has asked for it.
void ProgramDesk::ShowQuestions() {
    if (!CloseShowingDefinition(newSurvey_)) return;
    // A question whose condition leads back to it has no depth, which its list shows.
    Attempt(session_.ui, [this] { FrmQuestion(session_, *this, Front()).exec(); });
}

QWidget* ProgramDesk::Front() const {
    return newSurvey_ ? static_cast<QWidget*>(newSurvey_) : &main_;
}

void ProgramDesk::ShowAbout() {
    FrmAbout(session_, Front()).exec();
}

void ProgramDesk::ShowQuota() {
    FrmQuota(session_, Front()).exec();
}

void ProgramDesk::ShowTable() {
    if (!table_) {
        table_ = new FrmTable(session_, &main_);
        table_->setAttribute(Qt::WA_DeleteOnClose);
    }
    table_->show();
    table_->raise();
    table_->activateWindow();
}

void ProgramDesk::ShowCollect() {
    qint16 flags = session_.survey.CorrectFlags;
    if (!EditCorrectFlags(session_.ui, &main_, flags) || flags == session_.survey.CorrectFlags) return;
    session_.survey.CorrectFlags = flags;
    session_.ChangedOn();
}

void ProgramDesk::ShowLines() {
    if (!lines_) {
        caller_.SetWindow(static_cast<qint32>(main_.winId()));
        lines_ = new FrmParagraph(session_, caller_, Front());
        lines_->setAttribute(Qt::WA_DeleteOnClose);
        if (newSurvey_) lines_->setWindowModality(Qt::ApplicationModal);
    }
    lines_->show();
    lines_->activateWindow();
    if (!newSurvey_) return;
    // The next step of the wizard waits for it.
    QEventLoop loop;
    QObject::connect(lines_, &QObject::destroyed, &loop, &QEventLoop::quit);
    loop.exec();
}

// A window stands open only while the lock leaves its command on.
void ProgramDesk::CloseForbidden() {
    if (!session_.menu.mnuSetLimit) CloseSlotEditor();
    if (table_ && !session_.menu.mnuQuestions) table_->close();
    if (session_.menu.mnuStatis) return;
    if (answer_) answer_->close();
    if (total_) total_->close();
    if (graph_) graph_->close();
    for (FrmGridBase* sheet : results_.All())
        sheet->close();
}

void ProgramDesk::ShowSlotEditor() {
    if (total_ && !total_->MayDiscard()) return;
    CloseSlotEditor();
    CloseAll();
    // A question whose condition leads back to it has no depth, which its list shows.
    Attempt(session_.ui, [this] {
        slotEditor_ = new FrmLimit(session_, &main_);
        slotEditor_->setAttribute(Qt::WA_DeleteOnClose);
        slotEditor_->show();
    });
}

FrmTotal& ProgramDesk::Total() {
    if (!total_) total_ = new FrmTotal(session_, results_, *this, &main_);
    total_->show();
    return *total_;
}

FrmGraph& ProgramDesk::Graph() {
    if (!graph_) graph_ = new FrmGraph(session_, results_, &main_);
    graph_->show();
    return *graph_;
}

void ProgramDesk::ShowTotal() {
    Total().SetWindow(kTable);
    Graph();
    total_->raise();
    total_->activateWindow();
}

void ProgramDesk::TotalAnew() {
    Total().SetTotalOption();
    total_->DoTotal(results_.option.TotalKind);
}

void ProgramDesk::ShowLock() {
    if (entry_ && !entry_->close()) return;
    // What can change the survey gives way before it may be locked.
    CloseSlotEditor();
    FrmKey(session_, &main_).exec();
}

void ProgramDesk::ShowTitle() {
    FrmTitle(session_.ui, TitleUse::About, &main_).exec();
}

void ProgramDesk::TellAbsent() {
    session_.ui.Message(u"この画面はまだありません。"_s, kInformation);
}

void ProgramDesk::PageOpen(const QString& path) {
    FrmTotal& total = Total();
    // A survey whose totals are locked shows none of its pages either.
    if (session_.menu.mnuKey && !session_.menu.mnuStatis &&
        !VerifyPassword(session_.ui, &main_, session_.survey.Password)) {
        total.close();
        return;
    }
    FrmGridBase& sheet = total.Sheet();
    sheet.SetActivationCounts(false);
    const QPointer<FrmGridBase> shown = &sheet;
    sheet.PageLoad(path);
    if (shown) shown->SetActivationCounts(true);
    if (total_) total_->SetTotalOption();
}

void ProgramDesk::CloseAll() {
    WindowsCloseAll(nullptr);
}

void ProgramDesk::ShowSearch() {
    TellAbsent();
}

void ProgramDesk::ShowEntry() {
    if (!entry_) {
        entry_ = new FrmAddData(session_, caller_, *this, &main_);
        entry_->setAttribute(Qt::WA_DeleteOnClose);
    }
    entry_->show();
    entry_->activateWindow();
}

void ProgramDesk::ShowImport() {}

void ProgramDesk::ShowSample(qint32 dno, int endQno) {
    if (!answer_) {
        answer_ = new FrmAnswer(session_, &main_);
        answer_->setAttribute(Qt::WA_DeleteOnClose);
        answer_->setAttribute(Qt::WA_ShowWithoutActivating);  // whoever goes from row to row stays there
    }
    answer_->ShowSample(dno, endQno);
    answer_->show();
}

bool ProgramDesk::IsSampleShown() const {
    return answer_ && answer_->isVisible();
}

void ProgramDesk::ShowChart() {
    Graph().raise();
    graph_->activateWindow();
}

void ProgramDesk::ShowBatchAdd(std::vector<qint32>) {
    TellAbsent();
}

void ProgramDesk::ShowExport(std::vector<qint32>) {
    TellAbsent();
}

void ProgramDesk::CloseSlotEditor() {
    if (slotEditor_ && slotEditor_->isVisible()) slotEditor_->GiveWay();
}

bool ProgramDesk::CloseShowingDefinition(const QWidget* editor) {
    if (total_ && !total_->MayDiscard()) return false;
    CloseSlotEditor();
    WindowsCloseAll(editor);
    return true;
}

}  // namespace quibra
