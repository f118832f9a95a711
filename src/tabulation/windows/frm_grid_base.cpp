#include "tabulation/windows/frm_grid_base.h"

#include <QCloseEvent>
#include <QDeadlineTimer>
#include <QFontInfo>
#include <QScopeGuard>
#include <QThread>
#include <QWindow>
#include <algorithm>

#include "core/answer_store.h"
#include "core/attempt.h"
#include "core/help_topics.h"
#include "core/labels.h"
#include "core/numbers.h"
#include "core/typed_number.h"
#include "session/survey_session.h"
#include "tabulation/html_result.h"
#include "tabulation/text_result.h"
#include "tabulation/windows/result_grid_model.h"
#include "tabulation/windows/sheet_host.h"
#include "ui/desk.h"
#include "ui/font_dialog.h"
#include "ui/window_place.h"
#include "ui_frm_grid_base.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Points of the font at which a column is as wide as its width says.
constexpr double kFontOfScaleOne = 9.75;
// Nanoseconds: events run this often during a total, and the cells show what has come so far once it has taken so long.
constexpr qint64 kEventInterval = 25'000'000;
constexpr qint64 kShowAfter = 200'000'000;
// Where calls follow each other this quickly, the clock is looked at with every second, fourth, ... of them: most of a
// total's calls come when all is counted, and the looks would take longer than the counting.
constexpr qint64 kQuickCalls = 1'000'000;
constexpr int kMostCallsBetweenLooks = 64;
// Milliseconds in which a desktop shows a window, unless something is wrong with it.
constexpr qint64 kDesktopPatience = 100;

double PointsOf(const QWidget* widget) {
    return QFontInfo(widget->font()).pointSizeF();
}

}  // namespace

FrmGridBase::FrmGridBase(SurveySession& session, ResultWindows& windows, Desk& desk)
    : ui_(std::make_unique<Ui::frmGridBase>()),
      session_(session),
      windows_(windows),
      desk_(desk),
      sheet_(session.survey, session.ui, *this, session.settings.GridWidth),
      model_(new ResultGridModel(session.survey, sheet_, this)) {
    ui_->setupUi(this);
    // Hidden during a total; nothing else moves meanwhile.
    QSizePolicy policy = ui_->txtGrid->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    ui_->txtGrid->setSizePolicy(policy);
    ui_->cmdCancel->raise();
    const Settings& settings = session.settings;
    if (!settings.FontSet[kFontGridBase].FontName.isEmpty()) FontApply(settings, kFontGridBase, ui_->Grid);
    sheet_.FontScale = static_cast<float>(PointsOf(ui_->Grid) / kFontOfScaleOne);
    ui_->Grid->setModel(model_);
    SetKindMenus(false);
    SetUpForm(this, session.ui, kHelpResult);

    ConnectTools();
    connect(ui_->mnuSearch, &QAction::triggered, this, [this] { desk_.ShowBatchAdd(sheet_.result.Places()); });
    connect(ui_->mnuOutput, &QAction::triggered, this, [this] { desk_.ShowExport(sheet_.result.Places()); });
    connect(&session_, &SurveySession::StateChanged, this, &FrmGridBase::RefreshLocked);
    RefreshLocked();
    connect(ui_->mnuRefQno, &QAction::triggered, this, &FrmGridBase::mnuRefQno_Click);
    connect(ui_->mnuQuit, &QAction::triggered, this, &FrmGridBase::close);
    connect(ui_->mnuCopy, &QAction::triggered, this, &FrmGridBase::mnuCopy_Click);
    connect(ui_->mnuAll, &QAction::triggered, ui_->Grid, &FlexGrid::selectAll);
    connect(ui_->mnuTextSave, &QAction::triggered, this, &FrmGridBase::mnuTextSave_Click);
    connect(ui_->mnuHTMLSave, &QAction::triggered, this, &FrmGridBase::mnuHTMLSave_Click);
    connect(ui_->mnuPercent_0, &QAction::triggered, this, [this] { mnuPercent_Click(0); });
    connect(ui_->mnuPercent_1, &QAction::triggered, this, [this] { mnuPercent_Click(1); });
    connect(ui_->mnuPercent_2, &QAction::triggered, this, [this] { mnuPercent_Click(2); });
    connect(ui_->mnuSort, &QAction::triggered, this, &FrmGridBase::RunTotal);
    connect(ui_->mnuSpace, &QAction::triggered, this, &FrmGridBase::RunTotal);
    connect(ui_->mnuFontChange, &QAction::triggered, this, &FrmGridBase::mnuFontChange_Click);
    connect(ui_->totalAgain, &QAction::triggered, this, &FrmGridBase::TotalAgain);
    connect(ui_->cmdNext, &QPushButton::clicked, this, &FrmGridBase::cmdNext_Click);
    connect(ui_->cmdCancel, &QPushButton::clicked, this, &FrmGridBase::cmdCancel_Click);
    connect(ui_->Grid, &FlexGrid::CurrentCellChanged, this, &FrmGridBase::Grid_CurrentCellChange);
    connect(ui_->Grid, &FlexGrid::CopyRequested, this, [this] {
        if (!totals_) mnuCopy_Click();
    });
    connect(ui_->Grid, &FlexGrid::MenuRequested, this, [this](const QPoint& place) {
        if (!totals_) ui_->mnuEdit->popup(place);
    });

    const QFontMetrics metrics = fontMetrics();
    resize(90 * metrics.averageCharWidth(), 30 * metrics.lineSpacing());
    WinCenter(this);
    WinPosRestore(settings, kPosGridBase, this);
}

