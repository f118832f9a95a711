#include "tabulation/windows/frm_word.h"

#include "core/help_topics.h"
#include "tabulation/essay_search.h"
#include "ui/form.h"
#include "ui_frm_word.h"

namespace quibra {

FrmWord::FrmWord(UserInterface& ui, const QStringList& words, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::frmWord>()) {
    ui_->setupUi(this);
    ui_->lstWord->addItems(words);
    SetUpForm(this, ui, kHelpEssay);

    connect(ui_->lstWord, &QListWidget::currentRowChanged, this, &FrmWord::lstWord_Click);
    connect(ui_->txtWord, &QLineEdit::textEdited, this, &FrmWord::txtWord_Change);
    connect(ui_->txtWord, &QLineEdit::returnPressed, this, &FrmWord::cmdAdd_Click);
    connect(ui_->cmdAdd, &QPushButton::clicked, this, &FrmWord::cmdAdd_Click);
    connect(ui_->cmdDel, &QPushButton::clicked, this, &FrmWord::cmdDel_Click);
    connect(ui_->cmdAllDel, &QPushButton::clicked, this, &FrmWord::cmdAllDel_Click);
    connect(ui_->cmdDo, &QPushButton::clicked, this, &FrmWord::accept);
    connect(ui_->cmdCancel, &QPushButton::clicked, this, &FrmWord::reject);

    if (words.isEmpty())
        AddEmpty();
    else
        ui_->lstWord->setCurrentRow(0);
    ui_->txtWord->setFocus();
}

FrmWord::~FrmWord() = default;

QStringList FrmWord::Words() const {
    QStringList words;
    for (int row = 0; row < ui_->lstWord->count(); ++row)
        if (const QString word = ui_->lstWord->item(row)->text(); !word.isEmpty()) words << word;
    return words;
}

void FrmWord::lstWord_Click() {
    const QListWidgetItem* item = ui_->lstWord->currentItem();
    ui_->txtWord->setText(item ? item->text() : QString());
    Refresh();
}

void FrmWord::txtWord_Change(const QString& text) {
    if (QListWidgetItem* item = ui_->lstWord->currentItem()) item->setText(text);
}

void FrmWord::cmdAdd_Click() {
    if (ui_->lstWord->count() < kMaxSearchWords) AddEmpty();
}

void FrmWord::cmdDel_Click() {
    delete ui_->lstWord->takeItem(ui_->lstWord->currentRow());
    if (ui_->lstWord->count() == 0) AddEmpty();
    lstWord_Click();
}

void FrmWord::cmdAllDel_Click() {
    ui_->lstWord->clear();
    AddEmpty();
}

void FrmWord::AddEmpty() {
    ui_->lstWord->addItem(QString());
    ui_->lstWord->setCurrentRow(ui_->lstWord->count() - 1);
    ui_->txtWord->setFocus();
    Refresh();
}

void FrmWord::Refresh() {
    ui_->cmdAdd->setEnabled(ui_->lstWord->count() < kMaxSearchWords);
    ui_->cmdDel->setEnabled(ui_->lstWord->currentRow() >= 0);
}

}  // namespace quibra
