#include "apps/quibra/frm_main.h"

#include <QCloseEvent>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QTimer>

#include "apps/quibra/window_table.h"
#include "core/help_topics.h"
#include "session/main_commands.h"
#include "session/survey_file.h"
#include "ui/form.h"
#include "ui/theme.h"
#include "ui/window_place.h"
#include "ui_frm_main.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Of a recent file's name in its menu, in heights of a line.
constexpr int kRecentWidth = 30;

// The first file of a drop; empty when there is none.
QString FileOf(const QMimeData* data) {
    const QList<QUrl> urls = data->urls();
    return urls.isEmpty() ? QString() : urls.first().toLocalFile();
}

}  // namespace

FrmMain::FrmMain(SurveySession& session, QWidget* parent)
    : QWidget(parent), session_(session), ui_(std::make_unique<Ui::FrmMain>()), desk_(session, *this) {
    ui_->setupUi(this);
    SetUpForm(this, session_.ui, kHelpMain, FormKind::Lasting);
    for (QAction* separator :
         {ui_->mnuSpace0, ui_->mnuFileMRUSpace, ui_->mnuSpaceTotal, ui_->mnuSpaceHelp, ui_->mnuSpaceAbout})
        separator->setSeparator(true);
    recent_ = {ui_->mnuFileMRU_0, ui_->mnuFileMRU_1, ui_->mnuFileMRU_2, ui_->mnuFileMRU_3};
    governed_ = {
        {ui_->mnuFileSave, &MenuState::mnuFileSave},
        {ui_->mnuFileSaveAs, &MenuState::mnuFileSaveAs},
        {ui_->mnuMerge->menuAction(), &MenuState::mnuMerge},
        {ui_->mnuOutput->menuAction(), &MenuState::mnuOutput},
        {ui_->mnuSetQuestion, &MenuState::mnuSetQuestion},
        {ui_->mnuQuestions, &MenuState::mnuQuestions},
        {ui_->mnuAbout, &MenuState::mnuAbout},
        {ui_->mnuInput, &MenuState::mnuInput},
        {ui_->mnuSetParagraph, &MenuState::mnuSetParagraph},
        {ui_->mnuSetQuota, &MenuState::mnuSetQuota},
        {ui_->mnuSetCollection, &MenuState::mnuSetCollection},
        {ui_->mnuSetLimit, &MenuState::mnuSetLimit},
        {ui_->mnuStatis, &MenuState::mnuStatis},
        {ui_->mnuKey, &MenuState::mnuKey},
    };
    ui_->lblFile->installEventFilter(this);
    SetIcons();
    Connect();
    RefreshAll();
    WinPosRestore(session_.settings, kPosMain, this);
}

FrmMain::~FrmMain() = default;

