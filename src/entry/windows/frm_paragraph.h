// Where the lines of the answer sheet begin (回答の改行位置), and which program of the survey's own is called at which
// of them. All it changes is in the survey at once; a user who closes it has changed the survey in any case. It closes
// by itself when the survey is locked. Session and caller must outlive the window.
#pragma once

#include <QDialog>
#include <memory>

#include "entry/line_layout.h"

namespace Ui {
class FrmParagraph;
}

namespace quibra {

class ExternCaller;
class LineRows;
class SurveySession;

class FrmParagraph : public QDialog {
    Q_OBJECT

  public:
    FrmParagraph(SurveySession& session, ExternCaller& caller, QWidget* parent = nullptr);
    ~FrmParagraph() override;

    void reject() override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void lstLLocate_Click();
    void cmdInsert_Click();
    void cmdRemove_Click();
    void chkExeDLL_Click(bool on);
    void txtDLL_Change(const QString& text);
    void cmdTest_Click();
    void cmdClose_Click();
    void CloseWhenLocked();

    int Row() const;
    void RefreshRows(int row);
    void RefreshDeeds();

    SurveySession& session_;
    ExternCaller& caller_;
    LineLayout layout_;
    std::unique_ptr<Ui::FrmParagraph> ui_;
    LineRows* rows_;
    bool programNamed_ = false;  // by the user, in this window
};

}  // namespace quibra
