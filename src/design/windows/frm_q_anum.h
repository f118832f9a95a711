// 回答可能数: how many answers a question takes. Modal.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class FrmQAnum;
}

namespace quibra {

class UserInterface;

class FrmQAnum : public QDialog {
    Q_OBJECT
  public:
    // `number` counts from 1. Accepted by its button, with Anum from 1 to `most`.
    FrmQAnum(UserInterface& ui, int number, int anum, int most, QWidget* parent = nullptr);
    ~FrmQAnum() override;
    int Anum() const;

  private:
    std::unique_ptr<Ui::FrmQAnum> controls_;
};

}  // namespace quibra
