// A block of samples as bit planes, made on demand from the packed records: what conditions and counts are tested on
// when there are many samples. See core/bit_kernels.h.
#pragma once

#include <vector>

#include "core/bit_kernels.h"
#include "core/survey.h"

namespace quibra {

// One bit a sample of a block.
using BlockMask = std::array<uint64_t, kPlaneWords>;

class SamplePlanes {
  public:
    // The survey must outlive this; its samples and layout must stay as they are between two calls of Load. `fields` is
    // about how many answer fields will be asked for in a block: it decides whether fields are made one by one or all
    // together.
    SamplePlanes(const Survey& survey, int fields, const BitKernels& kernels = FastestBitKernels());

    // Turns to samples first to first + count - 1, count from 1 to kBlockSamples.
    void Load(qint32 first, int count);

    qint32 First() const { return first_; }
    int Count() const { return count_; }
    // Words of a mask that the block uses; the rest of a plane is meaningless, and so are bits behind Count().
    int Words() const { return (count_ + 63) / 64; }
    // All samples of the block.
    BlockMask Valid() const;

    // The planes of one answer field, `width` times kPlaneWords words, lowest bit first. Hold until the next Load.
    const uint64_t* Field(int bitStart, int width);

    const BitKernels& Kernels() const { return kernels_; }

  private:
    const Survey& survey_;
    const BitKernels& kernels_;
    qint32 first_ = 0;
    int count_ = 0;
    std::vector<uint64_t> planes_;
    bool whole_;              // records are transposed by chunks, not field by field
    std::vector<bool> made_;  // by chunk, or by first bit of a field
};

}  // namespace quibra
