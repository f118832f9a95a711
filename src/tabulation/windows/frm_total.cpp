#include "tabulation/windows/frm_total.h"

#include <QApplication>
#include <QCloseEvent>
#include <QScopeGuard>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTimer>

#include "conditions/windows/edit_limit.h"
#include "conditions/windows/limit_rows.h"
#include "core/attempt.h"
#include "core/help_topics.h"
#include "core/labels.h"
#include "session/survey_session.h"
#include "ui/form.h"
#include "ui/window_place.h"
#include "ui_frm_total.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// A rough total of fewer samples would hardly be faster.
constexpr qint32 kRoughSamples = 200;
// Until the desktop has settled which window is in front.
constexpr std::chrono::milliseconds kSettling{400};

// Long rows can be read whole in a box's tool tips.
void Select(QComboBox* box, int row) {
    box->setCurrentIndex(row);
    box->setToolTip(box->currentText());
}

void SetRows(QComboBox* box, const QStringList& rows, int selected) {
    bool same = box->count() == rows.size();
    for (int row = 0; same && row < rows.size(); ++row)
        same = box->itemText(row) == rows[row];
    if (!same) {
        box->clear();
        box->addItems(rows);
        for (int row = 0; row < rows.size(); ++row)
            box->setItemData(row, rows[row], Qt::ToolTipRole);
    }
    Select(box, selected);
}

}  // namespace

