// Colours, textures and marks of a chart. Told apart by lightness first, so that a grey printer and a colour-blind
// reader can do it too; by hue second, and beyond six by stripes.
#pragma once

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QPalette>
#include <QPen>
#include <QPolygonF>

class QPainter;

namespace quibra {

struct ChartLook {
    QFont font;
    QColor ground = Qt::white;
    QColor ink = Qt::black;
    double stripeGap = 6;

    // Black on white, whatever the screen looks like.
    static ChartLook Paper(const QFont& font);
    static ChartLook Screen(const QFont& font, const QPalette& palette);

    bool IsDark() const;
    QColor GridColor() const;  // of lines that only guide the eye
    QColor SoftInk() const;    // of texts beside the matter
};

// Series that can be told apart in one chart.
inline constexpr int kChartColors = 12;
// The first of them bear no stripes.
inline constexpr int kPlainColors = 6;
// In place of a series number: what stands for all that is left out.
inline constexpr int kRestColor = -1;

QColor ChartColor(int index, bool dark);
// `share` of the way from one colour to the other.
QColor MixedColor(const QColor& from, const QColor& to, double share);
// `shade` above 1 is lighter, below 1 darker: the faces of a solid.
void FillChartShape(QPainter& painter, const QPolygonF& shape, int index, const ChartLook& look, double shade = 1,
                    double opacity = 1);
// For the line of a series: its colour, and dashes beyond the first six.
QPen ChartLinePen(int index, const ChartLook& look, double width);
// The mark of a series at a point of its line; each has a form of its own.
void DrawChartMark(QPainter& painter, const QPointF& place, double size, int index, const ChartLook& look);
// The ink, or the ground, whichever can be read on the colour.
QColor ReadableOn(const QColor& color);

}  // namespace quibra
