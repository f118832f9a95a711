// 質問と選択肢の設定: the window over DefinitionEditor. Modal; the windows that show the definition are closed before.
#pragma once

#include <QDialog>
#include <memory>

#include "design/definition_editor.h"

class QCheckBox;
class QLineEdit;
class QListWidget;
class QRadioButton;

namespace Ui {
class FrmQuestion;
}

namespace quibra {

class Desk;

class FrmQuestion : public QDialog, private DefinitionWindows {
    Q_OBJECT
  public:
    // Session and desk must outlive the window.
    FrmQuestion(SurveySession& session, Desk& desk, QWidget* parent = nullptr);
    ~FrmQuestion() override;

    void reject() override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void lstQno_Click(int row);
    void lstCno_Click(int row);
    void InsertQuestion_Click();
    void cmdQAnum_Click();
    void cmdAuto_Click();
    void chkStatus_Click(int index, bool on);
    void cmdDo_Click();

    // Keeps what stands in the boxes, does `edit` to the survey, and shows everything anew; errors are told.
    void Edit(const std::function<void()>& edit);
    void StoreTexts();
    // Enter in one of the boxes, the question's three and the choice's.
    void GoOnFrom(const QLineEdit* box);
    void GoToQuestion(int row);
    bool PasteCells();
    bool MayGoOn();

    void RefreshAll();
    void RefreshQuestion();
    void RefreshChoice();

    // DefinitionWindows
    bool ChooseCorrection() override;
    LimitList EditLimit(const LimitList& list) override;
    void ShowProgress(const QString& caption) override;

    SurveySession& session_;
    Desk& desk_;
    DefinitionEditor editor_;
    std::unique_ptr<Ui::FrmQuestion> ui_;
    std::array<QLineEdit*, 3> texts_;
    std::array<QCheckBox*, 6> status_;
    std::array<QRadioButton*, 4> kinds_;
};

}  // namespace quibra
