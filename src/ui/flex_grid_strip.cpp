#include "ui/flex_grid_strip.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/flex_grid.h"
#include "ui/flex_grid_text.h"
#include "ui/window_place.h"

namespace quibra {

namespace {

constexpr int kMaxStripLines = 2;
constexpr int kLeastStripHeight = 8;

}  // namespace

FlexGridStrip::FlexGridStrip(int leastColumnWidth, QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setSectionsClickable(false);
    setHighlightSections(false);
    setMinimumSectionSize(leastColumnWidth);
}

QSize FlexGridStrip::sizeHint() const {
    const int lines = Lines();
    if (lines > 0) return {0, lines * fontMetrics().lineSpacing() + 4 * kGridRowPadding};
    const double twips = model() ? model()->headerData(0, Qt::Vertical, kTwipsRole).toDouble() : 0;
    return {0, std::max(kLeastStripHeight, static_cast<int>(std::lround(twips / TwipsPerPixel(this))))};
}

void FlexGridStrip::paintEvent(QPaintEvent* event) {
    QHeaderView::paintEvent(event);
    if (!firstFloats) return;
    QPainter painter(viewport());
    paintSection(&painter, QRect(0, 0, sectionSize(0), height()), 0);
}

void FlexGridStrip::paintSection(QPainter* painter, const QRect& rect, int section) const {
    QStyleOptionHeaderV2 option;
    initStyleOption(&option);
    option.rect = rect;
    option.section = section;
    painter->save();
    painter->setClipRect(rect, Qt::IntersectClip);
    style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);
    int source = section;
    while (source >= 0 && Caption(source).isEmpty())
        --source;
    if (source >= 0) {
        const int left = source == section ? rect.left() : sectionViewportPosition(source);
        const QRect place(left, 0, FlowWidth(source), height());
        painter->setPen(palette().color(QPalette::ButtonText));
        DrawLines(*painter, InsideCell(place), false, Caption(source));
    }
    painter->restore();
}

void FlexGridStrip::mousePressEvent(QMouseEvent* event) {
    // What lies below the floating section is not what the hand sees.
    if (!firstFloats || event->position().x() >= sectionSize(0)) QHeaderView::mousePressEvent(event);
}

QString FlexGridStrip::Caption(int section) const {
    return OneLine(model()->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString());
}

int FlexGridStrip::FlowWidth(int section) const {
    int width = sectionSize(section);
    for (int next = section + 1; next < count() && Caption(next).isEmpty(); ++next)
        width += sectionSize(next);
    return width;
}

int FlexGridStrip::Lines() const {
    int lines = 0;
    for (int section = 0; section < count() && lines < kMaxStripLines; ++section)
        if (const QString caption = Caption(section); !caption.isEmpty())
            lines = std::max(lines, LineCount(caption, fontMetrics(), font(), FlowWidth(section) - 2 * kGridSidePadding,
                                              kMaxStripLines));
    return std::min(lines, kMaxStripLines);
}

}  // namespace quibra
