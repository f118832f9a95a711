#include "ui/form.h"

#include <QApplication>
#include <QBoxLayout>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <algorithm>

#include "core/user_interface.h"
#include "ui/accessibility.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QList<QPushButton*> ButtonsOf(const QBoxLayout* row) {
    QList<QPushButton*> buttons;
    for (int i = 0; i < row->count(); ++i)
        if (auto* button = qobject_cast<QPushButton*>(row->itemAt(i)->widget())) buttons += button;
    return buttons;
}

void GiveButtonsOneWidth(const QWidget* window) {
    for (const QBoxLayout* row : window->findChildren<QHBoxLayout*>()) {
        const QList<QPushButton*> buttons = ButtonsOf(row);
        if (buttons.size() < 2) continue;
        int width = 0;
        for (const QPushButton* button : buttons)
            if (!button->isHidden()) width = std::max(width, button->sizeHint().width());
        for (QPushButton* button : buttons)
            button->setMinimumWidth(width);
    }
}

// Some styles put pictures on the buttons of a QDialogButtonBox; no other button of the program has one.
void TakeIconsOffButtons(const QWidget* window) {
    for (const QDialogButtonBox* box : window->findChildren<QDialogButtonBox*>())
        for (QAbstractButton* button : box->buttons())
            button->setIcon({});
}

// The .ui files have the default button first, as most desktops do; where dialogs end with it, the row is turned round.
void OrderButtonRow(const QWidget* window) {
    auto* row = window->findChild<QHBoxLayout*>(u"buttonRow"_s);
    if (!row || window->style()->styleHint(QStyle::SH_DialogButtonLayout) != QDialogButtonBox::GnomeLayout) return;
    QList<QPushButton*> buttons = ButtonsOf(row);
    for (QPushButton* button : buttons)
        row->removeWidget(button);
    std::ranges::reverse(buttons);
    for (qsizetype i = 0; i < buttons.size(); ++i) {
        row->addWidget(buttons[i]);
        if (i > 0) QWidget::setTabOrder(buttons[i - 1], buttons[i]);
    }
}

// No window is larger than its screen leaves room for, title bar included.
void KeepOnScreen(QWidget* window) {
    const QSize room = window->screen()->availableSize();
    const int titleBar = window->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window);
    window->resize(window->size().boundedTo(room - QSize(0, titleBar)));
}

// Made once a window and owned by it; its presence is what makes the window one of the program's.
class FormManner : public QObject {
  public:
    FormManner(QWidget* window, UserInterface& ui, int helpTopic, FormKind kind)
        : QObject(window), made_(++lastMade), ui_(ui), helpTopic_(helpTopic), kind_(kind) {
        window->installEventFilter(this);
        for (QAbstractButton* button : window->findChildren<QAbstractButton*>())
            button->installEventFilter(this);
        // A file dialog's name field takes every key for its own.
        for (QLineEdit* line : window->findChildren<QLineEdit*>())
            line->installEventFilter(this);
        for (QMenu* menu : window->findChildren<QMenu*>())
            menu->installEventFilter(this);
        for (QComboBox* box : window->findChildren<QComboBox*>()) {
            box->installEventFilter(this);
            if (box->focusPolicy() == Qt::WheelFocus) box->setFocusPolicy(Qt::StrongFocus);
        }
    }

    quint64 Made() const { return made_; }
    FormKind Kind() const { return kind_; }

