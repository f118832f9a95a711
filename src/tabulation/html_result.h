// A result as an HTML page.
#pragma once

#include <QByteArray>

#include "core/survey.h"
#include "tabulation/result_grid.h"
#include "tabulation/total_result.h"
#include "tabulation/total_view.h"

namespace quibra {

// The page's bytes, in code page 932 with CR LF line ends. A table has the figures that `view` shows, an essay list the
// cells of `grid`, where tools may have added rows to it.
QByteArray WriteHtml(const Survey& survey, const TotalResult& result, const TotalView& view, const ResultGrid& grid);

}  // namespace quibra