FrmGridBase::~FrmGridBase() {
    // Left to the base class it would go behind the sheet that its model shows, and still ask for headings.
    delete ui_->Grid;
}

void FrmGridBase::SetActivationCounts(bool on) {
    ui_->txtGrid->setEnabled(on);
}

void FrmGridBase::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    // While another result is in the making this one may come to the front, but not into use.
    const bool toFront = event->type() == QEvent::ActivationChange || event->type() == QEvent::EnabledChange;
    if (toFront && isActiveWindow() && isEnabled() && ui_->txtGrid->isEnabledTo(this)) windows_.Activated(*this);
}

void FrmGridBase::closeEvent(QCloseEvent* event) {
    if (totals_) {
        session_.ui.Beep();
        event->ignore();
        return;
    }
    if (isVisible()) WinPosSave(session_.settings, kPosGridBase, this);
    windows_.Closed(*this);
    event->accept();
}

void FrmGridBase::mnuRefQno_Click() {
    QList<bool> selected(session_.survey.QuestionCount);
    for (const int q : sheet_.result.RefQno)
        if (q < selected.size()) selected[q] = true;
    if (!session_.ui.QuestionsBox(u"参照する質問を選択してください"_s, PlainQuestionList(session_.survey), selected))
        return;
    sheet_.result.RefQno.clear();
    for (int q = 0; q < selected.size(); ++q)
        if (selected[q]) sheet_.result.RefQno.push_back(q);
    TotalAgain();  // the same people, of a list that goes on, too
}

void FrmGridBase::mnuCopy_Click() {
    session_.ui.Busy(true);
    const auto idle = qScopeGuard([this] { session_.ui.Busy(false); });
    Attempt(session_.ui, [this] { CopySelection(); });
}

void FrmGridBase::TellWritten(const QString& path, const QString& fault) {
    if (fault.isEmpty()) {
        const QString told = path + u" に保存しました。"_s;
        ui_->lblInfo2->setText(ui_->lblInfo2->fontMetrics().elidedText(told, Qt::ElideMiddle, ui_->lblInfo2->width()));
        ui_->lblInfo2->setToolTip(told);
    } else {
        session_.ui.Message(fault + u"\r\n"_s + path, kOkOnly);
    }
    session_.ui.Beep();
}

void FrmGridBase::mnuTextSave_Click() {
    const QString path =
        session_.ui.FileBox(windows_.ProposedPath(u"-集計.txt"_s), u"全てのファイル(*.*)|*.*|"_s, true);
    if (path.isEmpty()) return;
    // The blank columns between limits are not written.
    const bool spaced = ui_->mnuSpace->isVisible() && ui_->mnuSpace->isChecked();
    if (spaced) ui_->mnuSpace->trigger();
    ui_->Grid->selectAll();
    const QString fault = WriteResult(path, [this] { return WriteText(windowTitle(), sheet_.grid); });
    if (spaced) ui_->mnuSpace->trigger();
    TellWritten(path, fault);
}

void FrmGridBase::mnuHTMLSave_Click() {
    const QString path = session_.ui.FileBox(windows_.ProposedPath(u"-集計.htm"_s),
                                             u"HTMLファイル(*.htm)|*.htm|HTMLファイル(*.html)|*.html|"_s, true);
    if (path.isEmpty()) return;
    TellWritten(path, WriteResult(path, [this] {
                    return WriteHtml(session_.survey, sheet_.result, sheet_.view, sheet_.grid);
                }));
}

