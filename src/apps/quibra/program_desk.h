// The windows of the program: makes them, knows which are open, and lets each ask for the others. Owned by the main
// window, which is their parent.
#pragma once

#include <QPointer>

#include "design/new_survey_steps.h"
#include "entry/plugin_caller.h"
#include "tabulation/windows/sheet_host.h"
#include "ui/desk.h"

namespace quibra {

class FrmAddData;
class FrmAnswer;
class FrmGraph;
class FrmLimit;
class FrmNew;
class FrmParagraph;
class FrmTable;
class FrmTotal;
class SurveySession;

class ProgramDesk : public Desk, public NewSurveyWindows {
  public:
    // Both must outlive it.
    ProgramDesk(SurveySession& session, QWidget& main);
    ~ProgramDesk() override;

    // What the menu items of the main window open; window_table.h names the item of each.
    void ShowNewSurvey();
    void ShowTable();
    void ShowCollect();
    void ShowSlotEditor();
    void ShowTotal();
    void ShowLock();
    void ShowTitle();
    // For all whose windows don't exist yet.
    void TellAbsent();

    void PageOpen(const QString& path);
    // Closes all windows but the lasting ones; see FormKind.
    void CloseAll();

    // Desk
    void ShowSearch() override;
    void ShowEntry() override;
    void ShowImport() override;
    void ShowSample(qint32 dno, int endQno) override;
    bool IsSampleShown() const override;
    void TotalAnew() override;
    void ShowChart() override;
    void ShowBatchAdd(std::vector<qint32> places) override;
    void ShowExport(std::vector<qint32> places) override;
    void CloseSlotEditor() override;
    bool CloseShowingDefinition(const QWidget* editor) override;

    // NewSurveyWindows, and menu items of their own
    void CloseOthers() override;
    void ShowAbout() override;
    void ShowQuestions() override;
    void ShowLines() override;
    void ShowQuota() override;

  private:
    FrmTotal& Total();
    QWidget* Front() const;
    void CloseForbidden();
    FrmGraph& Graph();

    SurveySession& session_;
    QWidget& main_;
    PluginCaller caller_;
    ResultWindows results_;
    QPointer<FrmTotal> total_;
    QPointer<FrmTable> table_;
    QPointer<FrmNew> newSurvey_;
    QPointer<FrmGraph> graph_;
    QPointer<FrmLimit> slotEditor_;
    QPointer<FrmParagraph> lines_;
    QPointer<FrmAddData> entry_;
    QPointer<FrmAnswer> answer_;
};

}  // namespace quibra
