#include "core/plane_masks.h"

namespace quibra {

using Words = const uint64_t*;

// Plane by plane, so that the inner loop is a plain one.
void KeepEqual(Words planes, int width, int value, int words, BlockMask& mask) {
    for (int p = 0; p < width; ++p) {
        const Words plane = planes + p * kPlaneWords;
        const uint64_t flip = (value >> p) & 1 ? 0 : ~uint64_t{0};
        for (int w = 0; w < words; ++w)
            mask[static_cast<size_t>(w)] &= plane[w] ^ flip;
    }
}

// From the highest plane down, a sample is decided where its bit first differs from the value's.
void KeepOrdered(Words planes, int width, int value, bool above, int words, BlockMask& mask) {
    BlockMask equal = mask;
    for (int p = width - 1; p >= 0; --p) {
        const Words plane = planes + p * kPlaneWords;
        const bool set = (value >> p) & 1;
        const uint64_t flip = set ? 0 : ~uint64_t{0};
        // Where the value's bit is set, a clear one is below it; where it is clear, a set one is above.
        const uint64_t decides = set == above ? ~uint64_t{0} : 0;
        for (int w = 0; w < words; ++w) {
            const auto at = static_cast<size_t>(w);
            const uint64_t same = plane[w] ^ flip;
            mask[at] &= ~(equal[at] & ~same & decides);
            equal[at] &= same;
        }
    }
}

void KeepFilled(Words planes, int width, int words, BlockMask& mask) {
    for (int w = 0; w < words; ++w) {
        uint64_t any = 0;
        for (int p = 0; p < width; ++p)
            any |= planes[p * kPlaneWords + w];
        mask[static_cast<size_t>(w)] &= any;
    }
}

void KeepSame(Words planes, Words others, int width, int words, BlockMask& mask) {
    for (int p = 0; p < width; ++p)
        for (int w = 0; w < words; ++w)
            mask[static_cast<size_t>(w)] &= ~(planes[p * kPlaneWords + w] ^ others[p * kPlaneWords + w]);
}

void AddInRange(Words planes, int width, int low, int high, const BlockMask& among, int words, BlockMask& held) {
    const int largest = (1 << width) - 1;
    if (low > high || low > largest) return;
    BlockMask mask = among;
    if (low == high) {
        KeepEqual(planes, width, low, words, mask);
    } else {
        KeepOrdered(planes, width, low, true, words, mask);
        if (high < largest) KeepOrdered(planes, width, high, false, words, mask);
    }
    for (int w = 0; w < words; ++w)
        held[static_cast<size_t>(w)] |= mask[static_cast<size_t>(w)];
}

}  // namespace quibra
