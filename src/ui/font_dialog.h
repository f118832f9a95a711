// The choice of a font with its colour, in one dialog.
#pragma once

#include <QColor>
#include <QFont>

class QWidget;

namespace quibra {

// Starts from `font` and `color` and changes both when the user agrees: true. False leaves them.
bool PickFont(QWidget* parent, QFont& font, QColor& color);

}  // namespace quibra
