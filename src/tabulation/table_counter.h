// Counts a table: every question of a total under every individual limit, over blocks of samples.
//
// What one figure means is defined by VerstTotalC for one sample at a time, question by question and limit by limit.
// Here a block of samples is turned into bit planes once and serves all questions and limits, so the whole table is
// counted while the first question's samples are walked; a walk that breaks off midway is answered by counting that one
// figure again over the samples it had reached.
#pragma once

#include <memory>
#include <vector>

#include "core/bit_kernels.h"
#include "core/survey.h"
#include "tabulation/total_option.h"

namespace quibra {

// The figures of one question under one limit.
struct Figures {
    qint32 counts[kMaxChoices] = {};  // by choice
    qint32 persons = 0;
};

class TableCounter {
  public:
    // Both must outlive the counter and stay unchanged. Limits and questions are read at once.
    TableCounter(const Survey& survey, const TotalOption& option, const BitKernels& kernels = FastestBitKernels());
    ~TableCounter();

    // Makes the shared pass reach at least `samples` samples.
    void CountTo(qint32 samples);
    // The figures of question q (FromQno to ToQno) under limit L (0 to LimitCount - 1), over the first `samples`
    // samples.
    Figures Count(int q, int L, qint32 samples);

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace quibra
