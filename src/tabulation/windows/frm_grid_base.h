// frmGridBase: the window of one result, a table or an essay list. Made by ResultWindows::New.
#pragma once

#include <QElapsedTimer>
#include <QMainWindow>
#include <functional>
#include <memory>

#include "tabulation/chart_data.h"
#include "tabulation/total_sheet.h"
#include "ui/form.h"

namespace Ui {
class frmGridBase;
}

namespace quibra {

class Desk;
class ResultGridModel;
class ResultWindows;
class SurveySession;

class FrmGridBase : public QMainWindow, private TotalMonitor {
    Q_OBJECT
  public:
    // All must outlive the window.
    FrmGridBase(SurveySession& session, ResultWindows& windows, Desk& desk);
    ~FrmGridBase() override;

    // Shows the window and totals by the current options (ResultWindows::option), from the first sample on; returns
    // when that is done.
    void DoTotal();

    // While this is off the window can come to the front without handing its options back. Whoever lets a window total
    // that is not shown yet turns it off for the time.
    void SetActivationCounts(bool on);

    const TotalSheet& Sheet() const { return sheet_; }

    // Takes options, conditions and view of a page file and totals by them.
    void PageLoad(const QString& path);
    // The chart of the selected cell anew, even if it is drawn already.
    void ResendGraphData();

  protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void mnuRefQno_Click();
    void mnuCopy_Click();
    void mnuTextSave_Click();
    void mnuHTMLSave_Click();
    void mnuPercent_Click(int index);
    void mnuFontChange_Click();
    void cmdNext_Click();
    void cmdCancel_Click();
    void Grid_CurrentCellChange();

    // TotalMonitor
    void Started() override;
    void ShowPass(int q, int toQno, int L, int limitCount) override;
    void ShowPercent(qint32 done, qint32 of) override;
    void LetEventsRun() override;
    bool Cancelled() const override;
    void Finished() override;

    void TotalFrom(qint32 dno);
    void RunTotal();
    void TellWritten(const QString& path, const QString& fault);
    void TotalAgain();
    void RefreshLocked();
    void SetKindMenus(bool essayList);
    void SetIdle(bool idle);
    void WaitUntilDrawn();
    void RefreshProgress();

    // In frm_grid_base_tools.cpp.
    void ConnectTools();
    void CopySelection();
    QString WriteResult(const QString& path, const std::function<QByteArray()>& bytes);
    void RunTool(const std::function<void()>& tool);
    // In an essay list, the person whose number is selected comes up in words.
    void ShowPersonOfRow();
    void SendChart();
    void ShowView(const TotalView& view);
    void mnuEssayTotal_Click();
    void mnuSearchLetter_Click();
    void mnuSearchNumber_Click();
    void mnuGoEssay_Click();
    void mnuGraphOrder_Click();
    void mnuPageLoad_Click();
    void mnuPageSave_Click();
    void mnuPrint_Click();

    std::unique_ptr<Ui::frmGridBase> ui_;
    SurveySession& session_;
    ResultWindows& windows_;
    Desk& desk_;
    TotalSheet sheet_;
    ResultGridModel* model_;
    FormPause pause_;
    bool totals_ = false;  // a total runs
    bool cancelled_ = false;
    QStringList searchWords_;  // of the last word search
    LastChart lastChart_;
    qint32 shownFromDno_ = 0;  // where the list now shown starts

    // What a running total has told last, shown when the clock says so.
    std::function<QString()> pass_;
    qint32 done_ = 0;  // samples walked, of how many
    qint32 of_ = 0;
    QElapsedTimer running_;
    int calls_ = 0;  // of LetEventsRun since the clock was looked at
    int callsBetweenLooks_ = 1;
    qint64 lastLook_ = 0;  // nanoseconds of running_
    qint64 lastTurn_ = 0;
};

}  // namespace quibra