void FrmMain::Connect() {
    // Menus open with the press: a key typed behind Alt and the letter is already theirs.
    connect(ui_->cmdFile, &QToolButton::pressed, this, &FrmMain::cmdFile_Click);
    connect(ui_->cmdQuestion, &QToolButton::pressed, this, &FrmMain::cmdQuestion_Click);
    connect(ui_->cmdOthers, &QToolButton::pressed, this, &FrmMain::cmdOthers_Click);
    connect(ui_->cmdOpen, &QToolButton::clicked, this, &FrmMain::cmdOpen_Click);
    connect(ui_->cmdSave, &QToolButton::clicked, this, &FrmMain::cmdSave_Click);
    connect(ui_->cmdListQues, &QToolButton::clicked, ui_->mnuQuestions, &QAction::trigger);
    connect(ui_->cmdInput, &QToolButton::clicked, ui_->mnuInput, &QAction::trigger);
    connect(ui_->cmdStatis, &QToolButton::clicked, ui_->mnuStatis, &QAction::trigger);
    connect(ui_->mnuFileOpen, &QAction::triggered, this, &FrmMain::mnuFileOpen_Click);
    connect(ui_->mnuFileSave, &QAction::triggered, this, &FrmMain::mnuFileSave_Click);
    connect(ui_->mnuFileSaveAs, &QAction::triggered, this, &FrmMain::mnuFileSaveAs_Click);
    connect(ui_->mnuLoadResult, &QAction::triggered, this, &FrmMain::mnuLoadResult_Click);
    for (size_t i = 0; i < recent_.size(); ++i)
        connect(recent_[i], &QAction::triggered, this, [this, i] { mnuFileMRU_Click(i); });
    connect(ui_->mnuQuit, &QAction::triggered, this, &FrmMain::close);
    connect(ui_->mnuSetSaveInterval, &QAction::triggered, this, &FrmMain::mnuSetSaveInterval_Click);
    connect(ui_->mnuInfoFormReset, &QAction::triggered, this, &FrmMain::mnuInfoFormReset_Click);
    connect(ui_->mnuHelpContent, &QAction::triggered, this, &FrmMain::HelpIndexAsked);
    connect(ui_->mnuHeplKeyword, &QAction::triggered, this, &FrmMain::HelpSearchAsked);
    for (const WindowRow& row : WindowTable()) {
        const auto open = row.open ? row.open : &ProgramDesk::TellAbsent;
        connect(findChild<QAction*>(row.command), &QAction::triggered, this, [this, open] { (desk_.*open)(); });
    }
    connect(&session_, &SurveySession::StateChanged, this, [this](SurveySession::Changes what) {
        if (what & SurveySession::Change::Settings) RefreshRecentFiles();
        if (what & ~SurveySession::Changes(SurveySession::Change::Settings)) RefreshAll();
    });
}

void FrmMain::cmdFile_Click() {
    PopUp(ui_->mnuFile, ui_->cmdFile);
}

void FrmMain::cmdQuestion_Click() {
    PopUp(ui_->mnuQuestion, ui_->cmdQuestion);
}

void FrmMain::cmdOthers_Click() {
    PopUp(ui_->mnuOthers, ui_->cmdOthers);
}

void FrmMain::cmdOpen_Click() {
    if (ui_->mnuFileOpen->isEnabled())
        mnuFileOpen_Click();
    else
        RefuseOpen(session_.ui);
}

void FrmMain::cmdSave_Click() {
    SaveSurvey(session_);
}

void FrmMain::mnuFileOpen_Click() {
    Show(AskAndOpen(session_, kExpectSurvey));
}

void FrmMain::mnuFileSave_Click() {
    SaveSurvey(session_);
}

void FrmMain::mnuFileSaveAs_Click() {
    SaveSurveyAs(session_);
}

void FrmMain::mnuLoadResult_Click() {
    Show(AskAndOpen(session_, kExpectPage));
}

void FrmMain::mnuFileMRU_Click(size_t index) {
    // A copy: opening puts the path in front of its list.
    const QString path = session_.settings.RecentFiles[index];
    SurveyOpen(path, kExpectSurvey);
}

void FrmMain::mnuSetSaveInterval_Click() {
    EditSaveInterval(session_);
}

void FrmMain::mnuInfoFormReset_Click() {
    ResetSettings(session_);
}

void FrmMain::SurveyOpen(const QString& path, int mode) {
    Show(quibra::SurveyOpen(session_, path, mode));
}

void FrmMain::Command(const QString& command) {
    if (command == "Load Page"_L1 && !IsWaiting()) mnuLoadResult_Click();
}

void FrmMain::Show(const OpenOutcome& outcome) {
    if (outcome.replaced) desk_.CloseAll();
    if (!outcome.page.isEmpty()) desk_.PageOpen(outcome.page);
}

void FrmMain::PopUp(QMenu* menu, QToolButton* button) {
    const QRect area = screen()->geometry();
    const bool upperHalf = frameGeometry().top() - area.top() < area.height() / 2;
    menu->popup(button->mapToGlobal(QPoint(0, upperHalf ? button->height() : 0)));
    menu->setActiveAction(menu->actions().constFirst());
    // The menu gets the release of the press that opened it. A press on the button that closes it does not open it
    // again.
    connect(
        menu, &QMenu::aboutToHide, button, [button] { button->setDown(false); }, Qt::SingleShotConnection);
    menu->setAttribute(Qt::WA_NoMouseReplay);
}

