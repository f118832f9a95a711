#include "conditions/windows/frm_limit.h"

#include <QAbstractItemView>
#include <QCloseEvent>
#include <QShortcut>

#include "companion/limit_terms.h"
#include "conditions/windows/limit_rows.h"
#include "core/help_topics.h"
#include "ui/form.h"
#include "ui_frm_limit.h"

using namespace Qt::StringLiterals;

namespace quibra {

FrmLimit::FrmLimit(SurveySession& session, QWidget* parent) : FrmLimit(session, LimitEditor(session), parent) {}

FrmLimit::FrmLimit(SurveySession& session, const LimitList& list, qint16 mode, QWidget* parent)
    : FrmLimit(session, LimitEditor(session, list, mode), parent) {}

FrmLimit::FrmLimit(SurveySession& session, LimitEditor editor, QWidget* parent)
    : QDialog(parent), session_(session), editor_(std::move(editor)), ui_(std::make_unique<Ui::FrmLimit>()) {
    ui_->setupUi(this);
    if (editor_.IsPicker()) {
        setWindowTitle(u"限定条件選択"_s);
        ui_->cmdClose->setText(u"ＯＫ"_s);
    }
    ui_->lstPreEdit->setVisible(!editor_.IsPicker());
    ui_->lstPreLimit->setVisible(editor_.OffersPreLimits());
    ui_->lblPreLimitTitle->setVisible(!editor_.IsPicker() || editor_.OffersPreLimits());
    ui_->lblCrossInfo->setVisible(editor_.ExplainsCross());
    lineRows_ = new LimitRowDelegate(ui_->lstLimit);
    ui_->lstCno->setItemDelegate(new RowDelegate(ui_->lstCno));
    ui_->lstLimit->setItemDelegate(lineRows_);
    ui_->lstPreLimit->setItemDelegate(new PreLimitDelegate(ui_->lstPreLimit));
    ui_->lstPreEdit->setItemDelegate(new PreLimitDelegate(ui_->lstPreEdit));
    SetUpForm(this, session_.ui, kHelpLimit);

    ui_->lstQno->addItems(editor_.Questions());
    RefreshChoosers();
    RefreshLines();
    RefreshPreLimits();

    connect(ui_->lstQno, &QComboBox::activated, this, &FrmLimit::lstQno_Click);
    connect(ui_->lstCno, &QListWidget::currentRowChanged, this, &FrmLimit::lstCno_Click);
    connect(ui_->lstCno, &QListWidget::itemDoubleClicked, this, &FrmLimit::lstCno_DblClick);
    connect(ui_->cmbRank, &QComboBox::currentIndexChanged, this, &FrmLimit::cmbRank_Click);
    connect(ui_->cmdWrite_1, &QPushButton::clicked, this, [this] { cmdWrite_Click(kLimitOr); });
    connect(ui_->cmdWrite_2, &QPushButton::clicked, this, [this] { cmdWrite_Click(kLimitTo); });
    connect(ui_->cmdWrite_3, &QPushButton::clicked, this, [this] { cmdWrite_Click(kLimitAnd); });
    connect(ui_->cmdWrite_4, &QPushButton::clicked, this, [this] { cmdWrite_Click(kLimitNot); });
    connect(ui_->lstLimit, &QListWidget::currentRowChanged, this, &FrmLimit::lstLimit_Click);
    connect(ui_->lstLimit, &QListWidget::itemClicked, this, [this] { lstLimit_Click(ui_->lstLimit->currentRow()); });
    connect(ui_->cmdDelete, &QPushButton::clicked, this, &FrmLimit::cmdDelete_Click);
    connect(new QShortcut(QKeySequence::Delete, ui_->lstLimit, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &FrmLimit::cmdDelete_Click);
    connect(ui_->cmdClear, &QPushButton::clicked, this, &FrmLimit::cmdClear_Click);
    connect(ui_->lstPreLimit, &QListWidget::itemSelectionChanged, this, &FrmLimit::lstPreLimit_Click);
    connect(ui_->lstPreEdit, &QListWidget::currentRowChanged, this, &FrmLimit::lstPreEdit_Click);
    connect(ui_->cmdHelpContext, &QPushButton::clicked, this, [this] { session_.ui.HelpContext(kHelpLimit); });
    connect(ui_->cmdClose, &QPushButton::clicked, this, &FrmLimit::cmdClose_Click);

    for (QWidget* widget : {static_cast<QWidget*>(ui_->lstQno), static_cast<QWidget*>(ui_->lstCno),
                            static_cast<QWidget*>(ui_->cmbRank), static_cast<QWidget*>(ui_->lstLimit),
                            static_cast<QWidget*>(ui_->lstPreLimit), static_cast<QWidget*>(ui_->lstPreEdit)})
        widget->installEventFilter(this);
    ui_->lstQno->setFocus();
    const int em = fontMetrics().horizontalAdvance(u'あ');
    // The drop-down list would be as narrow as its box, and most questions are longer than that.
    QAbstractItemView* questions = ui_->lstQno->view();
    questions->setMinimumWidth(std::min(questions->sizeHintForColumn(0) + 2 * em, 56 * em));
    resize(sizeHint().expandedTo({60 * em, 38 * em}));
}

FrmLimit::~FrmLimit() = default;

void FrmLimit::lstQno_Click(int row) {
    editor_.SelectQuestion(row);
    RefreshChoosers();
}

void FrmLimit::lstCno_Click(int row) {
    editor_.SelectChoice(row);
}

void FrmLimit::lstCno_DblClick() {
    cmdWrite_Click(kLimitAnd);
}

void FrmLimit::cmbRank_Click(int row) {
    editor_.SelectRank(row);
}

void FrmLimit::cmdWrite_Click(int kind) {
    editor_.AddLimitLine(kind);
    RefreshChoosers();
    RefreshLines();
    RefreshPreLimits();
}

void FrmLimit::lstLimit_Click(int row) {
    editor_.SelectRow(row);
    RefreshChoosers();
    RefreshInsertionPoint();
}

void FrmLimit::cmdDelete_Click() {
    editor_.DeleteLine();
    RefreshLines();
    RefreshPreLimits();
}

void FrmLimit::cmdClear_Click() {
    editor_.ClearLines();
    RefreshLines();
    RefreshPreLimits();
}

void FrmLimit::lstPreLimit_Click() {
    for (int k = 0; k < kPreLimitSlots; ++k)
        editor_.Pick(k, ui_->lstPreLimit->item(k)->isSelected());
}

void FrmLimit::lstPreEdit_Click(int row) {
    editor_.SelectSlot(row);
    RefreshLines();
}

void FrmLimit::cmdClose_Click() {
    if (!editor_.IsPicker()) {
        close();
        return;
    }
    editor_.Close({});
    accept();
}

// Escape, and of a picker the close box.
void FrmLimit::reject() {
    if (!editor_.IsPicker())
        close();
    else if (editor_.MayDiscard())
        QDialog::reject();
}

void FrmLimit::GiveWay() {
    givesWay_ = true;
    close();
}

void FrmLimit::closeEvent(QCloseEvent* event) {
    if (editor_.IsPicker()) {
        QDialog::closeEvent(event);
        return;
    }
    bool changed = false;
    for (int k = 0; k < kPreLimitSlots; ++k)
        changed |= editor_.PreChanged(k);
    if (changed || !givesWay_)
        editor_.Close([this](const QString& done) {
            ui_->cmdClose->setText(done);
            ui_->cmdClose->repaint();
        });
    event->accept();
}

// Enter writes a required line while one is being chosen, and closes the window from elsewhere.
bool FrmLimit::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        const bool chooser = watched == ui_->lstQno || watched == ui_->lstCno || watched == ui_->cmbRank;
        (chooser ? ui_->cmdWrite_3 : ui_->cmdClose)->setDefault(true);
    }
    return QDialog::eventFilter(watched, event);
}

