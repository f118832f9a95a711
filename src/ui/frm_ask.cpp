#include "ui/frm_ask.h"

#include "core/help_topics.h"
#include "ui/form.h"
#include "ui_frm_ask.h"

namespace quibra {

FrmAsk::FrmAsk(UserInterface& ui, const QString& info1, const QString& info2, const QString& func1,
               const QString& func2, QWidget* parent)
    : QDialog(parent), controls_(std::make_unique<Ui::FrmAsk>()) {
    controls_->setupUi(this);
    controls_->lblInfo1->setText(info1);
    controls_->lblInfo2->setText(info2);
    controls_->lblInfo2->setVisible(!info2.isEmpty());
    controls_->cmdFunc1->setText(func1);
    controls_->cmdFunc2->setText(func2);
    SetUpForm(this, ui, kHelpDialogs);
    setMinimumWidth(fontMetrics().averageCharWidth() * 60);
    connect(controls_->cmdFunc1, &QPushButton::clicked, this, [this] { done(1); });
    connect(controls_->cmdFunc2, &QPushButton::clicked, this, [this] { done(2); });
    connect(controls_->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    controls_->cmdFunc1->setFocus();
}

FrmAsk::~FrmAsk() = default;

int FrmAsk::Ask() {
    return exec();
}

}  // namespace quibra
