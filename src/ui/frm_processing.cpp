#include "ui/frm_processing.h"

#include <QApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QScopedValueRollback>
#include <utility>

#include "core/help_topics.h"
#include "ui/form.h"
#include "ui_frm_processing.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kMillisecondsUnseen = 300;

}  // namespace

FrmProcessing::FrmProcessing(UserInterface& ui, std::function<bool()> confirmStop)
    : controls_(std::make_unique<Ui::FrmProcessing>()), confirmStop_(std::move(confirmStop)) {
    controls_->setupUi(this);
    SetUpForm(this, ui, kHelpProgress, FormKind::Lasting);
    // Nothing waits in here, but the window must stay usable over a modal dialog whose work it shows.
    setWindowModality(Qt::ApplicationModal);
    controls_->cmdStop->installEventFilter(this);
    connect(controls_->cmdStop, &QPushButton::clicked, this, &FrmProcessing::cmdStop_Click);
    appears_.setSingleShot(true);
    appears_.setInterval(kMillisecondsUnseen);
    connect(&appears_, &QTimer::timeout, this, [this] {
        // Over an open question it would keep everyone from answering that, and could not be closed itself.
        if (QApplication::activeModalWidget())
            appears_.start();
        else
            show();
    });
}

FrmProcessing::~FrmProcessing() = default;

void FrmProcessing::Open(const ProgressSpec& spec) {
    setWindowTitle(spec.title);
    controls_->lblInfomation->setText(spec.info);
    controls_->lblProcessing->setText(spec.caption);
    controls_->pctBar->Reset();
    controls_->pctBar->setAccessibleName(u"0%"_s);
    stopped_ = false;
    controls_->cmdStop->setEnabled(true);
    controls_->cmdStop->setFocus();
    if (spec.show) appears_.start();
}

void FrmProcessing::Close() {
    appears_.stop();
    hide();
}

void FrmProcessing::Progress(int percent) {
    if (percent == controls_->pctBar->Percent()) return;
    controls_->pctBar->Progress(percent);
    controls_->pctBar->setAccessibleName(u"%1%"_s.arg(controls_->pctBar->Percent()));
}

void FrmProcessing::SetText(const QString& text) {
    controls_->lblProcessing->setText(text);
}

bool FrmProcessing::IsStopped() const {
    return isVisible() && stopped_;
}

void FrmProcessing::reject() {
    controls_->cmdStop->click();
}

bool FrmProcessing::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate && controls_->cmdStop->isEnabled()) controls_->cmdStop->setFocus();
    return QDialog::event(event);
}

bool FrmProcessing::eventFilter(QObject* object, QEvent* event) {
    // Another window of the desktop may take the focus; inside this one it stays at the button.
    if (object == controls_->cmdStop && event->type() == QEvent::FocusOut && isVisible() &&
        controls_->cmdStop->isEnabled() && static_cast<QFocusEvent*>(event)->reason() != Qt::ActiveWindowFocusReason)
        QMetaObject::invokeMethod(
            controls_->cmdStop, [this] { controls_->cmdStop->setFocus(); }, Qt::QueuedConnection);
    return QDialog::eventFilter(object, event);
}

void FrmProcessing::cmdStop_Click() {
    // The question runs an event loop of its own, in which the close box can be pressed again.
    if (asking_) return;
    const QScopedValueRollback asking(asking_, true);
    if (!confirmStop_()) return;
    stopped_ = true;
    controls_->cmdStop->setEnabled(false);
}

}  // namespace quibra
