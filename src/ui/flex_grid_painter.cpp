#include "ui/flex_grid_painter.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "ui/theme.h"

namespace quibra {

namespace {

constexpr int kMaxRowLines = 4;
// A tool tip: its width in heights of a line, and its lines.
constexpr int kTipWidth = 40;
constexpr int kMaxTipLines = 20;
// Figures are drawn to the right of a box of so many digits at the left of their cell.
constexpr int kFigureDigits = 7;

// The ground of every other row: a little of the text's colour, since a ground that the user has chosen has no
// alternate.
QColor Band(const QPalette& palette, QPalette::ColorGroup group) {
    constexpr float kShare = 0.05F;
    const QColor base = palette.color(group, QPalette::Base);
    const QColor text = palette.color(group, QPalette::Text);
    const auto mix = [](float from, float to) { return from + (to - from) * kShare; };
    return QColor::fromRgbF(mix(base.redF(), text.redF()), mix(base.greenF(), text.greenF()),
                            mix(base.blueF(), text.blueF()));
}

}  // namespace

int FlexGridPainter::FigureWidth() const {
    const QFontMetrics metrics(grid_->font());
    const int widest =
        std::max(kFigureDigits * metrics.horizontalAdvance(u'0'), metrics.horizontalAdvance(QStringLiteral("100.0%")));
    return widest + 2 * kGridSidePadding;
}

QFont FlexGridPainter::FontOf(int row) const {
    QFont font = grid_->font();
    if (Kind(row) == GridRowKind::Heading) font.setBold(true);
    return font;
}

bool FlexGridPainter::HasFocus(int row, int column) const {
    return grid_->hasFocus() && grid_->currentIndex() == grid_->model()->index(row, column);
}

// The column whose text stands in a cell: its own, or one to the left from which it flows over; -1 for none.
int FlexGridPainter::SourceOf(int row, int column) const {
    if (column == grid_->model()->columnCount()) --column;
    while (column >= 0 && Text(row, column).isEmpty())
        --column;
    return column;
}

// The room of a cell's text: the cell, and the empty ones behind it. Behind the last cell it goes on to the edge.
int FlexGridPainter::FlowWidth(int row, int column) const {
    const QHeaderView* header = grid_->horizontalHeader();
    if (IsFigure(row, column)) return header->sectionSize(column);
    const int columns = grid_->model()->columnCount();
    int end = column + 1;
    while (end < columns && Text(row, end).isEmpty())
        ++end;
    const int right =
        end < columns ? header->sectionPosition(end) : std::max(header->length(), grid_->viewport()->width());
    return right - header->sectionPosition(column);
}

QRect FlexGridPainter::FlowOf(int row, int column) const {
    QRect flow = grid_->visualRect(grid_->model()->index(row, column));
    // Column 0 may stand further to the right than its place; what flows out of it ends where it would.
    flow.setRight(std::max(flow.right(), grid_->columnViewportPosition(column) + FlowWidth(row, column) - 1));
    return flow;
}

void FlexGridPainter::Paint(QPainter& painter, const QStyleOptionViewItem& option, int row, int column) const {
    const GridRowKind kind = Kind(row);
    const QPalette& palette = option.palette;
    const int source = SourceOf(row, column);
    const bool flows = source >= 0 && source != column && !IsFigure(row, source);
    // One text, one ground: what flows over its neighbours is selected all along.
    const bool selected = option.state.testFlag(QStyle::State_Selected) || (flows && grid_->IsSelected(row, source));
    const QPalette::ColorGroup group =
        option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    QColor ground = palette.color(group, QPalette::Base);
    if (selected)
        ground = palette.color(group, QPalette::Highlight);
    else if (kind == GridRowKind::Heading)
        ground = ColorOf(ThemeColor::HeadingTint, palette);
    else if (kind == GridRowKind::Choice && row % 2 != 0)
        ground = Band(palette, group);
    painter.save();
    painter.setClipRect(option.rect, Qt::IntersectClip);
    painter.fillRect(option.rect, ground);
    if (kind == GridRowKind::Total) {
        const QRect rule(option.rect.left(), option.rect.top(), option.rect.width(), 1);
        painter.fillRect(rule, palette.color(group, QPalette::Text));
    }
    if (flows || (source >= 0 && source == column)) {
        painter.setPen(palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text));
        painter.setFont(FontOf(row));
        QRect place = InsideCell(FlowOf(row, source));
        const QString text = Text(row, source);
        if (IsFigure(row, source)) {
            const QFontMetrics metrics = painter.fontMetrics();
            place.setWidth(std::min(place.width(), FigureWidth() - 2 * kGridSidePadding));
            painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter,
                             metrics.elidedText(text, Qt::ElideRight, place.width()));
        } else {
            const int alignment = grid_->model()->index(row, source).data(Qt::TextAlignmentRole).toInt();
            DrawLines(painter, place, (alignment & Qt::AlignTop) != 0, text);
        }
    }
    // The frame of the focus goes round the whole of a text that flows, too.
    const bool focused = option.state.testFlag(QStyle::State_HasFocus);
    if (focused || (flows && HasFocus(row, source))) {
        const bool alone = source != column || IsFigure(row, column);
        const QRect frame = focused && alone ? option.rect : FlowOf(row, source);
        painter.setPen(palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text));
        painter.drawRect(frame.adjusted(0, 0, -1, -1));
    }
    painter.restore();
}

int FlexGridPainter::RowLines(int row) const {
    const QFont font = FontOf(row);
    const QFontMetrics metrics(font);
    int lines = 1;
    for (int column = 0; column < grid_->model()->columnCount(); ++column) {
        const QString text = Text(row, column);
        if (text.isEmpty() || IsFigure(row, column)) continue;
        const int width = FlowWidth(row, column) - 2 * kGridSidePadding;
        lines = std::max(lines, LineCount(text, metrics, font, width, kMaxRowLines));
    }
    return std::min(lines, kMaxRowLines);
}

bool FlexGridPainter::helpEvent(QHelpEvent* event, QAbstractItemView*, const QStyleOptionViewItem&,
                                const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip || !index.isValid()) return false;
    QString tip;
    if (const int source = SourceOf(index.row(), index.column()); source >= 0) {
        const QString text = Text(index.row(), source);
        const QFont font = FontOf(index.row());
        const QRect flow = FlowOf(index.row(), source);
        const int room = std::max(1, (flow.height() - 2 * kGridRowPadding) / QFontMetrics(font).lineSpacing());
        if (LineCount(text, QFontMetrics(font), font, InsideCell(flow).width(), room) > room)
            tip = Wrapped(text, QToolTip::font(), kTipWidth * QFontMetrics(QToolTip::font()).height(), kMaxTipLines)
                      .join(u'\n');
    }
    QToolTip::showText(event->globalPos(), tip, grid_);
    return true;
}

}  // namespace quibra
