// Counts identical texts of an essay list, and shows them in the three columns behind the list.
#pragma once

#include <QString>
#include <vector>

#include "tabulation/result_grid.h"

namespace quibra {

struct WordCount {
    QString Text;
    qint32 Count;
};

// The different texts, the most frequent first. Equal figures stand in the order that an exchange sort gives. Texts
// beyond 65,000 bytes of different ones are counted nowhere; run-time error 9 for more than 10,000.
std::vector<WordCount> CountTexts(const std::vector<QString>& texts);

// The texts of an essay list as the tools look at them: column 2 of the rows from the first listed one to the last but
// one, since the last row is the sum.
std::vector<QString> EssayTexts(const ResultGrid& grid);
// Drops the three columns behind the list and gives it fresh ones; their first.
int RenewToolColumns(ResultGrid& grid);

// 記述文を集計: ranks, figures and texts in the three columns.
void ShowWordCount(ResultGrid& grid, float fontScale);

}  // namespace quibra