    bool eventFilter(QObject* object, QEvent* event) override {
        if (auto* menu = qobject_cast<QMenu*>(object); menu && menu != parent()) return FiltersMenu(menu, event);
        if (object != parent()) return FiltersControl(static_cast<const QWidget*>(object), event);
        auto* window = static_cast<QWidget*>(object);
        // A key that no control and no shortcut of the window wanted comes here.
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->matches(QKeySequence::HelpContents)) {
            ui_.HelpContext(helpTopic_);
            return true;
        }
        // While something long runs the window is disabled, which does not keep the desktop from asking it to close.
        if (event->type() == QEvent::Close && !window->isEnabled()) {
            event->ignore();
            return true;
        }
        // Styles hide the frame of the focus until the first Tab; where the keys go is to be seen from the start.
        if (event->type() == QEvent::Show) window->setAttribute(Qt::WA_KeyboardFocusChange);
        if (event->type() == QEvent::Show && !event->spontaneous()) KeepOnScreen(window);
        // Captions may be set between the making and the showing.
        if (event->type() == QEvent::Show && !event->spontaneous()) NameControls(window);
        if (event->type() == QEvent::Show || event->type() == QEvent::FontChange ||
            event->type() == QEvent::StyleChange)
            GiveButtonsOneWidth(window);
        return false;
    }

  private:
    bool FiltersControl(const QWidget* control, QEvent* event) const {
        if (event->type() == QEvent::Timer) return qobject_cast<const QAbstractButton*>(control) && IsBlocked();
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->matches(QKeySequence::HelpContents)) {
            ui_.HelpContext(helpTopic_);
            return true;
        }
        if (qobject_cast<const QLineEdit*>(control)) return false;
        // Who scrolls a page does not mean the box that passes below the pointer.
        if (event->type() != QEvent::Wheel || control->hasFocus()) return false;
        event->ignore();
        return true;
    }

    // A letter that a disabled item shares with one that can be used means the latter; Qt would only go round them.
    static bool FiltersMenu(QMenu* menu, QEvent* event) {
        if (event->type() != QEvent::KeyPress) return false;
        const QString typed = static_cast<QKeyEvent*>(event)->text().toUpper();
        QAction* usable = nullptr;
        int usables = 0;
        int sharing = 0;
        for (QAction* item : menu->actions()) {
            if (!item->isVisible() || typed.isEmpty() ||
                QKeySequence::mnemonic(item->text()).toString() != u"Alt+"_s + typed)
                continue;
            ++sharing;
            if (!item->isEnabled()) continue;
            ++usables;
            usable = item;
        }
        if (usables != 1 || sharing < 2) return false;
        menu->setActiveAction(usable);
        if (usable->menu()) return true;
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, {});
        QCoreApplication::sendEvent(menu, &enter);
        return true;
    }

    // A button that is pressed by its letter goes off when its timer says so, a moment later. Behind a dialog that has
    // come up meanwhile it waits: it might close the window that the dialog belongs to.
    bool IsBlocked() const {
        const auto* window = static_cast<const QWidget*>(parent());
        const QWidget* modal = QApplication::activeModalWidget();
        return modal && modal != window && !modal->isAncestorOf(window);
    }

    static inline quint64 lastMade = 0;

    const quint64 made_;
    UserInterface& ui_;
    const int helpTopic_;
    const FormKind kind_;
};

FormManner* MannerOf(const QWidget* window) {
    for (QObject* child : window->children())
        if (auto* manner = dynamic_cast<FormManner*>(child)) return manner;
    return nullptr;
}

QList<QWidget*> LoadedForms() {
    QList<QWidget*> forms;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (MannerOf(window)) forms += window;
    std::ranges::sort(forms, {}, [](const QWidget* window) { return MannerOf(window)->Made(); });
    return forms;
}

}  // namespace

void SetUpForm(QWidget* window, UserInterface& ui, int helpTopic, FormKind kind) {
    new FormManner(window, ui, helpTopic, kind);
    TakeIconsOffButtons(window);
    OrderButtonRow(window);
    GiveButtonsOneWidth(window);
    NameControls(window);
}

QList<QWidget*> OpenForms() {
    QList<QWidget*> forms = LoadedForms();
    forms.removeIf([](const QWidget* window) { return !window->isVisible(); });
    return forms;
}

bool IsAside(const QWidget* window) {
    const FormManner* manner = MannerOf(window);
    return manner && manner->Kind() == FormKind::Aside;
}

void FormPause::Begin(const QWidget* except) {
    End();
    for (QWidget* window : OpenForms())
        if (window != except && !window->testAttribute(Qt::WA_ForceDisabled))
            paused_.push_back({window, window->focusWidget()});
    for (const Paused& paused : paused_)
        paused.window->setEnabled(false);
}

void FormPause::End() {
    for (const Paused& paused : paused_) {
        if (!paused.window) continue;
        paused.window->setEnabled(true);
        if (paused.focus && !paused.window->focusWidget()) paused.focus->setFocus();
    }
    paused_.clear();
}

void WindowsCloseAll(const QWidget* except) {
    QList<QPointer<QWidget>> forms;
    for (QWidget* window : LoadedForms())
        if (window != except && MannerOf(window)->Kind() != FormKind::Lasting) forms += window;
    // Closing one may take another with it.
    for (const QPointer<QWidget>& window : forms)
        if (window) window->close();
}

void WinCenter(QWidget* window) {
    const QRect screen = window->screen()->availableGeometry();
    const QSize size = window->frameGeometry().size();
    window->move(screen.left() + (screen.width() - size.width()) / 2,
                 screen.top() + (screen.height() - size.height()) / 2);
}

}  // namespace quibra
