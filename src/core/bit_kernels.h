// The loops over bit planes, once for each instruction set, picked at run time.
//
// A plane holds one bit of the packed record for a block of samples: bit s of plane p is bit p of sample s. Where a
// field has w bits, its w planes answer "who answered c" for 64 samples by w word operations; counting is a population
// count. All forms come from one source, bit_kernels_body.h, compiled with different flags; the portable one is the
// reference.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace quibra {

inline constexpr int kBlockSamples = 4096;
inline constexpr int kPlaneWords = kBlockSamples / 64;
// Planes are made from 64 bytes of each record at a time.
inline constexpr int kChunkBytes = 64;
inline constexpr int kChunkBits = kChunkBytes * 8;

struct BitKernels {
    const char* name;

    // Turns kChunkBytes of `count` records (1 to kBlockSamples), `stride` bytes apart, into kChunkBits planes of
    // kPlaneWords words each. Bits of samples behind `count` are meaningless.
    void (*transpose)(const unsigned char* records, size_t stride, int count, uint64_t* planes);

    // Makes the planes of a single field alone: the `width` (1 to 8) bits from bit `bitStart` of each record on.
    // Cheaper than a transposition where only a few fields are asked for. Reads two bytes, of which the second may lie
    // behind the record.
    void (*extract)(const unsigned char* records, size_t stride, int count, int bitStart, int width, uint64_t* planes);

    // For a field of `width` planes and each choice c from 1 to choiceCount - 1: adds to counts[column * countStride +
    // c] how many samples of `base` and of the column's mask hold c. Masks have kPlaneWords words, of which `words` are
    // read.
    void (*countChoices)(const uint64_t* planes, int width, int choiceCount, const uint64_t* base,
                         const uint64_t* columns, int columnCount, int words, int32_t* counts, ptrdiff_t countStride);

    // Adds to counts[column * countStride] how many samples `mask` and the column's mask have in common.
    void (*countMask)(const uint64_t* mask, const uint64_t* columns, int columnCount, int words, int32_t* counts,
                      ptrdiff_t countStride);

    // Sets bit s of `mask` when all bits of `wanted` are set in flags[s], for `count` samples.
    void (*testFlags)(const int16_t* flags, int count, uint16_t wanted, uint64_t* mask);
};

// The forms that this machine can run, the portable one first, the fastest last.
std::span<const BitKernels* const> UsableBitKernels();
const BitKernels& FastestBitKernels();

}  // namespace quibra
