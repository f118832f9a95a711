// frmTotal: the window in which a total is described and started. There is one; whoever opens it makes it with new, and
// it deletes itself when it is closed. It shows the options of the result window in front and totals in that one, or in
// a new one.
#pragma once

#include <QDialog>
#include <QPointer>
#include <functional>
#include <memory>

#include "tabulation/total_setup.h"
#include "tabulation/windows/frm_grid_base.h"
#include "tabulation/windows/sheet_host.h"

namespace Ui {
class frmTotal;
}

namespace quibra {

class Desk;
class SurveySession;

class FrmTotal : public QDialog, private SheetHost {
    Q_OBJECT
  public:
    // All must outlive the window.
    FrmTotal(SurveySession& session, ResultWindows& windows, Desk& desk, QWidget* parent = nullptr);
    ~FrmTotal() override;

    // Totals in a new result window: 1 a table, any other kind an essay list, as the controls stand.
    void DoTotal(int kind);
    // Turns to the page of tables (1) or of essay lists (2).
    void SetWindow(int kind);
    // Shows the current options, ResultWindows::option.
    void SetTotalOption();
    // True when it is all right to close the window; asks when a condition has been written that no total knows.
    bool MayDiscard();
    // The result window that is totalled in next; made when there is none.
    FrmGridBase& Sheet();

    // The window's channels for texts from outside: commands, of which ".limitread" makes the condition picked last the
    // whole limit and ".error" closes the window; and a page's name.
    void lblCommand_Change(const QString& command);
    QString lblFileName = QStringLiteral("*.qbp");

  public Q_SLOTS:
    void reject() override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void SetSize();
    bool PickLimit(LimitList& list);
    void cmbQno_Click(int q);
    void cmbXQno_Click(int q);
    void lblExLimit_Click(int index);
    void optCross_Click(CrossModeValue mode);
    void lstLimit_Click();
    void cmbEQno_Click(int q);
    void chkRequire_Click();
    void optCon_Click(EssayConditionValue condition);
    void cmdTotal_Click(int index);

    // SheetHost
    void SheetActivated(FrmGridBase& sheet) override;
    void SheetClosed(FrmGridBase& sheet) override;

    void BuildOption(TotalKindValue kind);
    // Does what a control asks, with dialogs where it needs some, and shows what has come of it, a run-time error
    // included.
    void Run(const std::function<void()>& action);
    void TakeOver(FrmGridBase& sheet);
    void ShowLimitTip();
    void Refresh();
    void RefreshTablePage();
    void RefreshEssayPage();

    std::unique_ptr<Ui::frmTotal> ui_;
    SurveySession& session_;
    ResultWindows& windows_;
    Desk& desk_;
    TotalSetup setup_;
    LimitList limitPass_;
    QPointer<FrmGridBase> sheet_;
    // Dialogs that are open or have just been closed, and the result window that came to the front meanwhile. Desktops
    // tend to show another window for a moment then; its options must not take the place of what the user has just set.
    int asking_ = 0;
    QPointer<FrmGridBase> passing_;
    // Whose options the user has refused, or is being asked about.
    QPointer<FrmGridBase> refused_;
};

}  // namespace quibra
