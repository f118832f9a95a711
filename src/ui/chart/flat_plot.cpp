#include <algorithm>
#include <numeric>
#include <optional>

#include "ui/chart/chart_parts.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr double kBarShare = 0.78;  // of a place's width
constexpr double kMostLabelShare = 0.42;
constexpr double kSeeThrough = 0.55;

class FlatPlot {
  public:
    FlatPlot(const ChartCanvas& canvas, const QRectF& area)
        : canvas_(canvas), painter_(canvas.painter), plot_(canvas.plot), look_(canvas.look) {
        LayOut(area);
        values_.emplace(painter_, look_, frame_.adjusted(0, -1.5 * canvas_.em, 0, 0),
                        plot_.SeriesCount() * plot_.Count());
    }

    int Draw(ChartKind kind) {
        DrawAxes();
        if (kind == ChartKind::Bar)
            DrawBars();
        else
            DrawCurves(kind);
        painter_.setPen(QPen(look_.ink, canvas_.em / 14));
        painter_.drawLine(frame_.bottomLeft(), frame_.bottomRight());
        return labels_->Every();
    }

  private:
    void LayOut(const QRectF& area) {
        const QFontMetricsF metrics = canvas_.Metrics();
        const double em = canvas_.em;
        frame_ = area.adjusted(0, 1.5 * em, 0, 0);
        axis_ =
            RoundAxis(plot_.Highest(), plot_.IsPercent, std::clamp(static_cast<int>(area.height() / (3 * em)), 2, 8));
        double widest = 0;
        for (int i = 0; i <= axis_.Steps; ++i)
            widest = std::max(widest, metrics.horizontalAdvance(axis_.Text(i, plot_.IsPercent)));
        frame_.setLeft(area.left() + widest + 0.6 * em);
        const auto layOutLabels = [&] {
            labels_.emplace(plot_.Categories, look_.font, painter_.device(), frame_.width() / plot_.Count(),
                            area.height() * kMostLabelShare);
        };
        layOutLabels();
        const double overhang =
            labels_->LeftReach() - frame_.width() / plot_.Count() / 2 - (frame_.left() - area.left());
        if (overhang > 0) {
            frame_.setLeft(frame_.left() + overhang);
            layOutLabels();
        }
        frame_.setBottom(std::max(frame_.top() + em, area.bottom() - labels_->Height() - 0.4 * em));
        slot_ = frame_.width() / plot_.Count();
    }

    double X(int category) const { return frame_.left() + slot_ * (category + 0.5); }
    double Y(double value) const { return frame_.bottom() - frame_.height() * value / axis_.Top(); }

    void DrawAxes() {
        const QFontMetricsF metrics = canvas_.Metrics();
        const double em = canvas_.em;
        painter_.setFont(look_.font);
        for (int i = 0; i <= axis_.Steps; ++i) {
            const double y = Y(axis_.Step * i);
            painter_.setPen(QPen(look_.GridColor(), em / 18));
            painter_.drawLine(QPointF(frame_.left(), y), QPointF(frame_.right(), y));
            const QString text = axis_.Text(i, plot_.IsPercent);
            painter_.setPen(look_.ink);
            painter_.drawText(QPointF(frame_.left() - 0.4 * em - metrics.horizontalAdvance(text),
                                      y + (metrics.ascent() - metrics.descent()) / 2),
                              text);
        }
        if (!plot_.IsPercent) {
            painter_.setPen(look_.SoftInk());
            painter_.drawText(
                QPointF(frame_.left() - 0.4 * em - metrics.horizontalAdvance(u"（人）"_s), frame_.top() - 0.75 * em),
                u"（人）"_s);
        }
        painter_.setPen(look_.ink);
        for (int i = 0; i < plot_.Count(); ++i)
            labels_->Draw(painter_, i, QPointF(X(i), frame_.bottom() + 0.3 * em));
    }

    void DrawBars() {
        const int beside = plot_.Stacked ? 1 : plot_.SeriesCount();
        const double most = canvas_.em * (plot_.Stacked || beside == 1 ? 7 : 4);
        const double width = std::min(slot_ * kBarShare / beside, most);
        const QPen edge = width > canvas_.em / 2 ? QPen(look_.ground, canvas_.em / 18) : QPen(Qt::NoPen);
        for (int i = 0; i < plot_.Count(); ++i) {
            for (int s = 0; s < plot_.SeriesCount(); ++s) {
                const double from = plot_.Stacked ? plot_.Below(s, i) : 0;
                const double value = plot_.At(s, i);
                const double left = X(i) + (plot_.Stacked ? -0.5 : s - beside / 2.0) * width;
                const QRectF bar(QPointF(left, Y(from + value)), QPointF(left + width, Y(from)));
                const int color = plot_.Series[static_cast<size_t>(s)].Color;
                painter_.setPen(edge);
                if (value > 0) FillChartShape(painter_, QPolygonF(bar), color, look_);
                if (plot_.Stacked)
                    values_->Inside(bar, ChartColor(color, look_.IsDark()),
                                    value > 0 ? canvas_.ValueText(s, i) : QString());
                else
                    values_->OverBar(QPointF(bar.center().x(), bar.top()), beside == 1 ? slot_ : width,
                                     canvas_.ValueText(s, i), false);
            }
        }
    }

