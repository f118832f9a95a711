#include "tabulation/word_count.h"

#include <QHash>
#include <cmath>
#include <utility>

#include "tabulation/total_sheet.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kToolColumns = 3;
constexpr int kTextColumn = 2;
constexpr int kHeadRow = 2;
constexpr size_t kMostTexts = 10000;
constexpr qint64 kMostBytes = 65000;
constexpr int kWidths[kToolColumns] = {600, 600, 2600};

}  // namespace

std::vector<WordCount> CountTexts(const std::vector<QString>& texts) {
    std::vector<WordCount> words;
    QHash<QString, size_t> places;
    qint64 bytes = 0;
    for (const QString& text : texts) {
        const auto found = places.constFind(text);
        if (found != places.constEnd()) {
            ++words[*found].Count;
            continue;
        }
        // What is left out adds to the sum each time it comes, so behind the first such text no new one is taken.
        bytes += 2 * text.size();
        if (bytes >= kMostBytes) continue;
        if (words.size() == kMostTexts) throw RuntimeError(kErrorSubscript);
        places.insert(text, words.size());
        words.push_back({text, 1});
    }
    for (size_t i = 0; i + 1 < words.size(); ++i) {
        size_t best = i;
        for (size_t j = i + 1; j < words.size(); ++j)
            if (words[j].Count > words[best].Count) best = j;
        std::swap(words[i], words[best]);
    }
    return words;
}

std::vector<QString> EssayTexts(const ResultGrid& grid) {
    std::vector<QString> texts;
    for (int row = kEssayHeadRow + 1; row <= grid.Rows() - 2; ++row)
        texts.push_back(grid.Text(kTextColumn, row));
    return texts;
}

int RenewToolColumns(ResultGrid& grid) {
    const int first = grid.Columns() - kToolColumns;
    grid.SetColumns(first);
    grid.SetColumns(first + kToolColumns);
    return first;
}

void ShowWordCount(ResultGrid& grid, float fontScale) {
    const std::vector<WordCount> words = CountTexts(EssayTexts(grid));
    const int count = static_cast<int>(words.size());
    const int first = RenewToolColumns(grid);
    if (grid.Rows() < count + 3) grid.SetRows(count + 3);
    const QString heads[kToolColumns] = {u"順位"_s, u"数"_s, u"記述文"_s};
    for (int i = 0; i < kToolColumns; ++i) {
        grid.SetText(first + i, kHeadRow, heads[i]);
        grid.SetAlignment(first + i, CellAlignment::LeftCenter);
        grid.SetColumnWidth(first + i, qRound(static_cast<float>(kWidths[i]) * fontScale));
    }
    int row = kHeadRow + 1;
    for (int i = 0; i < count; ++i, ++row) {
        const WordCount& word = words[static_cast<size_t>(i)];
        const bool isTie = i > 0 && word.Count == words[static_cast<size_t>(i) - 1].Count;
        grid.SetText(first, row, isTie ? QString() : QString::number(i + 1) + u'位');
        grid.SetText(first + 1, row, QString::number(word.Count));
        grid.SetText(first + 2, row, word.Text.isEmpty() ? u"/記述なし/"_s : word.Text);
    }
    grid.SetText(first + 2, row, u"--- 以上%1種類 ---"_s.arg(count));
}

}  // namespace quibra
