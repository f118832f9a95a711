#include "ui/frm_q_box.h"

#include "core/help_topics.h"
#include "ui/form.h"
#include "ui_frm_q_box.h"

namespace quibra {

FrmQBox::FrmQBox(UserInterface& ui, Pick pick, const QString& info, const QStringList& questions, QWidget* parent)
    : QDialog(parent), controls_(std::make_unique<Ui::FrmQBox>()) {
    controls_->setupUi(this);
    const bool one = pick == Pick::One;
    QListWidget* list = one ? controls_->lstQno_0 : controls_->lstQno_1;
    controls_->lstQno_0->setVisible(one);
    controls_->lstQno_1->setVisible(!one);
    controls_->lblInfo->setText(info);
    controls_->lblInfo->setVisible(!info.isEmpty());
    controls_->lblInfo->setBuddy(list);
    list->setAccessibleName(info.isEmpty() ? windowTitle() : info);
    list->addItems(questions);
    SetUpForm(this, ui, kHelpDialogs);
    resize(fontMetrics().averageCharWidth() * 80, fontMetrics().lineSpacing() * 24);
    connect(controls_->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(controls_->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    // A double click among several would be half of an answer.
    if (one) connect(list, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    list->setCurrentRow(0, one ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate);
    controls_->cmdOK->setEnabled(list->count() > 0);
    list->setFocus();
}

FrmQBox::~FrmQBox() = default;

int FrmQBox::Row() const {
    return controls_->lstQno_0->currentRow();
}

QList<bool> FrmQBox::Selected() const {
    QList<bool> selected;
    for (int row = 0; row < controls_->lstQno_1->count(); ++row)
        selected += controls_->lstQno_1->item(row)->isSelected();
    return selected;
}

}  // namespace quibra
