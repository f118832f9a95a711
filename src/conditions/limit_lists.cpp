#include "conditions/limit_lists.h"

#include "core/answer_store.h"

namespace quibra {

bool TestLimit(const Survey& survey, qint32 dno, const LimitList& list) {
    return lmDoC(list.Data(), survey.QIdx.Data(), survey.Samples.PreLimitBits(dno), survey.Samples.Bits(dno)) != 0;
}

bool QuestionApplies(const Survey& survey, qint32 dno, int q) {
    const LimitColumn column = survey.QLimit.Column(q);
    if (column[0].b == 0 && column[1].a == 0) return true;
    return TestLimit(survey, dno, LimitList(column));
}

void ClearLimit(LimitList& list, int& pos) {
    list[0].b = 0;
    for (int i = 1; i <= list.Bound(); ++i)
        list[i].a = 0;
    pos = 1;
}

void ClearLimitColumn(std::span<LimitLine> column, int& pos) {
    CheckSubscript(0, static_cast<qint64>(column.size()));
    column[0].b = 0;
    for (LimitLine& line : column.subspan(1))
        line.a = 0;
    pos = 1;
}

void AppendLimit(LimitList& list, int& pos, LimitColumn column) {
    list[0].b |= column[0].b;
    for (size_t i = 1; i < column.size() && column[i].a != 0; ++i)
        list[pos++] = column[i];
}

void AppendLimitColumn(std::span<LimitLine> column, int& pos, LimitColumn source) {
    CheckSubscript(0, static_cast<qint64>(column.size()));
    column[0].b |= source[0].b;
    for (size_t i = 1; i < source.size() && source[i].a != 0; ++i) {
        CheckSubscript(pos, static_cast<qint64>(column.size()));
        column[pos++] = source[i];
    }
}

LimitList JoinLimits(std::initializer_list<LimitColumn> columns) {
    LimitList list(LimitList::kMaxBound);
    int pos = 1;
    for (const LimitColumn column : columns)
        AppendLimit(list, pos, column);
    return list;
}

void RefreshPreLimitBit(Survey& survey, const LimitList& list, int k, qint32 dno) {
    SetPreLimitBit(survey, dno, k, TestLimit(survey, dno, list));
}

}  // namespace quibra