void FrmGridBase::mnuPercent_Click(int index) {
    QAction* const items[] = {ui_->mnuPercent_0, ui_->mnuPercent_1, ui_->mnuPercent_2};
    for (QAction* item : items)
        item->setChecked(item == items[index]);
    RunTotal();
}

void FrmGridBase::mnuFontChange_Click() {
    QFont font = ui_->Grid->font();
    QPalette palette = ui_->Grid->palette();
    QColor color = palette.color(QPalette::Text);
    if (!PickFont(session_.ui, this, font, color)) return;
    palette.setColor(QPalette::Text, color);
    palette.setColor(QPalette::Base, palette.color(QPalette::Base));  // a chosen colour keeps the ground it was seen on
    ui_->Grid->setPalette(palette);
    ui_->Grid->setFont(font);
    FontStore(session_.settings, kFontGridBase, ui_->Grid);
}

void FrmGridBase::cmdNext_Click() {
    const qint32 last = session_.survey.SampleCount() - 1;
    QString text = QString::number(sheet_.result.FromDno);
    if (!session_.ui.InputBox(u"集計の続き"_s, u"ﾛｰｶﾙ番号"_s, u"～"_s + QString::number(last),
                              u"ﾛｰｶﾙ番号何番から集計を続けますか？"_s, text))
        return;
    text = NarrowFigures(text).trimmed();
    if (text.isEmpty() || text.front() < u'0' || text.front() > u'9') return;  // would read as 0
    Attempt(session_.ui, [&] {
        const double from = LeadingNumber(text);
        if (from > last) return;
        TotalFrom(RoundToInt32(from));
    });
}

void FrmGridBase::cmdCancel_Click() {
    if (session_.ui.Message(u"中止しますか？"_s, kOkCancel | kSecondDefault) != Answer::Ok) return;
    cancelled_ = true;
    ui_->cmdCancel->setEnabled(false);
}

void FrmGridBase::Grid_CurrentCellChange() {
    if (totals_) return;
    ui_->txtGrid->setText(ui_->Grid->CurrentText());
    ui_->txtGrid->setCursorPosition(0);
    ShowPersonOfRow();
    SendChart();
}

void FrmGridBase::ShowPersonOfRow() {
    const QModelIndex cell = ui_->Grid->currentIndex();
    Attempt(session_.ui, [&] {
        const auto id = sheet_.PersonAt(cell.column(), cell.row());
        if (id) desk_.ShowSample(DnoOfID(session_.survey, *id), session_.survey.QuestionCount);
    });
}

void FrmGridBase::Started() {
    pass_ = nullptr;
    done_ = of_ = 0;
    ui_->lblInfo2->setText(u"集計中"_s);
    ui_->lblInfo->clear();
    SetIdle(false);
    cancelled_ = false;
    ui_->cmdCancel->show();
    ui_->cmdCancel->setEnabled(true);
    ui_->cmdCancel->setFocus();
    ui_->cmdNext->setEnabled(false);  // its key would reach it below the other button
    WaitUntilDrawn();
    ui_->Grid->setUpdatesEnabled(false);
    running_.start();
    calls_ = 0;
    callsBetweenLooks_ = 1;
    lastLook_ = 0;
    lastTurn_ = -kEventInterval;
}