FrmTotal::FrmTotal(SurveySession& session, ResultWindows& windows, Desk& desk, QWidget* parent)
    // No dialog's place over its parent: it stands beside the result windows for long, and desktops leave dialogs out
    // of their list of windows, through which keys lead back here.
    : QDialog(parent, Qt::Window),
      ui_(std::make_unique<Ui::frmTotal>()),
      session_(session),
      windows_(windows),
      desk_(desk),
      setup_(session.survey, session.ui, [this](LimitList& list) { return PickLimit(list); }) {
    ui_->setupUi(this);
    ui_->lstLimit->setItemDelegate(new RowDelegate(ui_->lstLimit));
    SetUpForm(this, session.ui, kHelpTotal);
    setAttribute(Qt::WA_DeleteOnClose);
    SetSize();
    const QStringList questions = PlainQuestionList(session.survey);
    for (QComboBox* box : {ui_->cmbQno, ui_->cmbToQno, ui_->cmbXQno, ui_->cmbEQno})
        SetRows(box, questions, 0);
    ui_->chkRough->setEnabled(session.survey.SampleCount() >= kRoughSamples);

    connect(ui_->txtNname, &QLineEdit::textChanged, this, [this](const QString& text) { setup_.Nname = text; });
    // The boxes of the pages take the usual keys of a tab widget for their own.
    auto* turn = new QShortcut(this);
    turn->setKeys(QKeySequence::keyBindings(QKeySequence::NextChild) +
                  QKeySequence::keyBindings(QKeySequence::PreviousChild) +
                  QList<QKeySequence>{Qt::CTRL | Qt::Key_PageUp, Qt::CTRL | Qt::Key_PageDown});
    connect(turn, &QShortcut::activated, this, [this] { SetWindow(setup_.page == kTable ? kEssayList : kTable); });
    connect(ui_->tabTotal, &QTabWidget::currentChanged, this, [this](int page) { SetWindow(page + 1); });
    connect(ui_->cmbQno, &QComboBox::activated, this, &FrmTotal::cmbQno_Click);
    connect(ui_->cmbToQno, &QComboBox::activated, this, [this](int q) { Run([&] { setup_.toQno = q; }); });
    connect(ui_->cmbRank, &QComboBox::activated, this, [this](int rank) { setup_.rank = rank; });
    connect(ui_->lblExLimit_0, &ClickLabel::clicked, this, [this] { lblExLimit_Click(0); });
    connect(ui_->lblExLimit_1, &ClickLabel::clicked, this, [this] { lblExLimit_Click(1); });
    connect(ui_->optCross_0, &QRadioButton::toggled, this, [this](bool on) {
        if (on) optCross_Click(kCrossQuestion);
    });
    connect(ui_->cmbXQno, &QComboBox::activated, this, &FrmTotal::cmbXQno_Click);
    connect(ui_->optCross_1, &QRadioButton::toggled, this, [this](bool on) {
        if (on) optCross_Click(kCrossPreLimit);
    });
    connect(ui_->optCross_2, &QRadioButton::toggled, this, [this](bool on) {
        if (on) optCross_Click(kCrossFree);
    });
    connect(ui_->lstLimit, &QListWidget::currentRowChanged, this, &FrmTotal::lstLimit_Click);
    connect(ui_->lstLimit, &QListWidget::itemClicked, this, &FrmTotal::lstLimit_Click);
    connect(ui_->lstLimit, &QListWidget::itemDoubleClicked, ui_->cmdChangeLimit, &QPushButton::click);
    connect(ui_->cmdAddLimit, &QPushButton::clicked, this, [this] { Run([this] { setup_.AddLimit(); }); });
    connect(ui_->cmdChangeLimit, &QPushButton::clicked, this, [this] { Run([this] { setup_.ChangeLimit(); }); });
    connect(ui_->cmdDelLimit, &QPushButton::clicked, this, [this] { Run([this] { setup_.DeleteLimit(); }); });
    connect(ui_->chkRough, &QCheckBox::toggled, this, [this](bool on) { setup_.rough = on; });
    connect(ui_->cmbEQno, &QComboBox::activated, this, &FrmTotal::cmbEQno_Click);
    connect(ui_->cmbECno, &QComboBox::activated, this, [this](int c) { setup_.essayCno = c; });
    connect(ui_->cmbERank, &QComboBox::activated, this, [this](int rank) { setup_.essayRank = rank; });
    connect(ui_->chkRequire, &QCheckBox::toggled, this, &FrmTotal::chkRequire_Click);
    const std::pair<QRadioButton*, EssayConditionValue> conditions[] = {
        {ui_->optCon_5, kEssayAny},   {ui_->optCon_1, kEssayFilled}, {ui_->optCon_0, kEssayEmpty},
        {ui_->optCon_2, kEssayHolds}, {ui_->optCon_3, kEssayNumber}, {ui_->optCon_4, kEssayCode}};
    for (const auto& [option, condition] : conditions)
        connect(option, &QRadioButton::toggled, this, [this, c = condition](bool on) {
            if (on) optCon_Click(c);
        });
    connect(ui_->lblCon, &ClickLabel::clicked, this, [this] { Run([this] { setup_.AskEssayDetail(); }); });
    QPushButton* const totals[] = {ui_->cmdTotal_0, ui_->cmdTotal_1, ui_->cmdTotal_2, ui_->cmdTotal_3};
    for (int i = 0; i < 4; ++i)
        connect(totals[i], &QPushButton::clicked, this, [this, i] { cmdTotal_Click(i); });

    Refresh();
    windows.AddHost(*this);
}

// As large as the pages ask for; on a screen that is too low for one it scrolls, and only its buttons stay.
void FrmTotal::SetSize() {
    int hidden = 0;
    for (QScrollArea* area : {ui_->areaTable, ui_->areaEssay}) {
        QWidget* page = area->widget();
        for (QWidget* ground : {area->viewport(), page})
            ground->setAutoFillBackground(false);
        area->setMinimumWidth(page->minimumSizeHint().width() + area->verticalScrollBar()->sizeHint().width());
        hidden = std::max(hidden, page->sizeHint().height() - area->sizeHint().height());
    }
    const QSize whole = sizeHint() + QSize(0, hidden);
    const int titleBar = 3 * fontMetrics().height();
    resize(whole.boundedTo(screen()->availableSize() - QSize(0, titleBar)));
}

FrmTotal::~FrmTotal() {
    windows_.RemoveHost(*this);
}

bool FrmTotal::PickLimit(LimitList& list) {
    const bool picked = EditLimit(session_, desk_, this, list, kPickPreLimits);
    limitPass_ = list;
    return picked;
}

