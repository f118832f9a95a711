// Solids hide what is behind them by being drawn from the farthest to the nearest. The order is exact: all of them are
// convex and parted by planes, rows by planes across the depth, places of a row by upright ones, and what lies on top
// of each other by the faces that it shares; of two solids parted by a plane the one on the eye's side is drawn later.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include "ui/chart/chart_parts.h"
#include "ui/chart/solid_view.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr double kBarShare = 0.72;
constexpr double kMostBar = 0.16;      // of the room's width
constexpr double kRowShare = 0.62;     // of the depth that a row has
constexpr double kClusterBack = 0.15;  // of the depth
constexpr double kClusterFront = 0.85;
constexpr double kRibbon = 0.014;  // of the room's width
constexpr double kMostLabelShare = 0.38;
constexpr unsigned kRightSide = 1U << 1;
constexpr unsigned kLeftSide = 1U << 3;

class SolidPlot {
  public:
    SolidPlot(const ChartCanvas& canvas, const QRectF& area, ChartKind kind)
        : canvas_(canvas),
          painter_(canvas.painter),
          plot_(canvas.plot),
          look_(canvas.look),
          kind_(kind),
          rows_(kind == ChartKind::Bar3d || plot_.Stacked ? 1 : plot_.SeriesCount()),
          values_(painter_, look_, area, plot_.SeriesCount() * plot_.Count()) {
        LayOut(area);
    }

    int Draw() {
        DrawRoom();
        if (kind_ == ChartKind::Bar3d && !plot_.Stacked)
            DrawClusters();
        else
            for (int row = rows_ - 1; row >= 0; --row)
                DrawRow(row);
        WriteValues();
        return labels_->Every();
    }

  private:
    double Depth() const {
        return rows_ > 1 ? std::clamp(0.1 * rows_, 0.2, 0.55) : std::clamp(0.7 / plot_.Count(), 0.07, 0.22);
    }

    void LayOut(const QRectF& area) {
        const double em = canvas_.em;
        axis_ =
            RoundAxis(plot_.Highest(), plot_.IsPercent, std::clamp(static_cast<int>(area.height() / (3.5 * em)), 2, 8));
        double widest = 0;
        for (int i = 0; i <= axis_.Steps; ++i)
            widest = std::max(widest, canvas_.Metrics().horizontalAdvance(axis_.Text(i, plot_.IsPercent)));
        double slot = 0.85 * area.width() / plot_.Count();
        double left = widest + 0.6 * em;
        for (int pass = 0; pass < 2; ++pass) {
            labels_.emplace(plot_.Categories, look_.font, painter_.device(), slot, area.height() * kMostLabelShare);
            left = std::max(left, labels_->LeftReach() - slot / 2);
            const QRectF room = area.adjusted(left, 1.4 * em, -0.2 * em, -labels_->Height() - 0.5 * em);
            view_.emplace(QRectF(room.topLeft(), room.size().expandedTo(QSizeF(em, em))), Depth());
            slot = (view_->Project({1, 0, Depth()}).x() - view_->Project({0, 0, Depth()}).x()) / plot_.Count();
        }
    }

    double X(double place) const { return place / plot_.Count(); }
    double Y(double value) const { return view_->Height() * value / axis_.Top(); }

    void Face(const std::vector<Point3>& corners, const QColor& color) {
        QPolygonF shape;
        for (const Point3& corner : corners)
            shape << view_->Project(corner);
        painter_.setBrush(color);
        painter_.drawPolygon(shape);
    }

    // Floor, the two walls behind the solids, the axis on them and the names in front.
    void DrawRoom() {
        const double h = view_->Height(), d = view_->Depth(), em = canvas_.em;
        QColor wall = look_.ink;
        wall.setAlphaF(0.04F);
        painter_.setPen(Qt::NoPen);
        Face({{0, 0, 0}, {1, 0, 0}, {1, h, 0}, {0, h, 0}}, wall);
        wall.setAlphaF(0.08F);
        Face({{0, 0, 0}, {0, 0, d}, {0, h, d}, {0, h, 0}}, wall);
        wall.setAlphaF(0.12F);
        Face({{0, 0, 0}, {1, 0, 0}, {1, 0, d}, {0, 0, d}}, wall);
        const QFontMetricsF metrics = canvas_.Metrics();
        painter_.setFont(look_.font);
        for (int i = 0; i <= axis_.Steps; ++i) {
            const double y = Y(axis_.Step * i);
            painter_.setPen(QPen(look_.GridColor(), em / 18));
            painter_.setBrush(Qt::NoBrush);
            painter_.drawPolyline(
                QPolygonF{view_->Project({0, y, d}), view_->Project({0, y, 0}), view_->Project({1, y, 0})});
            const QString text = axis_.Text(i, plot_.IsPercent);
            const QPointF place = view_->Project({0, y, d});
            painter_.setPen(look_.ink);
            painter_.drawText(QPointF(place.x() - 0.4 * em - metrics.horizontalAdvance(text),
                                      place.y() + (metrics.ascent() - metrics.descent()) / 2),
                              text);
        }
        if (!plot_.IsPercent) {
            const QPointF place = view_->Project({0, h, d});
            painter_.setPen(look_.SoftInk());
            painter_.drawText(
                QPointF(place.x() - 0.4 * em - metrics.horizontalAdvance(u"（人）"_s), place.y() - 0.8 * em),
                u"（人）"_s);
        }
        painter_.setPen(look_.ink);
        for (int i = 0; i < plot_.Count(); ++i)
            labels_->Draw(painter_, i, view_->Project({X(i + 0.5), 0, d}) + QPointF(0, 0.35 * em));
    }

