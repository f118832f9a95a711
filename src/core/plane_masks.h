// Which samples of a block hold what in one answer field, from the field's planes. See core/sample_planes.h.
#pragma once

#include <bit>

#include "core/sample_planes.h"

namespace quibra {

// Each keeps in `mask`, in its first `words` words, the samples whose field of `width` planes ...
// ... is `value`,
void KeepEqual(const uint64_t* planes, int width, int value, int words, BlockMask& mask);
// ... is at most `value` (when `above` is false) or at least (when true),
void KeepOrdered(const uint64_t* planes, int width, int value, bool above, int words, BlockMask& mask);
// ... is not 0,
void KeepFilled(const uint64_t* planes, int width, int words, BlockMask& mask);
// ... is what another field of that width is.
void KeepSame(const uint64_t* planes, const uint64_t* others, int width, int words, BlockMask& mask);

// Adds to `held` the samples of `among` whose field lies from `low` to `high`.
void AddInRange(const uint64_t* planes, int width, int low, int high, const BlockMask& among, int words,
                BlockMask& held);

// Calls `visit` with the place in the block of each sample of the mask.
template <typename Visit>
void ForEachSample(const BlockMask& mask, Visit visit) {
    for (size_t w = 0; w < mask.size(); ++w)
        for (uint64_t bits = mask[w]; bits != 0; bits &= bits - 1)
            visit(static_cast<int>(w) * 64 + std::countr_zero(bits));
}

}  // namespace quibra
