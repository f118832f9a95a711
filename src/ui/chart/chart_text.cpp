#include "ui/chart/chart_text.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "ui/chart/chart_look.h"

namespace quibra {

namespace {

// Names that don't fit below their places rise to them at this angle.
constexpr double kTurn = 60;
const double kSine = std::sin(kTurn * std::numbers::pi / 180);
const double kCosine = std::cos(kTurn * std::numbers::pi / 180);
constexpr int kMostLines = 4;
constexpr int kMostTurnedLines = 2;
// More values than these beside points would cover what they tell of.
constexpr int kMostValues = 60;
constexpr double kValueScale = 0.85;
constexpr float kGroundOpacity = 0.7F;

}  // namespace

namespace {

TextBlock Broken(const QString& line, const QFont& font, QPaintDevice* device, double width, int most) {
    const QFontMetricsF metrics(font, device);
    TextBlock block;
    QTextLayout layout(line, font, device);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine part = layout.createLine(); part.isValid() && !block.IsCut; part = layout.createLine()) {
        part.setLineWidth(width);
        const bool isLast = static_cast<int>(block.Lines.size()) == most - 1;
        block.IsCut = isLast && part.textStart() + part.textLength() < line.size();
        block.Lines << (block.IsCut ? metrics.elidedText(line.mid(part.textStart()), Qt::ElideRight, width)
                                    : line.mid(part.textStart(), part.textLength()).trimmed());
        block.Width = std::max(block.Width, metrics.horizontalAdvance(block.Lines.back()));
    }
    layout.endLayout();
    return block;
}

}  // namespace

TextBlock WrapText(const QString& text, const QFont& font, QPaintDevice* device, double width, int most) {
    const QFontMetricsF metrics(font, device);
    const QString line = text.simplified();
    const double whole = metrics.horizontalAdvance(line);
    if (whole <= width) return {{line}, whole, false};
    if (most <= 1) {
        const QString cut = metrics.elidedText(line, Qt::ElideRight, width);
        return {{cut}, metrics.horizontalAdvance(cut), true};
    }
    // Lines of about the same length, so that no last one holds a single character.
    const double even = whole / std::ceil(whole / width) + 0.6 * metrics.height();
    if (even < width && std::ceil(whole / width) <= most) {
        TextBlock block = Broken(line, font, device, even, most);
        if (!block.IsCut) return block;
    }
    return Broken(line, font, device, width, most);
}

void DrawTextBlock(QPainter& painter, const QPointF& place, const TextBlock& block, Qt::Alignment alignment) {
    const QFontMetricsF metrics(painter.font(), painter.device());
    double y = place.y() + metrics.ascent();
    for (const QString& line : block.Lines) {
        const double shift = alignment & Qt::AlignHCenter ? metrics.horizontalAdvance(line) / 2 : 0;
        painter.drawText(QPointF(place.x() - shift, y), line);
        y += metrics.lineSpacing();
    }
}

CategoryLabels::CategoryLabels(const QStringList& texts, const QFont& font, QPaintDevice* device, double slot,
                               double mostHeight) {
    const QFontMetricsF metrics(font, device);
    lineHeight_ = metrics.lineSpacing();
    const double em = metrics.height();
    const int lines = std::clamp(static_cast<int>(mostHeight / lineHeight_), 1, kMostLines);
    if (slot >= 3 * em) {
        for (const QString& text : texts) {
            blocks_.push_back(WrapText(text, font, device, slot - em / 2, lines));
            if (blocks_.back().IsCut) break;
            height_ = std::max(height_, static_cast<double>(blocks_.back().Lines.size()) * lineHeight_);
        }
        if (blocks_.empty() || !blocks_.back().IsCut) return;
        blocks_.clear();
        height_ = 0;
    }
    turned_ = true;
    every_ = std::max(1, static_cast<int>(std::ceil(lineHeight_ / (slot * kSine))));
    const double room = (mostHeight - lineHeight_ * kCosine) / kSine;
    const int turnedLines = std::clamp(static_cast<int>(slot * kSine / lineHeight_), 1, kMostTurnedLines);
    for (int i = 0; i < texts.size(); ++i) {
        if (i % every_ != 0) {
            blocks_.emplace_back();
            continue;
        }
        blocks_.push_back(WrapText(texts[i], font, device, std::max(room, 2 * em), turnedLines));
        const TextBlock& block = blocks_.back();
        height_ =
            std::max(height_, block.Width * kSine + static_cast<double>(block.Lines.size()) * lineHeight_ * kCosine);
        leftReach_ = std::max(leftReach_, block.Width * kCosine - slot * i);
    }
}

