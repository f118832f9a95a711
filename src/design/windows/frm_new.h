// 新しいアンケートを作る: leads through the making of a survey. Modal; shows NewSurveySteps.
#pragma once

#include <QDialog>
#include <memory>

#include "design/new_survey_steps.h"

namespace Ui {
class FrmNew;
}

namespace quibra {

class FrmNew : public QDialog {
    Q_OBJECT
  public:
    // Both must outlive the window.
    FrmNew(SurveySession& session, NewSurveyWindows& windows, QWidget* parent = nullptr);
    ~FrmNew() override;

    void reject() override;

  private:
    void cmdNext_Click(bool back);
    void RefreshStep();

    SurveySession& session_;
    NewSurveySteps steps_;
    std::unique_ptr<Ui::FrmNew> controls_;
};

}  // namespace quibra
