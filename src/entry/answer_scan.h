// Finds, among stored samples, those that the checks of answers may have something to say of: a run over all samples
// looks closely at these alone. A block of samples is tested at once; see core/sample_planes.h.
#pragma once

#include <functional>
#include <vector>

#include "conditions/block_condition.h"

namespace quibra {

class AnswerScan {
  public:
    // `repeats`: as in CorrectAnswers. The survey must outlive it; questions, layout and conditions must stay as they
    // are.
    AnswerScan(const Survey& survey, bool repeats);

    // The samples of a block, `count` of them from `first` on, that a check may change or speak of. None that it would
    // is missing; of some it may turn out to have nothing to say.
    BlockMask Suspects(qint32 first, int count);
    // Those of all samples, in their order. `visit` may change them.
    void ForEachSuspect(const std::function<void(qint32 dno)>& visit);

  private:
    struct Question {
        const AnswerLayoutRec* layout;
        int largest;                 // of its choices
        std::vector<int> exclusive;  // choices, 0 left out
        int condition;               // its place in conditions_, or -1
    };

    const uint64_t* Field(const AnswerLayoutRec& layout, int place);
    void AddAbsent(const Question& question, const BlockMask& answered, BlockMask& suspects);
    void AddUnfit(const Question& question, const BlockMask& answered, BlockMask& suspects);
    void AddMixed(const Question& question, const BlockMask& answered, BlockMask& suspects);

    const Survey& survey_;
    const bool repeats_;
    std::vector<Question> questions_;
    std::vector<BlockCondition> conditions_;
    SamplePlanes planes_;
};

}  // namespace quibra
