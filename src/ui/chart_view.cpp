#include "ui/chart_view.h"

#include <QPainter>

#include "ui/chart/chart_files.h"

namespace quibra {

ChartView::ChartView(QWidget* parent) : QWidget(parent) {
    setAccessibleName(QStringLiteral("グラフ"));
}

void ChartView::SetTable(const ChartTable& table) {
    table_ = table;
    // A reader who sees no picture gets its figures.
    setAccessibleName(table.Title);
    setAccessibleDescription(ChartDescription(table));
    update();
}

void ChartView::SetStyle(ChartStyle style) {
    style_ = style;
    update();
}

void ChartView::SetHint(const QString& hint) {
    hint_ = hint;
    update();
}

QSize ChartView::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    return {64 * metrics.averageCharWidth(), 22 * metrics.lineSpacing()};
}

QSize ChartView::minimumSizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    return {20 * metrics.averageCharWidth(), 8 * metrics.lineSpacing()};
}

void ChartView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ChartLook look = ChartLook::Screen(font(), palette());
    PaintChart(painter, rect(), table_, style_, look);
    if (!IsEmpty()) return;
    painter.setPen(look.SoftInk());
    const int margin = fontMetrics().height();
    painter.drawText(rect().adjusted(margin, margin, -margin, -margin), Qt::AlignCenter | Qt::TextWordWrap, hint_);
}

}  // namespace quibra
