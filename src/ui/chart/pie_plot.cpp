#include <algorithm>
#include <cmath>
#include <numbers>

#include "ui/chart/chart_parts.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr double kSmallestPie = 8;  // heights of a line
constexpr int kArcSteps = 120;      // of a whole circle
constexpr double kLeastInside = 0.06;
constexpr int kMostNameLines = 2;

// The point of a circle at a share of the way round, clockwise from the top.
QPointF OnCircle(const QPointF& center, double radius, double share) {
    const double angle = 2 * std::numbers::pi * share;
    return center + radius * QPointF(std::sin(angle), -std::cos(angle));
}

QPolygonF Slice(const QPointF& center, double radius, double from, double to) {
    QPolygonF slice;
    if (to - from < 1) slice << center;
    const int steps = std::max(1, static_cast<int>(std::ceil((to - from) * kArcSteps)));
    for (int i = 0; i <= steps; ++i)
        slice << OnCircle(center, radius, from + (to - from) * i / steps);
    return slice;
}

void DrawPie(const ChartCanvas& canvas, ValueTexts& values, int category, const QPointF& center, double radius) {
    const ChartPlot& plot = canvas.plot;
    QPainter& painter = canvas.painter;
    const double whole = plot.Below(plot.SeriesCount(), category);
    if (whole <= 0) {
        painter.setPen(QPen(canvas.look.GridColor(), canvas.em / 8));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(center, radius, radius);
        values.Beside(center, -values.LineHeight() / 2, u"該当者なし"_s);
        return;
    }
    double from = 0;
    for (int s = 0; s < plot.SeriesCount(); ++s) {
        const double share = plot.At(s, category) / whole;
        if (share <= 0) continue;
        const int color = plot.Series[static_cast<size_t>(s)].Color;
        painter.setPen(QPen(canvas.look.ground, canvas.em / 10));
        FillChartShape(painter, Slice(center, radius, from, from + share), color, canvas.look);
        const QString text = canvas.ValueText(s, category);
        const double middle = from + share / 2;
        const double room = 2 * std::numbers::pi * 0.66 * radius * share;
        if (share >= kLeastInside && room > 0.8 * values.WidthOf(text) && values.WidthOf(text) < 0.62 * radius) {
            const QPointF place = share < 1 ? OnCircle(center, 0.66 * radius, middle) : center;
            values.Inside(QRectF(place.x() - radius / 2, place.y() - radius / 2, radius, radius),
                          ChartColor(color, canvas.look.IsDark()), text);
        } else {
            const double reach = radius + values.LineHeight() * 0.6 +
                                 values.WidthOf(text) / 2 * std::abs(std::sin(2 * std::numbers::pi * middle));
            values.Beside(OnCircle(center, reach, middle), -values.LineHeight() / 2, text);
        }
        from += share;
    }
}

}  // namespace

int MostPies(const QSizeF& area, double em) {
    const auto along = [em](double length) { return std::max(1, static_cast<int>(length / (kSmallestPie * em))); };
    return along(area.width()) * along(area.height());
}

void DrawPies(const ChartCanvas& canvas, const QRectF& area) {
    const int count = canvas.plot.Count();
    const double em = canvas.em;
    const double nameHeight = count > 1 ? kMostNameLines * canvas.Metrics().lineSpacing() : 0;
    int columns = 1;
    double radius = 0;
    for (int tried = 1; tried <= count; ++tried) {
        const int rows = (count + tried - 1) / tried;
        const double fits = std::min(area.width() / tried - 4 * em, area.height() / rows - nameHeight - 2.2 * em) / 2;
        if (fits <= radius) continue;
        radius = fits;
        columns = tried;
    }
    radius = std::max(radius, em);
    const int rows = (count + columns - 1) / columns;
    const QSizeF cell(area.width() / columns, area.height() / rows);
    ValueTexts values(canvas.painter, canvas.look, area, 0);
    for (int i = 0; i < count; ++i) {
        const double x = area.left() + cell.width() * (i % columns + 0.5);
        const double top = area.top() + cell.height() * (i / columns);
        DrawPie(canvas, values, i, QPointF(x, top + (cell.height() - nameHeight) / 2), radius);
        if (count < 2) continue;
        canvas.painter.setFont(canvas.look.font);
        canvas.painter.setPen(canvas.look.ink);
        const TextBlock name = WrapText(canvas.plot.Categories[i], canvas.look.font, canvas.painter.device(),
                                        cell.width() - em, kMostNameLines);
        DrawTextBlock(canvas.painter, QPointF(x, top + (cell.height() - nameHeight) / 2 + radius + 1.1 * em), name);
    }
}

}  // namespace quibra
