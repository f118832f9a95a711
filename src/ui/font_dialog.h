// The choice of a font with its colour, in one dialog.
#pragma once

#include <QColor>
#include <QFont>

class QWidget;

namespace quibra {

class UserInterface;

// Starts from `font` and `color` and changes both when the user agrees: true. False leaves them.
bool PickFont(UserInterface& ui, QWidget* parent, QFont& font, QColor& color);

}  // namespace quibra
