// 回答補正: what is done with answers that break a rule. Modal; see entry/answer_check.h for the flags.
#pragma once

#include <QDialog>
#include <array>
#include <memory>

class QRadioButton;

namespace Ui {
class FrmCollect;
}

namespace quibra {

class UserInterface;

class FrmCollect : public QDialog {
    Q_OBJECT
  public:
    FrmCollect(UserInterface& ui, qint16 flags, QWidget* parent);
    ~FrmCollect() override;

    // What is chosen; the flag that is none of the checks' stays as it was given.
    qint16 CorrectFlags() const;

  private:
    struct Choice {
        qint16 flag;
        QRadioButton* clear;
        QRadioButton* set;
    };

    std::unique_ptr<Ui::FrmCollect> controls_;
    std::array<Choice, 4> choices_;
    qint16 others_;
};

// Shows the window and takes over what is chosen: true. On Cancel `flags` stays as it is.
bool EditCorrectFlags(UserInterface& ui, QWidget* parent, qint16& flags);

}  // namespace quibra
