// Which samples of a block hold what in one answer field, from the field's planes. See core/sample_planes.h.
#pragma once

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

}  // namespace quibra
