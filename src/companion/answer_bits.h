// The one reader and writer of answer fields. Everything that looks at packed answers one at a time goes through it.
#pragma once

#include <cstdint>

#include "companion/quibra.h"

namespace quibra {

// Field of `width` bits (1 to 8) from bit `start` on. Reads the second word only when the field reaches into it.
inline int ReadField(const int16_t* bits, int start, int width) {
    const int word = start >> 4;
    const int shift = start & 15;
    uint32_t value = static_cast<uint16_t>(bits[word]);
    if (shift + width > 16) value |= static_cast<uint32_t>(static_cast<uint16_t>(bits[word + 1])) << 16;
    return static_cast<int>((value >> shift) & ((1u << width) - 1));
}

inline void WriteField(int16_t* bits, int start, int width, int value) {
    const int word = start >> 4;
    const int shift = start & 15;
    const uint32_t mask = ((1u << width) - 1) << shift;
    const uint32_t field = (static_cast<uint32_t>(value) << shift) & mask;
    bits[word] = static_cast<int16_t>((static_cast<uint16_t>(bits[word]) & ~mask) | field);
    if (shift + width > 16)
        bits[word + 1] = static_cast<int16_t>((static_cast<uint16_t>(bits[word + 1]) & ~(mask >> 16)) | (field >> 16));
}

// The answer at `position` (from 0), 0 when the question has none there. Walks from the first field, since an answer
// counts only when all fields before it are filled.
inline int AnswerAt(const AnswerLayoutRec& question, const int16_t* bits, int position) {
    if (position >= question.Anum) return 0;
    int answer = 0;
    for (int i = 0; i <= position; ++i) {
        answer = ReadField(bits, question.BitStart + i * question.BitWidth, question.BitWidth);
        if (answer == 0) return 0;
    }
    return answer;
}

}  // namespace quibra
