// このアンケートおよび回答データについて: title and maker, sizes, IDs, and how much was typed. Modal.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class FrmAbout;
}

namespace quibra {

class MeasureRun;
class SurveySession;

class FrmAbout : public QDialog {
    Q_OBJECT
  public:
    explicit FrmAbout(SurveySession& session, QWidget* parent = nullptr);
    ~FrmAbout() override;

    // While samples are measured: asks whether to stop that.
    void reject() override;

  private:
    void cmdDo_Click();
    void cmdClose_Click();
    void ShowFigures(const MeasureRun& run);
    void RefreshButtons();

    SurveySession& session_;
    std::unique_ptr<Ui::FrmAbout> controls_;
    MeasureRun* run_ = nullptr;  // while it runs
};

}  // namespace quibra
