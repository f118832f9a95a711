// Locks a survey, unlocks it, and changes its password.
#pragma once

#include <QDialog>
#include <memory>

class QButtonGroup;

namespace Ui {
class FrmKey;
}

namespace quibra {

class SurveySession;

class FrmKey : public QDialog {
  public:
    // `session` must outlive the window.
    FrmKey(SurveySession& session, QWidget* parent);
    ~FrmKey() override;

  private:
    void LV_Click(int index);
    void Lock_Click();
    void Unlock_Click();
    void ChangeKey_Click();
    void FocusFirst();
    void RefreshDefault(const QWidget* focus);
    void RefreshLook();

    SurveySession& session_;
    std::unique_ptr<Ui::FrmKey> controls_;
    QButtonGroup* levels_;
};

}  // namespace quibra