void FrmTotal::cmbQno_Click(int q) {
    Run([&] { setup_.SelectQuestion(q); });
}

void FrmTotal::cmbXQno_Click(int q) {
    Run([&] { setup_.SelectCrossQuestion(q); });
}

void FrmTotal::lblExLimit_Click(int index) {
    ClickLabel* label = index == 0 ? ui_->lblExLimit_0 : ui_->lblExLimit_1;
    label->SetEditing(true);
    Run([this] { setup_.EditWholeLimit(); });
    label->SetEditing(false);
}

void FrmTotal::optCross_Click(CrossModeValue mode) {
    if (mode != setup_.Cross()) Run([&] { setup_.SelectCross(mode); });
}

void FrmTotal::lstLimit_Click() {
    if (!ui_->lstLimit->currentItem()) return;
    setup_.limitRow = ui_->lstLimit->currentRow();
    ShowLimitTip();
}

void FrmTotal::ShowLimitTip() {
    const QListWidgetItem* item = ui_->lstLimit->currentItem();
    ui_->lstLimit->setToolTip(item ? item->text() : QString());
}

void FrmTotal::cmbEQno_Click(int q) {
    Run([&] { setup_.SelectEssayQuestion(q); });
}

void FrmTotal::chkRequire_Click() {
    const bool on = ui_->chkRequire->isChecked();
    if (on != setup_.require) Run([&] { setup_.require = on; });
}

void FrmTotal::optCon_Click(EssayConditionValue condition) {
    const bool isDetail = condition == kEssayHolds || condition == kEssayNumber || condition == kEssayCode;
    if (condition != (isDetail ? setup_.EssayDetail() : setup_.EssayCondition()))
        Run([&] { setup_.SelectEssayCondition(condition); });
}

void FrmTotal::cmdTotal_Click(int index) {
    if (index == 1 || index == 3) sheet_ = &windows_.New();
    BuildOption(index < 2 ? kTable : kEssayList);
}

void FrmTotal::lblCommand_Change(const QString& command) {
    if (command.isEmpty() || command == u"Do Total") return;
    if (command == u".limitread") {
        setup_.SetWholeLimit(limitPass_);
        Refresh();
        show();
    } else if (command == u".error") {
        session_.ui.Busy(false);
        close();
    } else {
        session_.ui.Message(u"命令ミス : "_s + command, kOkOnly);
    }
}

void FrmTotal::DoTotal(int kind) {
    sheet_ = &windows_.New();
    BuildOption(kind == kTable ? kTable : kEssayList);
}

void FrmTotal::BuildOption(TotalKindValue kind) {
    windows_.option = setup_.BuildOption(kind);
    const QPointer<FrmGridBase> sheet = &Sheet();
    // The window comes to the front with this, and its options of before must not come back here.
    sheet->SetActivationCounts(false);
    const auto restore = qScopeGuard([&] {
        if (sheet) sheet->SetActivationCounts(true);
    });
    sheet->DoTotal();
}

FrmGridBase& FrmTotal::Sheet() {
    if (!sheet_) sheet_ = &windows_.New();
    return *sheet_;
}

void FrmTotal::SheetActivated(FrmGridBase& sheet) {
    if (asking_ > 0) {
        passing_ = &sheet;
        return;
    }
    if (!setup_.HasUnused()) {
        TakeOver(sheet);
        return;
    }
    if (refused_ == &sheet) return;
    refused_ = &sheet;
    // Behind the event that has brought the other window to the front.
    QTimer::singleShot(0, this, [this, asked = QPointer(&sheet)] {
        bool replaced = false;
        Run([&] { replaced = setup_.MayReplace(); });
        if (replaced && asked) TakeOver(*asked);
    });
}

void FrmTotal::TakeOver(FrmGridBase& sheet) {
    refused_ = nullptr;
    sheet_ = &sheet;
    SetTotalOption();
}

void FrmTotal::SheetClosed(FrmGridBase& sheet) {
    if (sheet_ == &sheet) sheet_ = nullptr;
}

