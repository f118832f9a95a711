#include "tabulation/windows/sheet_host.h"

#include <QFileInfo>
#include <QScreen>
#include <QStyle>
#include <algorithm>

#include "session/survey_session.h"
#include "tabulation/windows/frm_grid_base.h"

namespace quibra {

namespace {

int TitleBarOf(const QWidget& window) {
    return window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
}

// Down and right, so that the title of what it would cover stays in sight; from the lower end of the screen to its top.
void StepAside(QWidget& window) {
    const QRect screen = window.screen()->availableGeometry();
    const int step = TitleBarOf(window);
    QPoint place = window.pos() + QPoint(step, step);
    if (place.y() + window.height() > screen.bottom()) place.setY(screen.top());
    if (place.x() + window.width() > screen.right()) place.setX(screen.left());
    window.move(place);
}

}  // namespace

ResultWindows::ResultWindows(SurveySession& session, Desk& desk) : session_(session), desk_(desk) {}

ResultWindows::~ResultWindows() {
    QObject::disconnect(sessionChanged_);
}

void ResultWindows::TakePageFile() const {
    if (pageFileOpen_) throw RuntimeError(kErrorFileAlreadyOpen);
}

void ResultWindows::LeavePageFileOpen() {
    pageFileOpen_ = true;
    sessionChanged_ = QObject::connect(&session_, &SurveySession::StateChanged, &session_, [this] {
        pageFileOpen_ = false;
        session_.ui.Busy(false);
        QObject::disconnect(sessionChanged_);
    });
}

// Whether a result that is shown lies where this one would.
bool ResultWindows::IsCovered(const FrmGridBase& sheet) const {
    return std::ranges::any_of(sheets_, [&](const auto& other) {
        return other->isVisible() && (other->pos() - sheet.pos()).manhattanLength() < TitleBarOf(sheet);
    });
}

FrmGridBase& ResultWindows::New() {
    auto sheet = std::make_unique<FrmGridBase>(session_, *this, desk_);
    for (size_t step = 0; step <= sheets_.size() && IsCovered(*sheet); ++step)
        StepAside(*sheet);
    sheets_.push_back(std::move(sheet));
    return *sheets_.back();
}

std::vector<FrmGridBase*> ResultWindows::All() const {
    std::vector<FrmGridBase*> all;
    for (const auto& sheet : sheets_)
        all.push_back(sheet.get());
    return all;
}

void ResultWindows::AddHost(SheetHost& host) {
    hosts_.push_back(&host);
}

void ResultWindows::RemoveHost(SheetHost& host) {
    std::erase(hosts_, &host);
}

QString ResultWindows::ProposedPath(const QString& ending) const {
    const QFileInfo survey(session_.survey.FileName);
    return survey.path() + u'/' + survey.completeBaseName() + ending;
}

void ResultWindows::Activated(FrmGridBase& sheet) {
    option = sheet.Sheet().result.option;
    for (SheetHost* host : hosts_)
        host->SheetActivated(sheet);
}

void ResultWindows::Closed(FrmGridBase& sheet) {
    const auto place =
        std::find_if(sheets_.begin(), sheets_.end(), [&](const auto& own) { return own.get() == &sheet; });
    if (place == sheets_.end()) return;
    // The window is in the middle of its own event.
    place->release()->deleteLater();
    sheets_.erase(place);
    for (SheetHost* host : hosts_)
        host->SheetClosed(sheet);
}

}  // namespace quibra
