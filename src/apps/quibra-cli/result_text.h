// The cells of a result as text: the rows below the fixed one, UTF-8.
#pragma once

#include <QByteArray>

#include "tabulation/result_grid.h"

namespace quibra {

// All columns: tabs between the cells, a line feed behind each row. A line end inside a cell becomes "↵".
QByteArray GridAsText(const ResultGrid& grid);
// The columns that hold something, by RFC 4180: commas between the cells, CR LF behind each row, quoted where a cell
// holds one of these or a quote. The title over the references of an essay list holds nothing by itself.
QByteArray GridAsCsv(const ResultGrid& grid, bool isEssayList);

}  // namespace quibra
