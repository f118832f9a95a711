// Testing samples against condition lists, and joining lists: the join of several is always an "and" of them.
#pragma once

#include <initializer_list>

#include "core/limit_list.h"
#include "core/survey.h"

namespace quibra {

// True when sample `dno` meets the condition; the predefined conditions of its mask are looked up in the sample's
// PreLimitBits.
bool TestLimit(const Survey& survey, qint32 dno, const LimitList& list);

// True when sample `dno` meets the condition under which question q is asked.
bool QuestionApplies(const Survey& survey, qint32 dno, int q);

// Empties the list: no mask, `a` 0 in every line (`b` of the lines stays), pos = 1.
void ClearLimit(LimitList& list, int& pos);
void ClearLimitColumn(std::span<LimitLine> column, int& pos);

// Joins `column` to the list: adds its mask, copies its lines to pos, pos + 1, ... and advances pos. The closing line
// is not copied, so the list must have been cleared. Run-time error 9 when the list is too short.
void AppendLimit(LimitList& list, int& pos, LimitColumn column);
void AppendLimitColumn(std::span<LimitLine> column, int& pos, LimitColumn source);

// The join of several columns as a list of its own, with room for three.
LimitList JoinLimits(std::initializer_list<LimitColumn> columns);

// Tests sample `dno` against the list and stores the result as bit k of its PreLimitBits.
void RefreshPreLimitBit(Survey& survey, const LimitList& list, int k, qint32 dno);

}  // namespace quibra
