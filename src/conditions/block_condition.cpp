#include "conditions/block_condition.h"

#include <algorithm>
#include <numeric>

#include "core/plane_masks.h"

namespace quibra {

BlockCondition::BlockCondition(const Survey& survey, const LimitList& list)
    : survey_(survey), flags_(survey.Samples.Flags()), wanted_(static_cast<quint16>(list[0].b)) {
    const LimitLine* line = list.Data() + 1;
    bool groupOpen = false;
    LimitTerm term;
    while (NextLimitTerm(line, groupOpen, term))
        terms_.push_back(term);
}

void BlockCondition::AddFields(FieldsByQuestion& fields) const {
    for (const LimitTerm& term : terms_) {
        if (term.question > kLastQuestion || term.rank > survey_.QIdx[term.question].Anum) continue;
        int& count = fields[static_cast<size_t>(term.question)];
        count = std::max<int>(count, term.rank > 0 ? term.rank : survey_.QIdx[term.question].Anum);
    }
}

int BlockCondition::FieldCount() const {
    FieldsByQuestion fields{};
    AddFields(fields);
    return std::accumulate(fields.begin(), fields.end(), 0);
}

void BlockCondition::TestTerm(SamplePlanes& planes, const LimitTerm& term, BlockMask& held) const {
    if (term.question > kLastQuestion) return;
    const AnswerLayoutRec& question = survey_.QIdx[term.question];
    if (term.rank > question.Anum) return;
    const int words = planes.Words();
    const int last = term.rank > 0 ? term.rank : question.Anum;
    BlockMask answered;  // an answer at every position so far
    answered.fill(~uint64_t{0});
    for (int position = 0; position < last; ++position) {
        const uint64_t* field = planes.Field(question.BitStart + position * question.BitWidth, question.BitWidth);
        if (term.rank == 0 || position + 1 == term.rank) {
            AddInRange(field, question.BitWidth, std::max(term.low, 1), term.high, answered, words, held);
            if (position == 0 && term.low == 0) AddInRange(field, question.BitWidth, 0, 0, answered, words, held);
        }
        if (position + 1 == last) break;
        KeepFilled(field, question.BitWidth, words, answered);
    }
}

void BlockCondition::Restrict(SamplePlanes& planes, BlockMask& mask) const {
    const int words = planes.Words();
    if (wanted_ != 0) {
        BlockMask flagged;
        planes.Kernels().testFlags(flags_ + planes.First(), planes.Count(), wanted_, flagged.data());
        for (int w = 0; w < words; ++w)
            mask[static_cast<size_t>(w)] &= flagged[static_cast<size_t>(w)];
    }
    for (size_t first = 0; first < terms_.size();) {
        const bool excludes = terms_[first].excludes;
        BlockMask held{};
        do {
            TestTerm(planes, terms_[first++], held);
        } while (first < terms_.size() && !terms_[first].opensGroup);
        for (int w = 0; w < words; ++w) {
            const auto at = static_cast<size_t>(w);
            mask[at] &= excludes ? ~held[at] : held[at];
        }
    }
}

bool StandsAlone(LimitColumn column) {
    for (size_t line = 1; line < column.size() && column[line].a != 0; ++line) {
        const int kind = LimitKindOf(column[line]);
        if (kind == kLimitAnd || kind == kLimitNot) return true;
        if (kind == kLimitOr || (kind == kLimitTo && line == 1)) return false;
    }
    return true;
}

}  // namespace quibra
