#include "conditions/windows/limit_rows.h"

#include <QPainter>
#include <QSignalBlocker>

#include "ui/theme.h"

using namespace Qt::StringLiterals;

namespace quibra {

void LimitRowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.row() == 0 || index.row() == index.model()->rowCount() - 1)
        option->backgroundBrush = ColorOf(ThemeColor::HeadingTint, option->palette);
}

// The mark stands at the lower edge of the row before, which is painted first and is not the selected one, unless it
// is the heading.
void LimitRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    if (index.row() != insertionRow_ - 1) return;
    const QRectF row = option.rect;
    const qreal tip = row.height() / 4;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(option.state & QStyle::State_Selected ? option.palette.highlightedText().color()
                                                            : ColorOf(ThemeColor::Accent, option.palette));
    painter->drawRect(QRectF(row.left(), row.bottom() - 2, row.width(), 2));
    painter->drawPolygon(QPolygonF({{row.right() - 2 * tip, row.bottom() - tip},
                                    {row.right(), row.bottom() - tip},
                                    {row.right() - tip, row.bottom()}}));
    painter->restore();
}

void PreLimitDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    option->text = u"%1  %2"_s.arg(QString::number(index.row()), 2, QChar(0x2007)).arg(option->text);
    const auto* list = qobject_cast<const QListWidget*>(option->widget);
    if (list == nullptr || list->selectionMode() != QAbstractItemView::MultiSelection) return;
    option->features |= QStyleOptionViewItem::HasCheckIndicator;
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
