// The condition editor: the survey's predefined conditions, or a condition that a caller wants picked (EditLimit).
// The rules are LimitEditor's. The session must outlive the window.
#pragma once

#include <QDialog>
#include <memory>

#include "conditions/limit_editor.h"

namespace Ui {
class FrmLimit;
}

namespace quibra {

class LimitRowDelegate;

class FrmLimit : public QDialog {
    Q_OBJECT

  public:
    // The editor of predefined conditions, shown modelessly. Closing it, by whatever way, brings what the samples
    // remember of these conditions up to date.
    explicit FrmLimit(SurveySession& session, QWidget* parent = nullptr);
    // A picker for `list`, run with exec(): when that gives Accepted, Picked() is the new list.
    FrmLimit(SurveySession& session, const LimitList& list, qint16 mode, QWidget* parent = nullptr);
    ~FrmLimit() override;

    const LimitList& Picked() const { return editor_.LimitPass(); }

    void reject() override;
    // Closes the editor of predefined conditions in favour of another use of them; the survey counts as changed only
    // when they have been.
    void GiveWay();

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    FrmLimit(SurveySession& session, LimitEditor editor, QWidget* parent);

    void lstQno_Click(int row);
    void lstCno_Click(int row);
    void lstCno_DblClick();
    void cmbRank_Click(int row);
    void cmdWrite_Click(int kind);
    void lstLimit_Click(int row);
    void cmdDelete_Click();
    void cmdClear_Click();
    void lstPreLimit_Click();
    void lstPreEdit_Click(int row);
    void cmdClose_Click();

    void RefreshChoosers();
    void RefreshLines();
    void RefreshInsertionPoint();
    void RefreshPreLimits();

    SurveySession& session_;
    LimitEditor editor_;
    bool givesWay_ = false;
    std::unique_ptr<Ui::FrmLimit> ui_;
    LimitRowDelegate* lineRows_;
    int shownQuestion_ = -1;  // whose choices fill lstCno
};

}  // namespace quibra
