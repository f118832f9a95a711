// A condition compiled for blocks of samples: what lmDoC says of each sample, for a whole block at once.
#pragma once

#include <array>
#include <vector>

#include "companion/limit_terms.h"
#include "core/sample_planes.h"

namespace quibra {

// How many of each question's answer fields are looked at in a block, from its first one on.
using FieldsByQuestion = std::array<int, kMaxQuestions>;

class BlockCondition {
  public:
    // Compiles `list` against the survey's present layout, which must not change afterwards.
    BlockCondition(const Survey& survey, const LimitList& list);

    // Takes the samples that don't meet the condition out of `mask`.
    void Restrict(SamplePlanes& planes, BlockMask& mask) const;

    // Marks the answer fields that it looks at: fields[q] becomes at least the number of those of question q.
    void AddFields(FieldsByQuestion& fields) const;
    // How many these are: what SamplePlanes wants to know.
    int FieldCount() const;

  private:
    void TestTerm(SamplePlanes& planes, const LimitTerm& term, BlockMask& held) const;

    const Survey& survey_;
    const qint16* flags_;
    quint16 wanted_;
    std::vector<LimitTerm> terms_;
};

// True when the column's lines mean the same behind other lines as alone, because none of them reaches back: it does
// not begin with 又は or から. Only then may columns be tested apart and their masks joined.
bool StandsAlone(LimitColumn column);

}  // namespace quibra
