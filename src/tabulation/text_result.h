// A result as a text file.
#pragma once

#include <QByteArray>

#include "tabulation/result_grid.h"

namespace quibra {

// The caption, then all cells below the fixed row as they go to the clipboard, and one more line end. Code page 932, CR
// LF line ends.
QByteArray WriteText(const QString& caption, const ResultGrid& grid);

}  // namespace quibra
