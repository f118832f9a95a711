#include "tabulation/total_result.h"

#include <algorithm>

#include "core/labels.h"
#include "tabulation/table_figures.h"

using namespace Qt::StringLiterals;

namespace quibra {

double TotalResult::EssayAverage() const {
    return EssayRows.empty() ? 0 : EssaySum / static_cast<double>(EssayRows.size());
}

qint32 TotalResult::EssayDnoCount() const {
    return std::max(static_cast<qint32>(EssayRows.size()), 1);
}

qint32 TotalResult::EssayDno() {
    const auto cursor = static_cast<size_t>(EssayCursor);
    if (cursor >= EssayRows.size()) return -1;
    ++EssayCursor;
    return EssayRows[cursor].Dno;
}

std::vector<qint32> TotalResult::Places() const {
    std::vector<qint32> places;
    places.reserve(EssayRows.size());
    for (const EssayRow& row : EssayRows)
        places.push_back(row.Dno);
    return places;
}

std::vector<BlockRow> BlockRows(const Survey& survey, const TotalResult& result, int q, int L) {
    const int count = survey.Questions[q].ChoiceCount;
    const int first = result.RowStart[q] + kFirstChoiceRow;
    const qint32 persons = result.Counts(L, first + count);
    PercentColumn percent(persons);
    std::vector<BlockRow> rows;
    for (int row = first; row < first + count; ++row)
        rows.push_back({result.RowCode(L, row), result.Counts(L, row), percent.Add(result.Counts(L, row))});
    rows.push_back({result.RowCode(L, first + count), persons, percent.Sum()});
    return rows;
}

QString BlockHeading(const Survey& survey, const TotalResult& result, int q) {
    const QString label = QuestionLabel(survey, q, {.body = true, .answers = true});
    return result.option.Rank > 0 ? label + u"(%1位)"_s.arg(result.option.Rank) : label;
}

QString RowLabel(const Survey& survey, const TotalResult& result, int L, int q, int i) {
    if (i == survey.Questions[q].ChoiceCount) return result.option.Rough ? u"[粗集計人数]"_s : u"[人数]"_s;
    int rowQuestion, c;
    UnpackPosition(result.RowCode(L, result.RowStart[q] + kFirstChoiceRow + i), rowQuestion, c);
    return ChoiceLabel(survey, rowQuestion, c, false, false);
}

}  // namespace quibra
