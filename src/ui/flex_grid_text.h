// How the texts of a grid's cells and captions are laid out: broken into lines, counted and drawn.
#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QRect>
#include <QStringList>

class QPainter;

namespace quibra {

inline constexpr int kGridSidePadding = 4;
inline constexpr int kGridRowPadding = 2;

QString OneLine(QString text);

// The lines of a text broken at `width`; the last of at most `maxLines` ends in dots when there is more.
QStringList Wrapped(const QString& text, const QFont& font, int width, int maxLines);

// How many lines a text takes at `width`, up to one more than `limit`.
int LineCount(const QString& text, const QFontMetrics& metrics, const QFont& font, int width, int limit);

// As many lines as the rectangle has room for, at its top or in its middle.
void DrawLines(QPainter& painter, const QRect& rect, bool top, const QString& text);

// The room for the text of a cell.
QRect InsideCell(const QRect& cell);

}  // namespace quibra