// Without updates the cells of a window that has not been drawn once would be a black hole, behind a message, too.
void FrmGridBase::WaitUntilDrawn() {
    for (const QDeadlineTimer patience(kDesktopPatience); !windowHandle()->isExposed() && !patience.hasExpired();
         QThread::msleep(1))
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void FrmGridBase::ShowPass(int q, int toQno, int L, int limitCount) {
    pass_ = [=] { return PassText(q, toQno, L, limitCount); };
}

void FrmGridBase::ShowPercent(qint32 done, qint32 of) {
    done_ = done;
    of_ = of;
}

void FrmGridBase::RefreshProgress() {
    if (pass_) ui_->lblInfo2->setText(pass_());
    ui_->lblInfo->setText(PercentOf(done_, of_));
}

void FrmGridBase::LetEventsRun() {
    if (++calls_ < callsBetweenLooks_) return;
    const qint64 now = running_.nsecsElapsed();
    callsBetweenLooks_ = now - lastLook_ < kQuickCalls ? std::min(2 * callsBetweenLooks_, kMostCallsBetweenLooks) : 1;
    calls_ = 0;
    lastLook_ = now;
    if (now - lastTurn_ < kEventInterval) return;
    RefreshProgress();
    const bool show = now >= kShowAfter;
    if (show) {
        model_->Sync();
        ui_->Grid->RefreshSizes(false);
        ui_->Grid->setUpdatesEnabled(true);
    }
    session_.ui.LetEventsRun();
    if (show) ui_->Grid->setUpdatesEnabled(false);
    lastTurn_ = lastLook_ = running_.nsecsElapsed();
}

bool FrmGridBase::Cancelled() const {
    return cancelled_;
}

void FrmGridBase::Finished() {
    const bool essayList = sheet_.result.option.TotalKind == kEssayList;
    if (essayList) {
        // The walk tells its last round figure, and no pass: the window would stay "in work" at 98 %.
        ui_->lblInfo2->clear();
        if (!Cancelled() && !sheet_.result.HasNext) done_ = of_;
    }
    RefreshProgress();
    if (isMinimized() && !essayList) showNormal();
    ui_->cmdCancel->setEnabled(false);
    ui_->cmdCancel->setVisible(!essayList);
    ui_->cmdNext->setVisible(essayList);
    ui_->cmdNext->setEnabled(sheet_.result.HasNext);
    ui_->lblFromDno->setText(QString::number(sheet_.result.FromDno));
    ui_->lblFromDno->setVisible(essayList && sheet_.result.HasNext);
    model_->SyncAll();
    ui_->Grid->RefreshSizes(true);
    ui_->Grid->setUpdatesEnabled(true);
    SetIdle(true);
    lastChart_ = {};
    ui_->Grid->Select({0, ResultGrid::kFixedRows, 0, ResultGrid::kFixedRows});
    ui_->Grid->setFocus();
}

void FrmGridBase::DoTotal() {
    TotalFrom(0);
}

void FrmGridBase::TotalFrom(qint32 dno) {
    sheet_.result.FromDno = dno;
    show();
    raise();
    activateWindow();
    SetKindMenus(windows_.option.TotalKind == kEssayList);
    shownFromDno_ = dno;
    Attempt(session_.ui, [this] { sheet_.DoTotal(windows_.option); });
}

// Counts only if that has not been done for these options; otherwise shows the result in the view that is checked.
void FrmGridBase::RunTotal() {
    sheet_.view.percent = ui_->mnuPercent_0->isChecked()   ? TotalView::CountsOnly
                          : ui_->mnuPercent_1->isChecked() ? TotalView::CountsAndPercent
                                                           : TotalView::PercentOnly;
    sheet_.view.sort = ui_->mnuSort->isChecked();
    sheet_.view.space = ui_->mnuSpace->isChecked();
    Attempt(session_.ui, [this] { sheet_.RunTotal(); });
}

void FrmGridBase::TotalAgain() {
    if (totals_) return;
    TotalFrom(shownFromDno_);
}

// A list leads to windows that change samples or give them away; the lock turns them off.
void FrmGridBase::RefreshLocked() {
    ui_->mnuSearch->setEnabled(session_.menu.mnuInput);
    ui_->mnuOutput->setEnabled(session_.menu.mnuOutput);
}

void FrmGridBase::SetKindMenus(bool essayList) {
    for (QAction* item : {ui_->mnuSpaceResult, ui_->mnuPercent_0, ui_->mnuPercent_1, ui_->mnuPercent_2,
                          ui_->mnuGraphOrder_0, ui_->mnuGraphOrder_1, ui_->mnuGraphOrder_2, ui_->mnuGraphOrder_3,
                          ui_->mnuSortSpace, ui_->mnuSort, ui_->mnuSpaceSpace, ui_->mnuSpace, ui_->mnuGoEssay})
        item->setVisible(!essayList);
    for (QAction* item : {ui_->mnuSpaceSearch, ui_->mnuSearch, ui_->mnuOutput, ui_->mnuRefQno, ui_->mnuEssayTotal,
                          ui_->mnuSearchLetter, ui_->mnuSearchNumber})
        item->setVisible(essayList);
    ui_->cmdNext->setVisible(essayList);
    ui_->lblFromDno->setVisible(false);
}

// The window is idle but while a total runs.
void FrmGridBase::SetIdle(bool idle) {
    if (idle)
        pause_.End();
    else
        pause_.Begin(this);
    totals_ = !idle;
    ui_->txtGrid->setVisible(idle);
    ui_->mnuFile->setEnabled(idle);
    ui_->mnuEdit->setEnabled(idle);
    ui_->mnuFont->setEnabled(idle);
    ui_->totalAgain->setEnabled(idle);
    ui_->cmdCancel->setEnabled(!idle);
}

}  // namespace quibra
