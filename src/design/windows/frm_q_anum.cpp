#include "design/windows/frm_q_anum.h"

#include "core/help_topics.h"
#include "ui/form.h"
#include "ui_frm_q_anum.h"

using namespace Qt::StringLiterals;

namespace quibra {

FrmQAnum::FrmQAnum(UserInterface& ui, int number, int anum, int most, QWidget* parent)
    : QDialog(parent), controls_(std::make_unique<Ui::FrmQAnum>()) {
    controls_->setupUi(this);
    SetUpForm(this, ui, kHelpQuestion);
    controls_->lblQAnum->setText(u"質問%1の回答可能数"_s.arg(number));
    controls_->UpDown1->setMaximum(most);
    controls_->UpDown1->setValue(anum);
    connect(controls_->cmdAll, &QPushButton::clicked, this, [this, most] { controls_->UpDown1->setValue(most); });
    connect(controls_->cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    controls_->UpDown1->selectAll();
}

FrmQAnum::~FrmQAnum() = default;

int FrmQAnum::Anum() const {
    return controls_->UpDown1->value();
}

}  // namespace quibra
