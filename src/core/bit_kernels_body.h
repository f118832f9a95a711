// Included once by each bit_kernels*.cpp, which names the table it defines. Nothing here may be shared between those
// files: an inline function of a library compiled with wide instructions could end up serving all others. So only
// macros, types and functions of this file's own unnamed namespace are used.

#include <cstring>

#include "core/bit_kernels.h"

namespace quibra {

namespace {

// Eight neighbouring 64-bit words of one record; the compiler splits it where registers are narrower.
using Lanes = uint64_t __attribute__((vector_size(kChunkBytes)));

// The step of a 64 x 64 bit transposition that exchanges, between rows `distance` apart, the bit columns `distance`
// apart.
#define QUIBRA_EXCHANGE(x, y, distance, mask)                       \
    do {                                                            \
        const Lanes crossed = (((x) >> (distance)) ^ (y)) & (mask); \
        (y) ^= crossed;                                             \
        (x) ^= crossed << (distance);                               \
    } while (0)

// Three steps at once over eight rows, so that rows stay in registers: distances 4d, 2d and d.
#define QUIBRA_THREE_STEPS(row, d, mask4, mask2, mask1)              \
    do {                                                             \
        for (int i = 0; i < 4; ++i)                                  \
            QUIBRA_EXCHANGE(row[i], row[i + 4], 4 * (d), mask4);     \
        for (int i = 0; i < 8; i += 4) {                             \
            QUIBRA_EXCHANGE(row[i], row[i + 2], 2 * (d), mask2);     \
            QUIBRA_EXCHANGE(row[i + 1], row[i + 3], 2 * (d), mask2); \
        }                                                            \
        for (int i = 0; i < 8; i += 2)                               \
            QUIBRA_EXCHANGE(row[i], row[i + 1], (d), mask1);         \
    } while (0)

// 64 records to 64 words of each of kChunkBits planes; the method is the recursive exchange of quadrants (Warren,
// Hacker's Delight, "Transposing a Bit Matrix"), on eight matrices side by side.
void TransposeGroup(const unsigned char* records, size_t stride, uint64_t* planes) {
    Lanes rows[64];
    for (int r = 0; r < 8; ++r) {
        Lanes row[8];
        for (int i = 0; i < 8; ++i)
            std::memcpy(&row[i], records + static_cast<size_t>(r + 8 * i) * stride, kChunkBytes);
        QUIBRA_THREE_STEPS(row, 8, 0x00000000FFFFFFFFu, 0x0000FFFF0000FFFFu, 0x00FF00FF00FF00FFu);
        for (int i = 0; i < 8; ++i)
            rows[r + 8 * i] = row[i];
    }
    for (int r = 0; r < 64; r += 8) {
        Lanes row[8];
        for (int i = 0; i < 8; ++i)
            row[i] = rows[r + i];
        QUIBRA_THREE_STEPS(row, 1, 0x0F0F0F0F0F0F0F0Fu, 0x3333333333333333u, 0x5555555555555555u);
        for (int i = 0; i < 8; ++i)
            for (int lane = 0; lane < 8; ++lane)
                planes[(lane * 64 + r + i) * kPlaneWords] = row[i][lane];
    }
}

void Transpose(const unsigned char* records, size_t stride, int count, uint64_t* planes) {
    int group = 0;
    for (; (group + 1) * 64 <= count; ++group)
        TransposeGroup(records + static_cast<size_t>(group) * 64 * stride, stride, planes + group);
    const int rest = count - group * 64;
    if (rest == 0) return;
    unsigned char padded[64 * kChunkBytes] = {};
    for (int r = 0; r < rest; ++r)
        std::memcpy(padded + r * kChunkBytes, records + static_cast<size_t>(group * 64 + r) * stride, kChunkBytes);
    TransposeGroup(padded, kChunkBytes, planes + group);
}

inline int PopulationCount(uint64_t word) {
#ifdef __POPCNT__
    return __builtin_popcountll(word);
#else
    word -= (word >> 1) & 0x5555555555555555u;
    word = (word & 0x3333333333333333u) + ((word >> 2) & 0x3333333333333333u);
    word = (word + (word >> 4)) & 0x0F0F0F0F0F0F0F0Fu;
    return static_cast<int>((word * 0x0101010101010101u) >> 56);
#endif
}

void CountMask(const uint64_t* mask, const uint64_t* columns, int columnCount, int words, int32_t* counts,
               ptrdiff_t countStride) {
    for (int column = 0; column < columnCount; ++column, columns += kPlaneWords, counts += countStride) {
        int64_t sum = 0;
        for (int w = 0; w < words; ++w)
            sum += PopulationCount(mask[w] & columns[w]);
        *counts += static_cast<int32_t>(sum);
    }
}

void CountChoices(const uint64_t* planes, int width, int choiceCount, const uint64_t* base, const uint64_t* columns,
                  int columnCount, int words, int32_t* counts, ptrdiff_t countStride) {
    uint64_t equal[kPlaneWords];
    for (int c = 1; c < choiceCount; ++c) {
        for (int w = 0; w < words; ++w)
            equal[w] = base[w];
        for (int p = 0; p < width; ++p) {
            const uint64_t* plane = planes + p * kPlaneWords;
            const uint64_t flip = (c >> p) & 1 ? 0 : ~uint64_t{0};
            for (int w = 0; w < words; ++w)
                equal[w] &= plane[w] ^ flip;
        }
        CountMask(equal, columns, columnCount, words, counts + c, countStride);
    }
}

void TestFlags(const int16_t* flags, int count, uint16_t wanted, uint64_t* mask) {
    for (int first = 0; first < count; first += 64) {
        uint64_t word = 0;
        const int last = count - first < 64 ? count - first : 64;
        for (int s = 0; s < last; ++s)
            word |= static_cast<uint64_t>((static_cast<uint16_t>(flags[first + s]) & wanted) == wanted) << s;
        mask[first / 64] = word;
    }
}

#undef QUIBRA_THREE_STEPS
#undef QUIBRA_EXCHANGE

}  // namespace

}  // namespace quibra
