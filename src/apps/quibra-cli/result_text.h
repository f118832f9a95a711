// The cells of a result as text: all columns, the rows below the fixed one, UTF-8.
#pragma once

#include <QByteArray>

#include "tabulation/result_grid.h"

namespace quibra {

// Tabs between the cells, a line feed behind each row; the cells as they are.
QByteArray GridAsText(const ResultGrid& grid);
// RFC 4180: commas between the cells, CR LF behind each row, quoted where a cell holds one of these or a quote.
QByteArray GridAsCsv(const ResultGrid& grid);

}  // namespace quibra
