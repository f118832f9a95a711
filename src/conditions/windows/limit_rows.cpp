#include "conditions/windows/limit_rows.h"

#include <QPainter>
#include <QSignalBlocker>

#include "ui/theme.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr float kPale = 0.3F;

}  // namespace

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(std::max(size.height(), option.fontMetrics.height() * 3 / 2));
    return size;
}

void RowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->widget == nullptr || option->widget->hasFocus()) return;
    QColor ground = option->palette.color(QPalette::Highlight);
    ground.setAlphaF(kPale);
    option->palette.setColor(QPalette::Highlight, ground);
    option->palette.setColor(QPalette::HighlightedText, option->palette.color(QPalette::Text));
}

void LimitRowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    RowDelegate::initStyleOption(option, index);
    if (index.row() == 0 || index.row() == index.model()->rowCount() - 1)
        option->backgroundBrush = ColorOf(ThemeColor::HeadingTint, option->palette);
}

// The mark stands at the lower edge of the row before, in the colour of text: it touches the selected row, in whose
// colour it would be lost.
void LimitRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    RowDelegate::paint(painter, option, index);
    if (index.row() != insertionRow_ - 1) return;
    const QRectF row = option.rect;
    const qreal edge = row.top() + row.height();
    const qreal tip = row.height() / 3;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(option.palette.text());
    painter->drawRect(QRectF(row.left(), edge - 2, row.width(), 2));
    painter->drawPolygon(
        QPolygonF({{row.right() - 2 * tip, edge - tip}, {row.right(), edge - tip}, {row.right() - tip, edge}}));
    painter->restore();
}

void PreLimitDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    RowDelegate::initStyleOption(option, index);
    option->text = u"%1  %2"_s.arg(QString::number(index.row()), 2, QChar(0x2007)).arg(option->text);
    const auto* list = qobject_cast<const QListWidget*>(option->widget);
    if (list == nullptr || list->selectionMode() != QAbstractItemView::MultiSelection) return;
    option->features |= QStyleOptionViewItem::HasCheckIndicator;
    // The style draws the box's edge from this colour, and on a dark ground would lose it.
    option->palette.setColor(QPalette::Window, ColorOf(ThemeColor::NotApplicable, option->palette));
    option->checkState = option->state & QStyle::State_Selected ? Qt::Checked : Qt::Unchecked;
}

void FillRows(QListWidget* list, const QStringList& rows, int row) {
    const QSignalBlocker blocker(list);
    list->clear();
    list->addItems(rows);
    for (int i = 0; i < list->count(); ++i)
        list->item(i)->setToolTip(rows[i]);
    list->setCurrentRow(row);
}

}  // namespace quibra
