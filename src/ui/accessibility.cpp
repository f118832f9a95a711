#include "ui/accessibility.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QEvent>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QTextEdit>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// "追加(&N)" is "追加(N)", "A && B" is "A & B".
QString WithoutMnemonic(QString text) {
    for (qsizetype i = 0; i < text.size(); ++i)
        if (text[i] == u'&') text.remove(i, 1);
    return text;
}

QString PlaceholderOf(const QWidget* widget) {
    if (const auto* line = qobject_cast<const QLineEdit*>(widget)) return line->placeholderText();
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(widget)) return text->placeholderText();
    if (const auto* text = qobject_cast<const QTextEdit*>(widget)) return text->placeholderText();
    return {};
}

QAccessibleInterface* AccessibleOf(const QWidget* widget) {
    return QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
}

QString NameOf(const QWidget* widget) {
    QAccessibleInterface* accessible = AccessibleOf(widget);
    return accessible ? accessible->text(QAccessible::Name).trimmed() : QString();
}

// The editor in a spin box, the list of a combo box, a header: parts of one control that Qt names itself.
bool IsPartOfControl(const QWidget* widget, const QWidget* window) {
    if (widget->objectName().startsWith(u"qt_")) return true;
    for (const QWidget* parent = widget->parentWidget(); parent && parent != window; parent = parent->parentWidget())
        if (qobject_cast<const QComboBox*>(parent) || qobject_cast<const QAbstractSpinBox*>(parent) ||
            qobject_cast<const QAbstractItemView*>(parent))
            return true;
    return false;
}

// To Qt a window that is a plain QWidget is a pane, which screen readers pass over. Controls and Qt's own windows are
// known by the names of their classes before "QWidget" is asked for.
QAccessibleInterface* AccessibleWindow(const QString& className, QObject* object) {
    if (className != u"QWidget") return nullptr;
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget || widget->windowType() != Qt::Window) return nullptr;
    return new QAccessibleWidget(widget, QAccessible::Window);
}

class AccessibleIds : public QObject {
  public:
    using QObject::QObject;

    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Polish && object->isWidgetType() && !object->objectName().isEmpty())
            static_cast<QWidget*>(object)->setAccessibleDescription(u'#' + object->objectName());
        return false;
    }
};

}  // namespace

QList<QWidget*> ControlsOf(const QWidget* window) {
    QList<QWidget*> controls;
    for (QWidget* widget : window->findChildren<QWidget*>())
        if (widget->window() == window->window() && widget->focusPolicy() != Qt::NoFocus && !widget->focusProxy() &&
            !qobject_cast<QScrollArea*>(widget) && !IsPartOfControl(widget, window))
            controls += widget;
    return controls;
}

void NameControls(QWidget* window) {
    QHash<const QWidget*, QString> buddies;
    for (const QLabel* label : window->findChildren<QLabel*>())
        if (label->buddy()) buddies.insert(label->buddy(), WithoutMnemonic(label->text()));
    for (QWidget* control : ControlsOf(window)) {
        if (!NameOf(control).isEmpty()) continue;
        for (const QString& name : {buddies.value(control), control->toolTip(), PlaceholderOf(control)}) {
            if (name.trimmed().isEmpty()) continue;
            control->setAccessibleName(name);
            break;
        }
    }
}

QStringList UnnamedControls(const QWidget* window) {
    QStringList unnamed;
    for (const QWidget* control : ControlsOf(window))
        if (control->isVisibleTo(window) &&
            (NameOf(control).isEmpty() || AccessibleOf(control)->role() == QAccessible::Window))
            unnamed += QString::fromLatin1(control->metaObject()->className()) + u' ' + control->objectName();
    return unnamed;
}

void InstallAccessibility(QApplication& application) {
    QAccessible::installFactory(AccessibleWindow);
    if (qEnvironmentVariable("QUIBRA_A11Y_IDS") == u"1"_s)
        application.installEventFilter(new AccessibleIds(&application));
}

}  // namespace quibra