bool FrmMain::IsWaiting() const {
    return !isEnabled() || QApplication::activeModalWidget() || QApplication::activePopupWidget();
}

void FrmMain::SetIcons() {
    const int size = fontMetrics().height() * 2;
    const std::pair<QToolButton*, QString> icons[] = {
        {ui_->cmdFile, u"file"_s},   {ui_->cmdQuestion, u"survey"_s},   {ui_->cmdOthers, u"others"_s},
        {ui_->cmdOpen, u"open"_s},   {ui_->cmdSave, u"save"_s},         {ui_->cmdListQues, u"questions"_s},
        {ui_->cmdInput, u"input"_s}, {ui_->cmdStatis, u"statistics"_s},
    };
    for (const auto& [button, name] : icons) {
        button->setIcon(ThemeIcon(name));
        button->setIconSize(QSize(size, size));
    }
    const QPixmap image = QApplication::windowIcon().pixmap(QSize(size, size), devicePixelRatio());
    ui_->Image1->setPixmap(image);
    ui_->Image1->setVisible(!image.isNull());
}

void FrmMain::RefreshAll() {
    for (const GovernedAction& governed : governed_)
        governed.action->setEnabled(session_.menu.*governed.state);
    ui_->cmdListQues->setEnabled(session_.menu.mnuQuestions);
    ui_->cmdInput->setEnabled(session_.menu.mnuInput);
    ui_->cmdStatis->setEnabled(session_.menu.mnuStatis);
    RefreshRecentFiles();

    const MainStatus status = StatusOf(session_);
    setWindowTitle(status.caption);
    ui_->lblTitle->setText(status.title);
    ui_->lblFigures->setText(status.figures);
    RefreshFileName();
}

void FrmMain::RefreshRecentFiles() {
    bool any = false;
    for (size_t i = 0; i < recent_.size(); ++i) {
        const QString path = session_.settings.RecentFiles[i];
        recent_[i]->setVisible(!path.isEmpty());
        any |= !path.isEmpty();
        // A path's own ampersand is no mnemonic.
        QString shown = fontMetrics().elidedText(path, Qt::ElideMiddle, kRecentWidth * fontMetrics().height());
        recent_[i]->setText(u"&%1 "_s.arg(i + 1) + shown.replace(u'&', u"&&"_s));
        recent_[i]->setToolTip(path);
    }
    ui_->mnuFileMRUSpace->setVisible(any);
}

void FrmMain::RefreshFileName() {
    const QString path = StatusOf(session_).file;
    ui_->lblFile->setVisible(!path.isEmpty());
    ui_->lblFile->setAccessibleName(path);
    ui_->lblFile->setToolTip(path);
    ui_->lblFile->setText(ui_->lblFile->fontMetrics().elidedText(path, Qt::ElideMiddle, ui_->lblFile->width()));
}

void FrmMain::closeEvent(QCloseEvent* event) {
    WinPosSave(session_.settings, kPosMain, this);
    if (!AskToSaveChanges(session_)) {
        event->ignore();
        return;
    }
    session_.WriteSettings();
    DeleteWorkFiles(session_.Directory());
    event->accept();
    Q_EMIT Closed();
}

void FrmMain::dragEnterEvent(QDragEnterEvent* event) {
    if (!FileOf(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void FrmMain::dropEvent(QDropEvent* event) {
    const QString path = FileOf(event->mimeData());
    if (path.isEmpty()) return;
    event->acceptProposedAction();
    // The program that the file comes from waits until this returns; the questions of opening come behind it.
    QTimer::singleShot(0, this, [this, path] {
        if (!IsWaiting()) SurveyOpen(path, kExpectSurvey);
    });
}

void FrmMain::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto* button = qobject_cast<QToolButton*>(focusWidget());
    if (enter && button)
        button->click();
    else
        QWidget::keyPressEvent(event);
}

bool FrmMain::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui_->lblFile && event->type() == QEvent::Resize) RefreshFileName();
    return QWidget::eventFilter(watched, event);
}

void FrmMain::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) SetIcons();
}

}  // namespace quibra
