// Included once by each bit_kernels*.cpp, which names the table it defines. Nothing here may be shared between those
// files: an inline function of a library compiled with wide instructions could end up serving all others. So only
// macros, types and functions of this file's own unnamed namespace are used.

#include <cstring>
#ifdef __AVX2__
#include <immintrin.h>
#endif

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

constexpr int kGroups = 8;  // groups of 64 records that fill the lanes of one vector of a plane

// 64 records to 64 rows of words: row r holds bit r of each of the records' eight words, one bit a record. The method
// is the recursive exchange of quadrants (Warren, Hacker's Delight, "Transposing a Bit Matrix"), on eight matrices side
// by side. Rows go kGroups vectors apart.
void TransposeGroup(const unsigned char* records, size_t stride, Lanes* rows) {
    Lanes halfway[64];
    for (int r = 0; r < 8; ++r) {
        Lanes row[8];
        for (int i = 0; i < 8; ++i)
            std::memcpy(&row[i], records + static_cast<size_t>(r + 8 * i) * stride, kChunkBytes);
        QUIBRA_THREE_STEPS(row, 8, 0x00000000FFFFFFFFu, 0x0000FFFF0000FFFFu, 0x00FF00FF00FF00FFu);
        for (int i = 0; i < 8; ++i)
            halfway[r + 8 * i] = row[i];
    }
    for (int r = 0; r < 64; r += 8) {
        Lanes row[8];
        for (int i = 0; i < 8; ++i)
            row[i] = halfway[r + i];
        QUIBRA_THREE_STEPS(row, 1, 0x0F0F0F0F0F0F0F0Fu, 0x3333333333333333u, 0x5555555555555555u);
        for (int i = 0; i < 8; ++i)
            rows[(r + i) * kGroups] = row[i];
    }
}

// Vector g of `v` holds eight words of group g: afterwards vector w holds word w of the eight groups.
#ifdef __AVX512F__
#define QUIBRA_INTERLEAVE(x, y, first, second)           \
    do {                                                 \
        const Lanes low = __builtin_shufflevector first; \
        (y) = __builtin_shufflevector second;            \
        (x) = low;                                       \
    } while (0)

void ExchangeGroups(Lanes* v) {
    for (int i = 0; i < 8; i += 2)
        QUIBRA_INTERLEAVE(v[i], v[i + 1], (v[i], v[i + 1], 0, 8, 2, 10, 4, 12, 6, 14),
                          (v[i], v[i + 1], 1, 9, 3, 11, 5, 13, 7, 15));
    for (int i = 0; i < 8; i += (i & 1) ? 3 : 1)
        QUIBRA_INTERLEAVE(v[i], v[i + 2], (v[i], v[i + 2], 0, 1, 8, 9, 4, 5, 12, 13),
                          (v[i], v[i + 2], 2, 3, 10, 11, 6, 7, 14, 15));
    for (int i = 0; i < 4; ++i)
        QUIBRA_INTERLEAVE(v[i], v[i + 4], (v[i], v[i + 4], 0, 1, 2, 3, 8, 9, 10, 11),
                          (v[i], v[i + 4], 4, 5, 6, 7, 12, 13, 14, 15));
}
#else
void ExchangeGroups(Lanes* v) {
    uint64_t words[kGroups][8];
    std::memcpy(words, v, sizeof words);
    for (int w = 0; w < 8; ++w)
        for (int g = 0; g < kGroups; ++g)
            v[w][g] = words[g][w];
}
#endif

// Eight groups at a time, so that whole cache lines of the planes are written.
void Transpose(const unsigned char* records, size_t stride, int count, uint64_t* planes) {
    Lanes rows[64 * kGroups];
    for (int first = 0; first < count; first += 64 * kGroups) {
        for (int g = 0; g < kGroups; ++g) {
            const int start = first + g * 64;
            if (start + 64 <= count) {
                TransposeGroup(records + static_cast<size_t>(start) * stride, stride, rows + g);
                continue;
            }
            unsigned char padded[64 * kChunkBytes] = {};
            for (int r = 0; start + r < count; ++r)
                std::memcpy(padded + r * kChunkBytes, records + static_cast<size_t>(start + r) * stride, kChunkBytes);
            TransposeGroup(padded, kChunkBytes, rows + g);
        }
        for (int r = 0; r < 64; ++r) {
            ExchangeGroups(rows + r * kGroups);
            for (int w = 0; w < 8; ++w)
                std::memcpy(planes + (w * 64 + r) * kPlaneWords + first / 64, rows + r * kGroups + w, kChunkBytes);
        }
    }
}

// Bit p of 64 bytes as one word.
inline uint64_t BitOfBytes(const unsigned char* bytes, int p) {
#ifdef __AVX2__
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + 32));
    const __m128i up = _mm_cvtsi32_si128(7 - p);
    const auto first = static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_sll_epi16(low, up)));
    const auto second = static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_sll_epi16(high, up)));
    return first | static_cast<uint64_t>(second) << 32;
#else
    uint64_t word = 0;
    for (int i = 0; i < 8; ++i) {
        uint64_t eight;
        std::memcpy(&eight, bytes + 8 * i, 8);
        // The product gathers the lowest bits of the eight bytes in the highest byte.
        word |= (((eight >> p) & 0x0101010101010101u) * 0x0102040810204080u >> 56) << (8 * i);
    }
    return word;
#endif
}

// Two passes, so that no load waits for the byte stores before it.
void Extract(const unsigned char* records, size_t stride, int count, int bitStart, int width, uint64_t* planes) {
    unsigned char bytes[kBlockSamples];
    const int shift = bitStart % 8;
    records += bitStart / 8;
    for (int s = 0; s < count; ++s, records += stride) {
        uint16_t field;
        std::memcpy(&field, records, 2);
        bytes[s] = static_cast<unsigned char>(field >> shift);
    }
    std::memset(bytes + count, 0, static_cast<size_t>((64 - count % 64) % 64));
    for (int first = 0; first < count; first += 64)
        for (int p = 0; p < width; ++p)
            planes[p * kPlaneWords + first / 64] = BitOfBytes(bytes + first, p);
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

#undef QUIBRA_INTERLEAVE
#undef QUIBRA_THREE_STEPS
#undef QUIBRA_EXCHANGE

}  // namespace

}  // namespace quibra
