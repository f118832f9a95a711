#include "companion/answer_bits.h"
#include "companion/limit_terms.h"

using namespace quibra;

namespace {

// A question without an answer counts as having choice 0, at any rank (0) and at rank 1.
bool TermHolds(const LimitTerm& term, const AnswerLayoutRec* layout, const int16_t* bits) {
    if (term.question > kLastQuestion) return false;
    const AnswerLayoutRec& question = layout[term.question];
    const int from = term.rank > 0 ? term.rank - 1 : 0;
    int to = term.rank > 0 ? term.rank : question.Anum;
    if (to > question.Anum) return false;
    for (int position = 0, start = question.BitStart; position < to; ++position, start += question.BitWidth) {
        const int answer = ReadField(bits, start, question.BitWidth);
        if (answer == 0) return position == 0 && from == 0 && term.low == 0;
        if (position >= from && answer >= term.low && answer <= term.high) return true;
    }
    return false;
}

}  // namespace

int32_t lmDoC(const LimitLine* lines, const AnswerLayoutRec* layout, int32_t sampleFlags, const int16_t* bits) {
    const uint32_t mask = static_cast<uint16_t>(lines[0].b);
    if ((mask & ~static_cast<uint32_t>(sampleFlags)) != 0) return 0;

    const LimitLine* line = lines + 1;
    bool groupOpen = false;
    bool groupHolds = true;  // no group yet: nothing to fail
    bool excludes = false;
    LimitTerm term;
    while (NextLimitTerm(line, groupOpen, term)) {
        if (term.opensGroup) {
            if (groupHolds == excludes) return 0;
            groupHolds = false;
            excludes = term.excludes;
        }
        groupHolds = groupHolds || TermHolds(term, layout, bits);
    }
    return groupHolds != excludes;
}