void CategoryLabels::Draw(QPainter& painter, int index, const QPointF& place) const {
    const TextBlock& block = blocks_[static_cast<size_t>(index)];
    if (block.Lines.isEmpty()) return;
    if (!turned_) {
        DrawTextBlock(painter, place, block);
        return;
    }
    painter.save();
    painter.translate(place);
    painter.rotate(-kTurn);
    const QFontMetricsF metrics(painter.font(), painter.device());
    double y = metrics.ascent() - static_cast<double>(block.Lines.size()) * lineHeight_ / 2 + lineHeight_ * kCosine / 2;
    for (const QString& line : block.Lines) {
        painter.drawText(QPointF(-metrics.horizontalAdvance(line), y), line);
        y += lineHeight_;
    }
    painter.restore();
}

ValueTexts::ValueTexts(QPainter& painter, const ChartLook& look, const QRectF& room, int count)
    : painter_(painter),
      look_(look),
      font_(ScaledFont(look.font, kValueScale)),
      room_(room),
      crowded_(count > kMostValues) {
    lineHeight_ = QFontMetricsF(font_, painter.device()).height();
}

double ValueTexts::WidthOf(const QString& text) const {
    return QFontMetricsF(font_, painter_.device()).horizontalAdvance(text);
}

bool ValueTexts::Take(const QRectF& box) {
    if (!room_.contains(box)) return false;
    if (std::ranges::any_of(taken_, [&](const QRectF& other) { return other.intersects(box); })) return false;
    taken_.push_back(box);
    return true;
}

void ValueTexts::Ground(const QRectF& box) {
    QColor ground = look_.ground;
    ground.setAlphaF(kGroundOpacity);
    painter_.fillRect(box, ground);
}

void ValueTexts::Beside(const QPointF& place, double distance, const QString& text) {
    if (crowded_) return;
    const QFontMetricsF metrics(font_, painter_.device());
    const double width = metrics.horizontalAdvance(text);
    for (const double top : {place.y() - distance - lineHeight_, place.y() + distance}) {
        const QRectF box(place.x() - width / 2, top, width, lineHeight_);
        if (!Take(box)) continue;
        Ground(box);
        painter_.setFont(font_);
        painter_.setPen(look_.ink);
        painter_.drawText(QPointF(box.left(), box.top() + metrics.ascent()), text);
        return;
    }
}

void ValueTexts::OverBar(const QPointF& place, double width, const QString& text, bool framed) {
    const QFontMetricsF metrics(font_, painter_.device());
    const double length = metrics.horizontalAdvance(text);
    const bool turned = length > width;
    if (turned && metrics.height() > width * 1.2) return;
    painter_.save();
    painter_.translate(place.x(), place.y() - metrics.descent());
    if (turned) painter_.rotate(-90);
    // The text's left end and its base line; turned, its middle stands over that of the bar.
    const QPointF start = turned ? QPointF(0, (metrics.ascent() - metrics.descent()) / 2) : QPointF(-length / 2, 0);
    if (framed) Ground(QRectF(start.x(), start.y() - metrics.ascent(), length, lineHeight_));
    painter_.setFont(font_);
    painter_.setPen(look_.ink);
    painter_.drawText(start, text);
    painter_.restore();
}

void ValueTexts::Inside(const QRectF& face, const QColor& color, const QString& text) {
    const QFontMetricsF metrics(font_, painter_.device());
    const double width = metrics.horizontalAdvance(text);
    if (face.height() < metrics.height() || face.width() < width) return;
    const QRectF box(face.center().x() - width / 2, face.center().y() - lineHeight_ / 2, width, lineHeight_);
    if (!Take(box)) return;
    painter_.fillRect(box, color);  // stripes would go through the text
    painter_.setFont(font_);
    painter_.setPen(ReadableOn(color));
    painter_.drawText(QPointF(box.left(), box.top() + metrics.ascent()), text);
}

QFont ScaledFont(const QFont& font, double scale) {
    QFont scaled = font;
    if (font.pixelSize() > 0)
        scaled.setPixelSize(std::max(1, qRound(font.pixelSize() * scale)));
    else
        scaled.setPointSizeF(font.pointSizeF() * scale);
    return scaled;
}

}  // namespace quibra