    // The upper edge of a series: from middle to middle of its places, or in steps over their whole widths.
    QPolygonF Edge(int s, bool steps, bool below) const {
        QPolygonF edge;
        for (int i = 0; i < plot_.Count(); ++i) {
            double value = plot_.Stacked ? plot_.Below(s, i) : 0;
            if (!below) value += plot_.At(s, i);
            const double half = steps || plot_.Count() == 1 ? slot_ / 2 : 0;
            edge << QPointF(X(i) - half, Y(value));
            if (half > 0) edge << QPointF(X(i) + half, Y(value));
        }
        return edge;
    }

    void DrawCurves(ChartKind kind) {
        const bool steps = kind == ChartKind::Step;
        const bool filled = kind == ChartKind::Area || (steps && (plot_.Stacked || plot_.SeriesCount() == 1));
        std::vector<int> order(static_cast<size_t>(plot_.SeriesCount()));
        std::iota(order.begin(), order.end(), 0);
        // Of areas that overlap the larger ones lie behind the smaller.
        if (!plot_.Stacked) std::ranges::stable_sort(order, [&](int a, int b) { return SumOf(a) > SumOf(b); });
        if (filled)
            for (const int s : order) {
                QPolygonF shape = Edge(s, steps, false);
                const QPolygonF lower = Edge(s, steps, true);
                for (auto point = lower.rbegin(); point != lower.rend(); ++point)
                    shape << *point;
                painter_.setPen(Qt::NoPen);
                const bool overlaps = !plot_.Stacked && plot_.SeriesCount() > 1;
                FillChartShape(painter_, shape, plot_.Series[static_cast<size_t>(s)].Color, look_, 1,
                               overlaps ? kSeeThrough : 1);
            }
        for (const int s : order) {
            const int color = plot_.Series[static_cast<size_t>(s)].Color;
            const bool alone = kind == ChartKind::Line && plot_.Count() == 1;
            painter_.setPen(filled && plot_.Stacked ? QPen(look_.ground, canvas_.em / 12)
                                                    : ChartLinePen(color, look_, canvas_.em / 6));
            painter_.setBrush(Qt::NoBrush);
            if (!alone) painter_.drawPolyline(Edge(s, steps, false));
            if (kind == ChartKind::Line && slot_ > canvas_.em / 3)
                for (int i = 0; i < plot_.Count(); ++i)
                    DrawChartMark(painter_, Point(s, i), canvas_.em * 0.55, color, look_);
        }
        for (int s = 0; s < plot_.SeriesCount(); ++s)
            for (int i = 0; i < plot_.Count(); ++i)
                WriteValue(kind, s, i);
    }

    void WriteValue(ChartKind kind, int s, int i) {
        const QString text = canvas_.ValueText(s, i);
        if (values_->WidthOf(text) > slot_) return;
        const QPointF place = Point(s, i);
        if (kind == ChartKind::Line || !plot_.Stacked) {
            values_->Beside(place, canvas_.em * (kind == ChartKind::Line ? 0.35 : 0.1), text);
            return;
        }
        QRectF layer(place.x() - slot_ / 2, place.y(), slot_, Y(plot_.Below(s, i)) - place.y());
        if (kind == ChartKind::Area && plot_.Count() > 1) {
            // An area has but half of its first and of its last place.
            if (i == 0) layer.setLeft(place.x());
            if (i == plot_.Count() - 1) layer.setRight(place.x());
        }
        values_->Inside(layer, ChartColor(plot_.Series[static_cast<size_t>(s)].Color, look_.IsDark()), text);
    }

    QPointF Point(int s, int i) const { return {X(i), Y((plot_.Stacked ? plot_.Below(s, i) : 0) + plot_.At(s, i))}; }
    double SumOf(int s) const {
        const std::vector<double>& values = plot_.Series[static_cast<size_t>(s)].Values;
        return std::accumulate(values.begin(), values.end(), 0.0);
    }

    const ChartCanvas& canvas_;
    QPainter& painter_;
    const ChartPlot& plot_;
    const ChartLook& look_;
    std::optional<ValueTexts> values_;
    std::optional<CategoryLabels> labels_;
    ChartAxis axis_;
    QRectF frame_;
    double slot_ = 0;
};

}  // namespace

int DrawFlatPlot(const ChartCanvas& canvas, const QRectF& area, ChartKind kind) {
    return FlatPlot(canvas, area).Draw(kind);
}

}  // namespace quibra
