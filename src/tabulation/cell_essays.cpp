#include "tabulation/cell_essays.h"

#include "conditions/limit_lists.h"

namespace quibra {

namespace {

// RowCode tells rows without a choice by being negative, but leaves that of the persons at 0.
bool BearsChoice(const Survey& survey, const TotalResult& result, int q, int row, int L) {
    const int start = result.RowStart[q] + kFirstChoiceRow;
    return result.RowCode(L, row) >= 0 && row >= start && row < start + survey.Questions[q].ChoiceCount;
}

int QuestionOfRow(const TotalResult& result, int row) {
    int q = result.option.FromQno;
    while (q < result.option.ToQno && result.RowStart[q + 1] <= row)
        ++q;
    return q;
}

}  // namespace

void SetEssaysOfCell(const Survey& survey, const TotalResult& result, int row, int L, TotalOption& option) {
    TotalOption next = option;
    int q = QuestionOfRow(result, row);
    if (BearsChoice(survey, result, q, row, L)) {
        int c;
        UnpackPosition(result.RowCode(L, row), q, c);
        next.CrossMode = kEssayAny;
        next.CrossQno = static_cast<qint16>(c);
    } else {
        next.CrossMode = kEssayFilled;
        next.CrossQno = survey.Questions[q].ChoiceCount;
    }
    next.TotalKind = kEssayList;
    next.FromQno = static_cast<qint16>(q);
    next.Rank = result.option.Rank;
    int pos;
    ClearLimitColumn(next.Limits.Column(0), pos);
    AppendLimitColumn(next.Limits.Column(0), pos, result.option.Limits.Column(0));
    AppendLimitColumn(next.Limits.Column(0), pos, result.option.Limits.Column(L + 1));
    option = next;
}

}  // namespace quibra
