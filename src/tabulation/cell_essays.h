// From a cell of a table to the essay list of those it counts.
#pragma once

#include "core/survey.h"
#include "tabulation/total_result.h"

namespace quibra {

// この選択肢の記述集計: makes `option` the essay list of the choice in grid row `row` under limit `L`, under the
// table's whole limit and that of the column. A row without a choice, that of the persons included, gives the texts of
// all choices of its question. Run-time error 9, with `option` as it was, when the two limits are too long together.
void SetEssaysOfCell(const Survey& survey, const TotalResult& result, int row, int L, TotalOption& option);

}  // namespace quibra
