#include "ui/frm_input.h"

#include <QFocusEvent>

#include "core/help_topics.h"
#include "ui/form.h"
#include "ui_frm_input.h"

namespace quibra {

FrmInput::FrmInput(UserInterface& ui, const QString& title, const QString& name, const QString& range,
                   const QString& caution, const QString& text, QWidget* parent)
    : QDialog(parent), controls_(std::make_unique<Ui::FrmInput>()) {
    controls_->setupUi(this);
    if (!title.isEmpty()) setWindowTitle(title);
    controls_->lblName->setText(name);
    controls_->lblRange->setText(range);
    controls_->lblRange->setVisible(!range.isEmpty());
    controls_->lblCaution->setText(caution);
    controls_->lblCaution->setVisible(!caution.isEmpty());
    controls_->txtInput->setText(text);
    SetUpForm(this, ui, kHelpDialogs);
    setMinimumWidth(fontMetrics().averageCharWidth() * 60);
    controls_->txtInput->installEventFilter(this);
    connect(controls_->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(controls_->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    controls_->txtInput->setFocus();
    controls_->txtInput->selectAll();
}

FrmInput::~FrmInput() = default;

QString FrmInput::Text() const {
    return controls_->txtInput->text();
}

bool FrmInput::eventFilter(QObject* object, QEvent* event) {
    if (object == controls_->txtInput && event->type() == QEvent::FocusIn)
        txtInput_GotFocus(static_cast<QFocusEvent*>(event)->reason());
    return QDialog::eventFilter(object, event);
}

void FrmInput::txtInput_GotFocus(Qt::FocusReason reason) {
    // Coming back from another window or a menu leaves the caret, and what an input method composes, where they were.
    if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) return;
    // The press of the mouse that brings the focus would set the caret behind this.
    if (reason == Qt::MouseFocusReason)
        QMetaObject::invokeMethod(controls_->txtInput, &QLineEdit::selectAll, Qt::QueuedConnection);
    else
        controls_->txtInput->selectAll();
}

}  // namespace quibra
