// frmGraph: the chart of the result in front. It has no data of its own: a result window hands it a table whenever
// another question is selected or the menus of charts change. There is one; the program's desk makes it.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <memory>

#include "core/chart_table.h"
#include "tabulation/windows/sheet_host.h"

namespace Ui {
class frmGraph;
}

namespace quibra {

class SurveySession;

class FrmGraph : public QMainWindow, private SheetHost {
    Q_OBJECT
  public:
    // Both must outlive the window.
    FrmGraph(SurveySession& session, ResultWindows& windows, QWidget* parent = nullptr);
    ~FrmGraph() override;

    // A chart from `sheet`, which is asked for the others from then on.
    void ShowTable(FrmGridBase& sheet, const ChartTable& table);

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void mnuCopy_Click();
    void mnuSave_Click();
    void mnuPrint_Click();
    void mnuGraphType_Click(int index);
    void mnuStack_Click();

    // SheetHost
    void SheetActivated(FrmGridBase& sheet) override;
    void SheetClosed(FrmGridBase& sheet) override;

    void Resend();
    void Refresh();

    std::unique_ptr<Ui::frmGraph> ui_;
    SurveySession& session_;
    ResultWindows& windows_;
    QPointer<FrmGridBase> sheet_;
};

}  // namespace quibra
