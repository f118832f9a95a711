// A selection of a result as an HTML table, which spreadsheets and word processors take beside the plain text: figures
// to the right, headings merged over the columns that they head.
#pragma once

#include <QString>

#include "tabulation/total_sheet.h"

namespace quibra {

// Cells of `column1`, `row1` to `column2`, `row2`, both included. Each cell's text is as in the grid; a merged one
// stands in the first of its cells, the others are empty in the grid, too.
QString ClipHtml(const TotalSheet& sheet, int column1, int row1, int column2, int row2);

}  // namespace quibra
