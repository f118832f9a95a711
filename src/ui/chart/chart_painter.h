// Draws a chart: the same for the screen, for pictures and for paper. Whoever draws needs fonts, so a QGuiApplication.
#pragma once

#include <QRectF>

#include "core/chart_table.h"
#include "ui/chart/chart_look.h"

class QPainter;

namespace quibra {

enum class ChartKind { Bar, Pie, Line, Area, Step, Bar3d, Line3d, Area3d, Step3d };

struct ChartStyle {
    ChartKind Kind = ChartKind::Bar;
    // Each row becomes one place on the axis with its labels' values on top of each other; otherwise each label is a
    // place with one value for each row beside the others. A pie is drawn for each row either way.
    bool Stacked = false;
};

// Fills `area` with ground and chart. What is too much to be read there is left out, and a note below says what.
void PaintChart(QPainter& painter, const QRectF& area, const ChartTable& table, ChartStyle style,
                const ChartLook& look);

}  // namespace quibra
