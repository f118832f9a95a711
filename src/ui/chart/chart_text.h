// Texts in a chart: broken into lines, turned where they would touch, and values that are written where there is room.
#pragma once

#include <QFont>
#include <QRectF>
#include <QStringList>
#include <vector>

class QPaintDevice;
class QPainter;

namespace quibra {

struct ChartLook;

// A text in lines.
struct TextBlock {
    QStringList Lines;
    double Width = 0;  // of the widest line
    bool IsCut = false;
};

// At most `most` lines no wider than `width`, broken as Japanese is; an ellipsis ends a text that is cut.
TextBlock WrapText(const QString& text, const QFont& font, QPaintDevice* device, double width, int most);
// Lines below each other from `place` on, which is the middle (Qt::AlignHCenter) or the left end of their top edge.
void DrawTextBlock(QPainter& painter, const QPointF& place, const TextBlock& block,
                   Qt::Alignment alignment = Qt::AlignHCenter);

// The names below an axis whose places are `slot` apart.
class CategoryLabels {
  public:
    CategoryLabels(const QStringList& texts, const QFont& font, QPaintDevice* device, double slot, double mostHeight);

    double Height() const { return height_; }
    // How far the names reach to the left of their places.
    double LeftReach() const { return leftReach_; }
    // Every so many places bear a name.
    int Every() const { return every_; }
    // The name of a place, below `place`.
    void Draw(QPainter& painter, int index, const QPointF& place) const;

  private:
    std::vector<TextBlock> blocks_;
    double lineHeight_ = 0;
    double height_ = 0;
    double leftReach_ = 0;
    int every_ = 1;
    bool turned_ = false;
};

// Values beside what they belong to; one that would touch an earlier one is left out.
class ValueTexts {
  public:
    // Texts stand inside `room`; `count` of them are wanted, and where that is too many to be read there will be none.
    ValueTexts(QPainter& painter, const ChartLook& look, const QRectF& room, int count);

    double LineHeight() const { return lineHeight_; }
    double WidthOf(const QString& text) const;
    // Above a point, or below it when that is taken.
    void Beside(const QPointF& place, double distance, const QString& text);
    // Above the middle of a bar; turned when the bar is narrower than the text, and left out when it is narrower still.
    // `framed` for bars that may stand in front of others.
    void OverBar(const QPointF& place, double width, const QString& text, bool framed);
    // In the middle of a face of the given colour, if it is large enough.
    void Inside(const QRectF& face, const QColor& color, const QString& text);

  private:
    bool Take(const QRectF& box);
    void Ground(const QRectF& box);

    QPainter& painter_;
    const ChartLook& look_;
    QFont font_;
    double lineHeight_ = 0;
    QRectF room_;
    bool crowded_;
    std::vector<QRectF> taken_;
};

// A font of `scale` times the size.
QFont ScaledFont(const QFont& font, double scale);

}  // namespace quibra