void FrmTotal::SetTotalOption() {
    setup_.SetTotalOption(windows_.option);
    Refresh();
}

void FrmTotal::SetWindow(int kind) {
    setup_.page = kind == kTable ? kTable : kEssayList;
    Refresh();
}

void FrmTotal::Run(const std::function<void()>& action) {
    passing_ = nullptr;
    ++asking_;
    Attempt(session_.ui, action);
    Attempt(session_.ui, [this] { Refresh(); });
    if (isActiveWindow()) {
        --asking_;
        return;
    }
    activateWindow();
    QTimer::singleShot(kSettling, this, [this] {
        if (--asking_ == 0 && passing_ && passing_->isActiveWindow()) SheetActivated(*passing_);
    });
}

void FrmTotal::Refresh() {
    if (ui_->txtNname->text() != setup_.Nname) ui_->txtNname->setText(setup_.Nname);
    ui_->tabTotal->setCurrentIndex(setup_.page - 1);
    (setup_.page == kTable ? ui_->cmdTotal_1 : ui_->cmdTotal_3)->setDefault(true);
    for (ClickLabel* label : {ui_->lblExLimit_0, ui_->lblExLimit_1})
        label->Show(setup_.WholeLimitText());
    RefreshTablePage();
    RefreshEssayPage();
}

void FrmTotal::RefreshTablePage() {
    Select(ui_->cmbQno, setup_.FromQno());
    Select(ui_->cmbToQno, setup_.toQno);
    SetRows(ui_->cmbRank, setup_.RankRows(setup_.FromQno()), setup_.rank);
    Select(ui_->cmbXQno, setup_.CrossQno());
    QRadioButton* const crosses[] = {ui_->optCross_0, ui_->optCross_1, ui_->optCross_2};
    crosses[setup_.Cross()]->setChecked(true);
    const QSignalBlocker blocker(ui_->lstLimit);
    ui_->lstLimit->clear();
    ui_->lstLimit->addItems(setup_.LimitRows());
    ui_->lstLimit->setCurrentRow(setup_.limitRow);
    ShowLimitTip();
    ui_->chkRough->setChecked(setup_.rough);
}

void FrmTotal::RefreshEssayPage() {
    Select(ui_->cmbEQno, setup_.EssayQno());
    SetRows(ui_->cmbECno, setup_.EssayChoiceRows(), setup_.essayCno);
    SetRows(ui_->cmbERank, setup_.RankRows(setup_.EssayQno()), setup_.essayRank);
    ui_->chkRequire->setChecked(setup_.require);
    ui_->frameELimit->setVisible(!setup_.require);
    ui_->optCon_0->setChecked(setup_.EssayCondition() == kEssayEmpty);
    ui_->optCon_1->setChecked(setup_.EssayCondition() == kEssayFilled);
    ui_->optCon_5->setChecked(setup_.EssayCondition() == kEssayAny);
    ui_->Frame1->setEnabled(setup_.EssayCondition() == kEssayFilled);
    const std::pair<QRadioButton*, EssayConditionValue> details[] = {
        {ui_->optCon_2, kEssayHolds}, {ui_->optCon_3, kEssayNumber}, {ui_->optCon_4, kEssayCode}};
    for (const auto& [option, detail] : details) {
        // Only then can the one that is set be unset, too.
        option->setAutoExclusive(false);
        option->setChecked(setup_.EssayDetail() == detail);
        option->setAutoExclusive(true);
    }
    ui_->lblCon->Show(setup_.EssayDetailText());
}

void FrmTotal::closeEvent(QCloseEvent* event) {
    // By hand; the program itself closes the window together with what it belongs to.
    if (event->spontaneous() && !MayDiscard()) {
        event->ignore();
        return;
    }
    WinPosSave(session_.settings, kPosTotal, this);
    event->accept();
}

void FrmTotal::reject() {
    if (MayDiscard()) close();
}

bool FrmTotal::MayDiscard() {
    bool may = false;
    Run([&] { may = setup_.MayDiscard(); });
    return may;
}

}  // namespace quibra
