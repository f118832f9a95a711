#include "ui/chart/chart_painter.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/chart/chart_parts.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr double kTitleScale = 1.2;
constexpr int kMostTitleLines = 2;
constexpr int kMostLegendRows = 2;  // below the plot; more of them stand beside it
constexpr double kMostLegendShare = 0.3;
constexpr double kSmallestFont = 0.6;
constexpr double kUsualHeight = 20;  // lines of text to a chart whose font is as asked for

bool IsSolid(ChartKind kind) {
    return kind >= ChartKind::Bar3d;
}

class Chart {
  public:
    Chart(QPainter& painter, const QRectF& area, const ChartTable& table, ChartStyle style, const ChartLook& look)
        : painter_(painter), area_(area), table_(table), style_(style), look_(look) {
        // A small picture has small letters.
        const double lines = area.height() / QFontMetricsF(look_.font, painter.device()).height();
        if (lines < kUsualHeight) look_.font = ScaledFont(look_.font, std::max(kSmallestFont, lines / kUsualHeight));
        em_ = QFontMetricsF(look_.font, painter.device()).height();
        look_.stripeGap = em_ / 2.5;
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setFont(look_.font);
    }

    void Draw() {
        painter_.fillRect(area_, look_.ground);
        area_.adjust(0.8 * em_, 0.7 * em_, -0.8 * em_, -0.6 * em_);
        DrawTitle();
        if (table_.Labels.isEmpty() || table_.Rows.empty() || area_.height() < 3 * em_ || area_.width() < 5 * em_)
            return;
        Arrange();
        const double roomForNotes = ReserveNotes();
        area_.setBottom(area_.bottom() - roomForNotes);
        const QRectF notes(area_.left(), area_.bottom(), area_.width(), roomForNotes);
        if (style_.Kind == ChartKind::Pie || plot_.Stacked || plot_.SeriesCount() > 1) DrawLegend();
        const ChartCanvas canvas{painter_, look_, plot_, em_};
        int every = 1;
        if (style_.Kind == ChartKind::Pie)
            DrawPies(canvas, area_);
        else if (IsSolid(style_.Kind))
            every = DrawSolidPlot(canvas, area_, style_.Kind);
        else
            every = DrawFlatPlot(canvas, area_, style_.Kind);
        if (every > 1) plot_.Notes << u"項目名は%1項目おきに示しています。"_s.arg(every);
        DrawNotes(notes);
    }

  private:
    void DrawTitle() {
        if (table_.Title.isEmpty()) return;
        QFont font = ScaledFont(look_.font, kTitleScale);
        font.setBold(true);
        const TextBlock title = WrapText(table_.Title, font, painter_.device(), area_.width(), kMostTitleLines);
        painter_.setFont(font);
        painter_.setPen(look_.ink);
        DrawTextBlock(painter_, QPointF(area_.center().x(), area_.top()), title);
        const double height =
            static_cast<double>(title.Lines.size()) * QFontMetricsF(font, painter_.device()).lineSpacing();
        area_.setTop(area_.top() + height + 0.4 * em_);
    }

    void Arrange() {
        const int fits = std::clamp(static_cast<int>(area_.height() * 0.8 / (1.15 * em_)), 2, kChartColors);
        if (style_.Kind == ChartKind::Pie) {
            const QSizeF room(area_.width() * (1 - kMostLegendShare), area_.height() - em_);
            plot_ = PlotByRow(table_, fits, MostPies(room, em_));
        } else if (style_.Stacked) {
            plot_ = PlotByRow(table_, fits, MostPlaces(1));
        } else {
            const int rows = std::min(fits, static_cast<int>(table_.Rows.size()));
            plot_ = PlotByLabel(table_, fits, MostPlaces(rows));
        }
    }

    // Places on the axis of which each has so many values beside each other.
    int MostPlaces(int values) const {
        return std::max(
            2, static_cast<int>(area_.width() * 0.8 /
                                (em_ * (values > kPlainColors ? kThinnestStriped : kThinnestBar) * (values + 1))));
    }

    QFont SmallFont() const { return ScaledFont(look_.font, 0.85); }

    double ReserveNotes() const {
        const bool thin = style_.Kind != ChartKind::Pie && area_.width() * 0.75 < 1.2 * em_ * plot_.Count();
        if (plot_.Notes.isEmpty() && !thin) return 0;
        return 2 * QFontMetricsF(SmallFont(), painter_.device()).lineSpacing() + 0.3 * em_;
    }

    void DrawNotes(const QRectF& place) {
        if (plot_.Notes.isEmpty()) return;
        const QFont font = SmallFont();
        painter_.setFont(font);
        painter_.setPen(look_.SoftInk());
        const TextBlock block = WrapText(plot_.Notes.join(QString()), font, painter_.device(), place.width(), 2);
        DrawTextBlock(painter_, place.topLeft() + QPointF(0, 0.3 * em_), block, Qt::AlignLeft);
    }

