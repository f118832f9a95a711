#include "ui/chart/chart_look.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace quibra {

namespace {

// Lightness (CIE L*) 40, 72, 27, 61, 84, 50 on white and a little more of it on a dark ground; neighbours differ most.
constexpr QRgb kOnLight[kPlainColors] = {0x096399, 0xf79c22, 0x602772, 0x0ea592, 0xead25c, 0xd2472c};
constexpr QRgb kOnDark[kPlainColors] = {0x0485cb, 0xffb158, 0x8a4e9b, 0x0abaa4, 0xffe88b, 0xf26244};

constexpr double kStripeShare = 0.2;

double Lightness(const QColor& color) {
    return 0.299 * color.redF() + 0.587 * color.greenF() + 0.114 * color.blueF();
}

QColor Shaded(const QColor& color, double shade) {
    return shade >= 1 ? MixedColor(color, Qt::white, std::min(1.0, shade - 1))
                      : MixedColor(color, Qt::black, 1 - shade);
}

// The parts inside `shape` of slanted stripes `gap` apart, as
// quadrangles. Worked out here: not every paint device can
// clip.
std::vector<QPolygonF> Stripes(const QPolygonF& shape, double gap) {
    const double half = std::numbers::sqrt2 / 2;
    const auto turned = [half](const QPointF& p) { return QPointF((p.x() - p.y()) * half, (p.x() + p.y()) * half); };
    const auto back = [half](double x, double y) { return QPointF((x + y) * half, (y - x) * half); };
    QPolygonF polygon;
    for (const QPointF& point : shape)
        polygon << turned(point);
    const QRectF box = polygon.boundingRect();
    const double width = gap * kStripeShare;
    std::vector<QPolygonF> stripes;
    std::vector<double> crossings;
    for (double y = std::ceil(box.top() / gap) * gap; y < box.bottom(); y += gap) {
        crossings.clear();
        for (qsizetype i = 0; i < polygon.size(); ++i) {
            const QPointF& a = polygon[i];
            const QPointF& b = polygon[(i + 1) % polygon.size()];
            if ((a.y() <= y) != (b.y() <= y))
                crossings.push_back(a.x() + (y - a.y()) / (b.y() - a.y()) * (b.x() - a.x()));
        }
        std::ranges::sort(crossings);
        for (size_t i = 0; i + 1 < crossings.size(); i += 2)
            stripes.push_back({back(crossings[i], y), back(crossings[i + 1], y), back(crossings[i + 1], y + width),
                               back(crossings[i], y + width)});
    }
    return stripes;
}

QPolygonF MarkShape(const QPointF& center, double radius, int index) {
    const auto regular = [&](int corners, double turn, double size) {
        QPolygonF shape;
        for (int i = 0; i < corners; ++i) {
            const double angle = turn + 2 * std::numbers::pi * i / corners;
            shape << center + radius * size * QPointF(std::sin(angle), -std::cos(angle));
        }
        return shape;
    };
    switch (index % kPlainColors) {
        case 0:
            return regular(16, 0, 1);
        case 1:
            return regular(4, std::numbers::pi / 4, 1.2);
        case 2:
            return regular(3, 0, 1.3);
        case 3:
            return regular(4, 0, 1.3);
        case 4:
            return regular(3, std::numbers::pi, 1.3);
        default:
            return regular(5, 0, 1.2);
    }
}

}  // namespace

QColor MixedColor(const QColor& from, const QColor& to, double share) {
    const auto part = [share](float a, float b) { return static_cast<float>(a + (b - a) * share); };
    return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()),
                            part(from.blueF(), to.blueF()));
}

ChartLook ChartLook::Paper(const QFont& font) {
    ChartLook look;
    look.font = font;
    return look;
}

ChartLook ChartLook::Screen(const QFont& font, const QPalette& palette) {
    ChartLook look;
    look.font = font;
    look.ground = palette.color(QPalette::Base);
    look.ink = palette.color(QPalette::Text);
    return look;
}

bool ChartLook::IsDark() const {
    return Lightness(ground) < 0.5;
}

QColor ChartLook::GridColor() const {
    return MixedColor(ground, ink, 0.16);
}

QColor ChartLook::SoftInk() const {
    return MixedColor(ground, ink, 0.72);
}

QColor ChartColor(int index, bool dark) {
    if (index < 0) return dark ? QColor(0x6e, 0x6e, 0x6e) : QColor(0xb8, 0xb8, 0xb8);
    return QColor(dark ? kOnDark[index % kPlainColors] : kOnLight[index % kPlainColors]);
}

void FillChartShape(QPainter& painter, const QPolygonF& shape, int index, const ChartLook& look, double shade,
                    double opacity) {
    QColor color = Shaded(ChartColor(index, look.IsDark()), shade);
    const QColor stripe = ReadableOn(color);
    color.setAlphaF(static_cast<float>(opacity));
    painter.setBrush(color);
    painter.drawPolygon(shape);
    // What shines through would be lost under stripes.
    if (index < kPlainColors || opacity < 1) return;
    const QRectF box = shape.boundingRect();
    if (std::min(box.width(), box.height()) < look.stripeGap / 4) return;
    const QPen pen = painter.pen();
    painter.setPen(Qt::NoPen);
    painter.setBrush(stripe);
    for (const QPolygonF& part : Stripes(shape, look.stripeGap))
        painter.drawConvexPolygon(part);
    painter.setPen(pen);
}

QPen ChartLinePen(int index, const ChartLook& look, double width) {
    QPen pen(ChartColor(index, look.IsDark()), width, index < kPlainColors ? Qt::SolidLine : Qt::DashLine);
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::RoundJoin);
    return pen;
}

void DrawChartMark(QPainter& painter, const QPointF& place, double size, int index, const ChartLook& look) {
    const QColor color = ChartColor(index, look.IsDark());
    painter.setPen(QPen(color, size / 5));
    painter.setBrush(index < kPlainColors ? color : look.ground);
    painter.drawPolygon(MarkShape(place, size / 2, index));
}

QColor ReadableOn(const QColor& color) {
    return Lightness(color) > 0.5 ? Qt::black : Qt::white;
}

}  // namespace quibra