    void Paint(const Prism& prism) {
        const size_t corners = prism.Outline.size();
        // A line of the face's own colour closes the seams between neighbours.
        const auto face = [&](const QPolygonF& shape, double shade) {
            const bool framed = kind_ == ChartKind::Bar3d || kind_ == ChartKind::Step3d;
            const QColor color = ChartColor(prism.Color, look_.IsDark());
            const QColor edge = framed ? MixedColor(color, look_.ground, 0.5) : color;
            painter_.setPen(QPen(edge, canvas_.em / 24, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
            FillChartShape(painter_, shape, prism.Color, look_, shade);
        };
        for (size_t i = 0; i < corners; ++i) {
            if (prism.Hidden >> i & 1) continue;
            const QPointF& p = prism.Outline[i];
            const QPointF& q = prism.Outline[(i + 1) % corners];
            const QPointF outward(q.y() - p.y(), p.x() - q.x());
            const double length = std::hypot(outward.x(), outward.y());
            const Point3& eye = view_->Eye();
            if (length <= 0 || (eye.x - p.x()) * outward.x() + (eye.y - p.y()) * outward.y() <= 0) continue;
            const double up = outward.y() / length;
            const double shade =
                1 + 0.25 * std::max(up, 0.0) - 0.28 * std::abs(outward.x()) / length + 0.35 * std::min(up, 0.0);
            face({view_->Project({p.x(), p.y(), prism.Front}), view_->Project({q.x(), q.y(), prism.Front}),
                  view_->Project({q.x(), q.y(), prism.Back}), view_->Project({p.x(), p.y(), prism.Back})},
                 shade);
        }
        QPolygonF front;
        for (const QPointF& corner : prism.Outline)
            front << view_->Project({corner.x(), corner.y(), prism.Front});
        face(front, 1);
    }

    static std::vector<QPointF> Box(double x0, double x1, double y0, double y1) {
        return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
    }

    // Places from the one farthest to the side of the eye to the one right before it.
    std::vector<int> FromOutside(const std::vector<double>& middles) const {
        std::vector<int> order(middles.size());
        std::iota(order.begin(), order.end(), 0);
        std::ranges::stable_sort(order, std::greater<>(),
                                 [&](int i) { return std::abs(middles[static_cast<size_t>(i)] - view_->Eye().x); });
        return order;
    }

    double BarWidth() const {
        const int beside = plot_.Stacked ? 1 : plot_.SeriesCount();
        return std::min(X(kBarShare) / beside, kMostBar);
    }
    double BarLeft(int s, int i) const {
        return X(i + 0.5) + (plot_.Stacked ? -0.5 : s - plot_.SeriesCount() / 2.0) * BarWidth();
    }

    void DrawClusters() {
        std::vector<double> middles;
        std::vector<Prism> prisms;
        for (int i = 0; i < plot_.Count(); ++i)
            for (int s = 0; s < plot_.SeriesCount(); ++s) {
                const double left = BarLeft(s, i);
                middles.push_back(left + BarWidth() / 2);
                prisms.push_back({Box(left, left + BarWidth(), 0, Y(plot_.At(s, i))), kClusterBack * view_->Depth(),
                                  kClusterFront * view_->Depth(), ColorOf(s)});
            }
        for (const int index : FromOutside(middles))
            Paint(prisms[static_cast<size_t>(index)]);
    }

    int ColorOf(int s) const { return plot_.Series[static_cast<size_t>(s)].Color; }
    // The z range of a row; row 0 is in front.
    double Front(int row) const {
        const double band = view_->Depth() / rows_;
        return view_->Depth() - band * (row + (1 - kRowShare) / 2);
    }
    double Back(int row) const { return Front(row) - view_->Depth() / rows_ * kRowShare; }

    // The piece of a row at place `i`: a box, or what lies between the middles of two places.
    Prism Piece(int s, int row, int i) const {
        const bool boxes = kind_ == ChartKind::Bar3d || kind_ == ChartKind::Step3d || plot_.Count() == 1;
        const auto low = [&](int place) { return Y(plot_.Stacked ? plot_.Below(s, place) : 0); };
        const auto top = [&](int place) { return low(place) + Y(plot_.At(s, place)); };
        const int next = boxes ? i : i + 1;
        double x0 = boxes ? X(i) : X(i + 0.5);
        double x1 = x0 + X(1);
        if (kind_ == ChartKind::Bar3d) {
            x0 = BarLeft(s, i);
            x1 = x0 + BarWidth();
        }
        Prism prism{{{x0, low(i)}, {x1, low(next)}, {x1, top(next)}, {x0, top(i)}}, Back(row), Front(row), ColorOf(s)};
        if (kind_ == ChartKind::Line3d) {
            prism.Outline[0].setY(std::max(0.0, top(i) - kRibbon / 2));
            prism.Outline[1].setY(std::max(0.0, top(next) - kRibbon / 2));
            prism.Outline[2].ry() += kRibbon / 2;
            prism.Outline[3].ry() += kRibbon / 2;
        }
        if (!boxes) prism.Hidden = (i > 0 ? kLeftSide : 0) | (i + 2 < plot_.Count() ? kRightSide : 0);
        return prism;
    }

    void DrawRow(int row) {
        const bool between = kind_ == ChartKind::Line3d || kind_ == ChartKind::Area3d;
        const int pieces = between && plot_.Count() > 1 ? plot_.Count() - 1 : plot_.Count();
        std::vector<double> middles;
        for (int i = 0; i < pieces; ++i)
            middles.push_back(X(i + (between ? 1 : 0.5)));
        for (const int i : FromOutside(middles)) {
            std::vector<Prism> layers;
            if (plot_.Stacked)
                for (int s = 0; s < plot_.SeriesCount(); ++s)
                    layers.push_back(Piece(s, row, i));
            else
                layers.push_back(Piece(row, row, i));
            PaintLayers(layers, 0, layers.size());
        }
    }

    // Layers `first` to `last` - 1, of which each lies on the one before it.
    void PaintLayers(const std::vector<Prism>& layers, size_t first, size_t last) {
        if (last - first == 1) {
            const std::vector<QPointF>& outline = layers[first].Outline;
            if (outline[3].y() > outline[0].y() || outline[2].y() > outline[1].y() || !plot_.Stacked)
                Paint(layers[first]);
            return;
        }
        const size_t middle = (first + last) / 2;
        const QPointF& p = layers[middle].Outline[0];
        const QPointF& q = layers[middle].Outline[1];
        const double level = p.y() + (q.y() - p.y()) * (view_->Eye().x - p.x()) / (q.x() - p.x());
        const bool eyeAbove = view_->Eye().y > level;
        if (!eyeAbove) PaintLayers(layers, middle, last);
        PaintLayers(layers, first, middle);
        if (eyeAbove) PaintLayers(layers, middle, last);
    }

    void WriteValues() {
        for (int s = 0; s < plot_.SeriesCount(); ++s)
            for (int i = 0; i < plot_.Count(); ++i)
                WriteValue(s, i);
    }

    void WriteValue(int s, int i) {
        const bool bars = kind_ == ChartKind::Bar3d;
        const bool clustered = bars && !plot_.Stacked;
        const double front = clustered ? kClusterFront * view_->Depth() : Front(rows_ > 1 ? s : 0);
        const double back = clustered ? kClusterBack * view_->Depth() : Back(rows_ > 1 ? s : 0);
        const double scale = view_->Project({1, 0, front}).x() - view_->Project({0, 0, front}).x();
        const double x = bars ? BarLeft(s, i) + BarWidth() / 2 : X(i + 0.5);
        const double low = Y(plot_.Stacked ? plot_.Below(s, i) : 0);
        const double top = low + Y(plot_.At(s, i));
        const double width = scale * (bars && plot_.SeriesCount() > 1 ? BarWidth() : X(1));
        const QString text = canvas_.ValueText(s, i);
        const QPointF upper = view_->Project({x, top, front});
        const QPointF behind = view_->Project({x, top, back});
        if (plot_.Stacked && kind_ != ChartKind::Line3d) {
            const double height = view_->Project({x, low, front}).y() - upper.y();
            QRectF face(upper.x() - width / 2, upper.y(), width, height);
            if (kind_ == ChartKind::Area3d && plot_.Count() > 1) {
                if (i == 0) face.setLeft(upper.x());
                if (i == plot_.Count() - 1) face.setRight(upper.x());
            }
            values_.Inside(face, ChartColor(ColorOf(s), look_.IsDark()), text);
        } else if (bars) {
            values_.OverBar({(upper.x() + behind.x()) / 2, std::min(upper.y(), behind.y())}, width, text, true);
        } else if (values_.WidthOf(text) < width) {
            values_.Beside((upper + behind) / 2, canvas_.em * 0.3, text);
        }
    }

    const ChartCanvas& canvas_;
    QPainter& painter_;
    const ChartPlot& plot_;
    const ChartLook& look_;
    ChartKind kind_;
    int rows_;
    ValueTexts values_;
    ChartAxis axis_;
    std::optional<CategoryLabels> labels_;
    std::optional<SolidView> view_;
};

}  // namespace

int DrawSolidPlot(const ChartCanvas& canvas, const QRectF& area, ChartKind kind) {
    return SolidPlot(canvas, area, kind).Draw();
}

}  // namespace quibra
