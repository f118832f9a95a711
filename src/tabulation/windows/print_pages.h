// Draws a printed table on pages: the survey's title and the conditions at the head of each, its number at the foot. A
// block that goes on over a page has its heads again, and one that is too wide for a page is parted between columns.
#pragma once

#include <QFont>

#include "tabulation/print_table.h"

class QPagedPaintDevice;

namespace quibra {

// Gives the number of pages.
int PaintPages(QPagedPaintDevice& device, const PrintTable& table, const QFont& font);

}  // namespace quibra