void FrmLimit::RefreshChoosers() {
    const LimitEditor::Choosers& chosen = editor_.Chosen();
    const QSignalBlocker question(ui_->lstQno);
    const QSignalBlocker choice(ui_->lstCno);
    const QSignalBlocker rank(ui_->cmbRank);
    if (chosen.question != shownQuestion_) {
        shownQuestion_ = chosen.question;
        ui_->lstQno->setCurrentIndex(chosen.question);
        FillRows(ui_->lstCno, editor_.ChoicesOfQuestion(), chosen.choice);
        ui_->cmbRank->clear();
        ui_->cmbRank->addItems(editor_.FillRankCombo());
    }
    ui_->lstCno->setCurrentRow(chosen.choice);
    ui_->cmbRank->setCurrentIndex(chosen.rank);
}

void FrmLimit::RefreshLines() {
    FillRows(ui_->lstLimit, editor_.Rows(), editor_.Row());
    RefreshInsertionPoint();
}

void FrmLimit::RefreshInsertionPoint() {
    lineRows_->SetInsertionRow(editor_.InsertionRow());
    ui_->lstLimit->viewport()->update();
}

void FrmLimit::RefreshPreLimits() {
    if (!editor_.IsPicker()) {
        FillRows(ui_->lstPreEdit, editor_.PreLimitRows(), editor_.Slot());
    } else if (ui_->lstPreLimit->count() == 0) {
        FillRows(ui_->lstPreLimit, editor_.PreLimitRows(), -1);
        for (int k = 0; k < kPreLimitSlots; ++k)
            ui_->lstPreLimit->item(k)->setSelected(editor_.IsPicked(k));
    }
}

}  // namespace quibra
