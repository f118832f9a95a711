// The plots that a chart can hold, each drawn into the room that title, legend and notes leave.
#pragma once

#include <QPainter>

#include "ui/chart/chart_axis.h"
#include "ui/chart/chart_look.h"
#include "ui/chart/chart_painter.h"
#include "ui/chart/chart_plot.h"
#include "ui/chart/chart_text.h"

namespace quibra {

// What the drawing functions share. Lives as long as one drawing.
struct ChartCanvas {
    QPainter& painter;
    const ChartLook& look;
    const ChartPlot& plot;
    double em;

    QFontMetricsF Metrics() const { return QFontMetricsF(look.font, painter.device()); }
    QString ValueText(int series, int category) const {
        return ChartValueText(plot.At(series, category), plot.IsPercent);
    }
};

// Room that a bar needs at least, in heights of a line; more where stripes have to be seen on it.
inline constexpr double kThinnestBar = 0.12;
inline constexpr double kThinnestStriped = 0.25;

// Bars, lines, areas or steps over a value axis. Gives how many places share one name.
int DrawFlatPlot(const ChartCanvas& canvas, const QRectF& area, ChartKind kind);
// The same as solids seen in perspective.
int DrawSolidPlot(const ChartCanvas& canvas, const QRectF& area, ChartKind kind);
// A pie for each category.
void DrawPies(const ChartCanvas& canvas, const QRectF& area);
// How many pies that can be read have room.
int MostPies(const QSizeF& area, double em);

}  // namespace quibra
