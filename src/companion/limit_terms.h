// What a list of condition lines means, in one place: the walk that turns lines into terms and groups. lmDoC walks it
// for one sample; whoever tests blocks of samples compiles what it yields.
#pragma once

#include <cstdint>

#include "companion/quibra.h"

namespace quibra {

enum LimitKind { kLimitNone = 0, kLimitOr = 1, kLimitTo = 2, kLimitAnd = 3, kLimitNot = 4 };

// A packed position can name questions up to 511; a survey has 256.
inline constexpr int kLastQuestion = 255;

inline int LimitKindOf(const LimitLine& line) {
    return line.a & 15;
}
inline int LimitRankOf(const LimitLine& line) {
    return (line.a >> 4) & 127;
}
inline int PositionQuestion(int16_t position) {
    return static_cast<uint16_t>(position) >> 7;
}
inline int PositionChoice(int16_t position) {
    return position & 127;
}

// One term: the sample has, at `rank` (0: anywhere), an answer of `question` from `low` to `high`.
struct LimitTerm {
    int question;
    int rank;
    int low;
    int high;
    bool opensGroup;  // 必須 or 除く; otherwise it is an alternative in the group before it
    bool excludes;    // of a term that opens a group: the group must not hold
};

// Steps through the lines from `line` (which starts at the first one behind the header) and yields the next term that
// has an effect; false at the closing line. Without effect are: a 又は before any group, a から with nothing to join,
// lines of any other kind, and whatever is joined to one of these.
inline bool NextLimitTerm(const LimitLine*& line, bool& groupOpen, LimitTerm& term) {
    while (line->a != 0) {
        const LimitLine& first = *line++;
        const int kind = LimitKindOf(first);
        if (kind != kLimitOr && kind != kLimitAnd && kind != kLimitNot) continue;
        term.question = PositionQuestion(first.b);
        term.rank = LimitRankOf(first);
        term.low = term.high = PositionChoice(first.b);
        if (line->a != 0 && LimitKindOf(*line) == kLimitTo) term.high = PositionChoice((line++)->b);
        term.opensGroup = kind != kLimitOr;
        term.excludes = kind == kLimitNot;
        if (!term.opensGroup && !groupOpen) continue;
        groupOpen = true;
        return true;
    }
    return false;
}

}  // namespace quibra