    void DrawSwatch(const QPointF& left, int color) {
        const double size = 0.8 * em_;
        painter_.setPen(QPen(look_.SoftInk(), em_ / 24));
        if (style_.Kind == ChartKind::Line && !plot_.Stacked) {
            painter_.setPen(ChartLinePen(color, look_, em_ / 6));
            painter_.drawLine(left - QPointF(0.2 * em_, 0), left + QPointF(size + 0.2 * em_, 0));
            DrawChartMark(painter_, left + QPointF(size / 2, 0), em_ * 0.55, color, look_);
        } else {
            FillChartShape(painter_, QPolygonF(QRectF(left.x(), left.y() - size / 2, size, size)), color, look_);
        }
    }

    // Below the plot where a row or two will do, otherwise beside it.
    void DrawLegend() {
        const QFontMetricsF metrics(look_.font, painter_.device());
        const double lineHeight = 1.15 * metrics.height();
        const double swatch = 1.25 * em_;
        std::vector<double> widths;
        int rows = 1;
        double x = 0;
        for (const PlotSeries& series : plot_.Series) {
            const double width = swatch + metrics.horizontalAdvance(series.Name.simplified()) + 1.2 * em_;
            if (x > 0 && x + width > area_.width()) {
                ++rows;
                x = 0;
            }
            x += width;
            widths.push_back(width);
        }
        const double widest = *std::ranges::max_element(widths);
        if (rows <= kMostLegendRows && widest <= area_.width())
            DrawLegendBelow(widths, rows, lineHeight, swatch);
        else
            DrawLegendBeside(std::min(widest, area_.width() * kMostLegendShare), swatch, metrics);
    }

    void DrawLegendBelow(const std::vector<double>& widths, int rows, double lineHeight, double swatch) {
        const double top = area_.bottom() - rows * lineHeight;
        double y = top + lineHeight / 2;
        size_t i = 0;
        while (i < widths.size()) {
            double length = 0;
            size_t end = i;
            while (end < widths.size() && (end == i || length + widths[end] <= area_.width()))
                length += widths[end++];
            double x = area_.center().x() - (length - 1.2 * em_) / 2;
            for (; i < end; ++i) {
                DrawLegendEntry(QPointF(x, y), plot_.Series[i], swatch,
                                WrapText(plot_.Series[i].Name, look_.font, painter_.device(), widths[i], 1));
                x += widths[i];
            }
            y += lineHeight;
        }
        area_.setBottom(top - 0.5 * em_);
    }

    void DrawLegendBeside(double width, double swatch, const QFontMetricsF& metrics) {
        const double lineHeight = metrics.lineSpacing();
        std::vector<TextBlock> blocks;
        double height = 0;
        for (int lines = 2; lines >= 1; --lines) {
            blocks.clear();
            height = 0;
            for (const PlotSeries& series : plot_.Series) {
                blocks.push_back(
                    WrapText(series.Name, look_.font, painter_.device(), width - swatch - 0.3 * em_, lines));
                height += static_cast<double>(blocks.back().Lines.size()) * lineHeight + 0.15 * em_;
            }
            if (height <= area_.height()) break;
        }
        double y = area_.top() + std::max(0.0, (area_.height() - height) / 2);
        const double x = area_.right() - width + 0.6 * em_;
        const size_t count = blocks.size();
        for (size_t i = 0; i < count; ++i) {
            // In the order in which the layers lie on each other.
            const size_t series = plot_.Stacked && style_.Kind != ChartKind::Pie ? count - 1 - i : i;
            DrawLegendEntry(QPointF(x, y + lineHeight / 2), plot_.Series[series], swatch, blocks[series]);
            y += static_cast<double>(blocks[series].Lines.size()) * lineHeight + 0.15 * em_;
        }
        area_.setRight(area_.right() - width);
    }

    // `place`: the swatch's left edge at half the height of the first line.
    void DrawLegendEntry(const QPointF& place, const PlotSeries& series, double swatch, const TextBlock& name) {
        DrawSwatch(place, series.Color);
        painter_.setPen(look_.ink);
        painter_.setFont(look_.font);
        const QFontMetricsF metrics(look_.font, painter_.device());
        DrawTextBlock(painter_, place + QPointF(swatch, -metrics.height() / 2), name, Qt::AlignLeft);
    }

    QPainter& painter_;
    QRectF area_;
    const ChartTable& table_;
    ChartStyle style_;
    ChartLook look_;
    ChartPlot plot_;
    double em_ = 0;
};

}  // namespace

void PaintChart(QPainter& painter, const QRectF& area, const ChartTable& table, ChartStyle style,
                const ChartLook& look) {
    painter.save();
    Chart(painter, area, table, style, look).Draw();
    painter.restore();
}

}  // namespace quibra
