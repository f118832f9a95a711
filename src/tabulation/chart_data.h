// The table of labels and numbers that a chart shows: one question of a total, from the cell that the user is on.
#pragma once

#include <QByteArray>
#include <optional>

#include "core/chart_table.h"
#include "core/survey.h"
#include "tabulation/total_result.h"

namespace quibra {

// How a result is charted; the defaults are the menu's.
struct ChartOrder {
    bool percent = true;        // shares of the persons of a column, not the figures themselves
    bool reverse = false;       // the last choice first
    bool labelPercent = false;  // the first column's shares behind the labels
    bool oneColumn = false;     // only the column of the cell
};

// What a result has had drawn last; a cell of the same is not drawn again. -1: draw whatever comes.
struct LastChart {
    qint16 LastGraphQ = -1;
    qint16 LastGraphL = -1;
};

// The chart for the cell in grid row `row` under limit `L`. Nothing for a cell that bears no choice, for 無回答 and for
// what `last` says is drawn already. Texts are cut at 80 characters. Run-time error 9 for a result whose rows don't
// reach as far as they should, 6 where a label is to bear a share of no persons.
std::optional<ChartTable> SendChart(const Survey& survey, const TotalResult& result, const ChartOrder& order, int row,
                                    int L, LastChart& last);

// {"Title": T, "Data": [["", label, ...], [limit, value, ...], ...]}
QByteArray WriteChartJson(const ChartTable& table);

}  // namespace quibra
