// Marks the rows of an essay list whose text holds a word or whose number lies in a range, and lists them in the three
// columns behind it.
#pragma once

#include <QStringList>

#include "tabulation/result_grid.h"

namespace quibra {

inline constexpr int kMaxSearchWords = 16;

// True when the text holds the word, byte for byte: a word may also be met across the halves of two characters.
bool HoldsBytes(const QString& text, const QString& word);

// 記述文を検索: rows that hold one of the words, none of which is empty. Gives their number.
int SearchWords(ResultGrid& grid, const QStringList& words, float fontScale);
// 記述数量を検索: rows whose leading number lies between the two, whichever is the larger; a text without one is 0.
// Run-time error 6, with the grid as it was, for a number that is too large.
int SearchNumbers(ResultGrid& grid, double one, double other, float fontScale);

}  // namespace quibra
