#include "tabulation/essay_search.h"

#include <QByteArrayMatcher>
#include <algorithm>

#include "core/numbers.h"
#include "tabulation/total_sheet.h"
#include "tabulation/word_count.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kToolHeadRow = 1;
constexpr int kWordListWidth = 5200;
constexpr int kNumberListWidth = 1600;
constexpr int kMarkWidth = 800;

QByteArrayView BytesOf(const QString& text) {
    return {reinterpret_cast<const char*>(text.utf16()), text.size() * 2};
}

struct SearchHeads {
    QString what;
    QString list;
    int width;
};

// Writes marks and list for the texts that `hits` names, one flag each.
int ShowHits(ResultGrid& grid, const std::vector<QString>& texts, const std::vector<bool>& hits,
             const SearchHeads& heads, float fontScale) {
    const int first = RenewToolColumns(grid);
    const auto scaled = [fontScale](int width) { return qRound(static_cast<float>(width) * fontScale); };
    grid.SetText(first, kToolHeadRow, heads.what);
    grid.SetText(first, kToolHeadRow + 1, u"該当者"_s);
    grid.SetText(first + 1, kToolHeadRow + 1, heads.list);
    for (const int column : {first, first + 1})
        grid.SetAlignment(column, CellAlignment::LeftTop);
    grid.SetColumnWidth(first, scaled(kMarkWidth));
    grid.SetColumnWidth(first + 1, scaled(heads.width));
    int count = 0;
    for (size_t i = 0; i < texts.size(); ++i) {
        if (!hits[i]) continue;
        ++count;
        grid.SetText(first, kEssayHeadRow + 1 + static_cast<int>(i), u"■■"_s);
        grid.SetText(first + 1, count + 2, texts[i]);
    }
    grid.SetText(first + 1, count + 3, u"--- 計%1人 ---"_s.arg(count));
    return count;
}

template <typename Meets>
std::vector<bool> HitsOf(const std::vector<QString>& texts, Meets meets) {
    std::vector<bool> hits;
    hits.reserve(texts.size());
    for (const QString& text : texts)
        hits.push_back(meets(text));
    return hits;
}

}  // namespace

bool HoldsBytes(const QString& text, const QString& word) {
    return QByteArrayMatcher(BytesOf(word)).indexIn(BytesOf(text)) >= 0;
}

int SearchWords(ResultGrid& grid, const QStringList& words, float fontScale) {
    const std::vector<QString> texts = EssayTexts(grid);
    const auto hits = HitsOf(texts, [&](const QString& text) {
        return std::ranges::any_of(words, [&](const QString& word) { return HoldsBytes(text, word); });
    });
    return ShowHits(grid, texts, hits, {u"文字の検索"_s, u"該当の記述文一覧"_s, kWordListWidth}, fontScale);
}

int SearchNumbers(ResultGrid& grid, double one, double other, float fontScale) {
    const auto [low, high] = std::minmax(one, other);
    const std::vector<QString> texts = EssayTexts(grid);
    const auto hits = HitsOf(texts, [&, low = low, high = high](const QString& text) {
        const double value = LeadingNumber(text);
        return low <= value && value <= high;
    });
    return ShowHits(grid, texts, hits, {u"数値の検索"_s, u"該当の数値一覧"_s, kNumberListWidth}, fontScale);
}

}  // namespace quibra
