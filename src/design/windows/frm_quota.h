// このコンピューターに割り当てられたＩＤ: the range of IDs that this computer may give out. Modal.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class FrmQuota;
}

namespace quibra {

class SurveySession;

class FrmQuota : public QDialog {
    Q_OBJECT
  public:
    explicit FrmQuota(SurveySession& session, QWidget* parent = nullptr);
    ~FrmQuota() override;

  private:
    void Do_Click();

    SurveySession& session_;
    std::unique_ptr<Ui::FrmQuota> controls_;
};

}  // namespace quibra
