#include "ui/click_label.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFrame>
#include <QStylePainter>

namespace quibra {

namespace {

constexpr int kPadding = 4;
constexpr int kWidthInCharacters = 20;

class AccessibleClickLabel : public QAccessibleWidget {
  public:
    explicit AccessibleClickLabel(ClickLabel* label) : QAccessibleWidget(label, QAccessible::Button) {}

    QString text(QAccessible::Text which) const override {
        const QString value = Label()->text();
        return which == QAccessible::Name && !value.isEmpty() ? value : QAccessibleWidget::text(which);
    }
    QStringList actionNames() const override { return QStringList(pressAction()) + QAccessibleWidget::actionNames(); }
    void doAction(const QString& action) override {
        if (action != pressAction())
            QAccessibleWidget::doAction(action);
        else if (Label()->isEnabled())
            Q_EMIT Label()->clicked();
    }

  private:
    ClickLabel* Label() const { return static_cast<ClickLabel*>(widget()); }
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
    auto* label = qobject_cast<ClickLabel*>(object);
    return label ? new AccessibleClickLabel(label) : nullptr;
}

}  // namespace

ClickLabel::ClickLabel(QWidget* parent) : QLabel(parent) {
    static const bool installed = (QAccessible::installFactory(MakeAccessible), true);
    Q_UNUSED(installed);
    setTextFormat(Qt::PlainText);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ClickLabel::Show(const QString& text) {
    setText(text);
    setToolTip(text);
}

void ClickLabel::SetEditing(bool editing) {
    editing_ = editing;
    update();
}

QSize ClickLabel::sizeHint() const {
    const int frame = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    return {kWidthInCharacters * fontMetrics().averageCharWidth(), fontMetrics().height() + 2 * (frame + kPadding)};
}

QSize ClickLabel::minimumSizeHint() const {
    return sizeHint();
}

void ClickLabel::paintEvent(QPaintEvent*) {
    QStyleOptionFrame option;
    option.initFrom(this);
    option.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, this);
    option.state |= QStyle::State_Sunken;
    if (editing_) option.palette.setBrush(QPalette::Base, option.palette.window());
    QStylePainter painter(this);
    painter.drawPrimitive(QStyle::PE_PanelLineEdit, option);
    const int margin = option.lineWidth + kPadding;
    QRect inside = rect().adjusted(margin, 0, -margin, 0);
    option.rect = inside;
    option.rect.setLeft(inside.right() - fontMetrics().averageCharWidth());
    painter.drawPrimitive(QStyle::PE_IndicatorArrowRight, option);
    inside.setRight(option.rect.left() - kPadding);
    painter.drawItemText(inside, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, option.palette, isEnabled(),
                         fontMetrics().elidedText(text(), Qt::ElideRight, inside.width()), QPalette::Text);
}

void ClickLabel::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) Q_EMIT clicked();
}

void ClickLabel::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Q_EMIT clicked();
            break;
        default:
            QLabel::keyPressEvent(event);
    }
}

}  // namespace quibra
