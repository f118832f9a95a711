#include "ui/flex_grid_text.h"

#include <QPainter>
#include <QTextLayout>
#include <algorithm>

namespace quibra {

QString OneLine(QString text) {
    return text.replace(u'\r', u' ').replace(u'\n', u' ');
}

QStringList Wrapped(const QString& text, const QFont& font, int width, int maxLines) {
    // A layout reckons in parts of pixels, and would break what fits into the width by its metrics.
    if (QFontMetrics(font).horizontalAdvance(text) <= width) return {text};
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(width, 1));
        if (lines.size() == maxLines) {
            const auto start = text.size() - (layout.lineAt(maxLines - 1).textStart());
            lines.last() = QFontMetrics(font).elidedText(text.right(start), Qt::ElideRight, width);
            break;
        }
        lines << text.mid(line.textStart(), line.textLength());
    }
    layout.endLayout();
    return lines;
}

int LineCount(const QString& text, const QFontMetrics& metrics, const QFont& font, int width, int limit) {
    // No character is wider than a line is high: most texts are seen to fit without being laid out.
    if (text.size() * metrics.height() <= width || metrics.horizontalAdvance(text) <= width) return 1;
    return static_cast<int>(Wrapped(text, font, width, limit + 1).size());
}

void DrawLines(QPainter& painter, const QRect& rect, bool top, const QString& text) {
    const QFontMetrics metrics = painter.fontMetrics();
    const int room = std::max(1, (rect.height() - 2 * kGridRowPadding) / metrics.lineSpacing());
    const QStringList lines = Wrapped(text, painter.font(), rect.width(), room);
    const int height = static_cast<int>(lines.size()) * metrics.lineSpacing();
    int y = rect.top() + (top ? kGridRowPadding : (rect.height() - height) / 2);
    for (const QString& line : lines) {
        painter.drawText(rect.left(), y + metrics.ascent(), line);
        y += metrics.lineSpacing();
    }
}

QRect InsideCell(const QRect& cell) {
    return cell.adjusted(kGridSidePadding, 0, -kGridSidePadding, 0);
}

}  // namespace quibra
