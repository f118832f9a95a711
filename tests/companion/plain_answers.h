// Packed answers the slow way, for the tests to compare with: bit by bit, unpacked into lists.
#pragma once

#include <random>
#include <vector>

#include "companion/quibra.h"

namespace quibra {

struct PlainSample {
    std::vector<AnswerLayoutRec> layout{256};
    std::vector<int16_t> bits;
    // The answers of each question, none for one that is absent or unanswered.
    std::vector<std::vector<int>> answers{256};
};

inline bool PlainBit(const std::vector<int16_t>& bits, int bit) {
    return (bits[bit / 16] >> (bit % 16)) & 1;
}

inline int PlainField(const std::vector<int16_t>& bits, int start, int width) {
    int value = 0;
    for (int i = 0; i < width; ++i)
        value += PlainBit(bits, start + i) << i;
    return value;
}

inline void SetPlainField(std::vector<int16_t>& bits, int start, int width, int value) {
    for (int i = 0; i < width; ++i) {
        const int bit = start + i;
        const int flag = 1 << (bit % 16);
        bits[bit / 16] = static_cast<int16_t>((value >> i) & 1 ? bits[bit / 16] | flag : bits[bit / 16] & ~flag);
    }
}

// A layout of a few questions, with gaps and absent ones between them, over words in which every field is filled at
// random, so that empty fields stand in front of filled ones too. The words end with the last field's.
inline PlainSample RandomSample(std::mt19937& random) {
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    PlainSample sample;
    const int questions = 1 + below(7);
    int start = 0;
    for (int q = 0; q < questions; ++q) {
        AnswerLayoutRec& question = sample.layout[q];
        question.BitStart = static_cast<int16_t>(start += below(3) == 0 ? below(16) : 0);
        question.BitWidth = static_cast<int16_t>(1 + below(8));
        question.Anum = static_cast<int16_t>(below(7) - 1);  // -1 and 0: no such question
        if (question.Anum > 0) start += question.Anum * question.BitWidth;
    }
    sample.bits.resize(static_cast<size_t>(start + 15) / 16);
    for (int q = 0; q < questions; ++q) {
        const AnswerLayoutRec& question = sample.layout[q];
        bool isOver = false;
        for (int i = 0; i < question.Anum; ++i) {
            const int answer = below(4) == 0 ? 0 : below(1 << (below(2) == 0 ? 2 : question.BitWidth));
            const int at = question.BitStart + i * question.BitWidth;
            SetPlainField(sample.bits, at, question.BitWidth, answer);
            const int stored = answer & ((1 << question.BitWidth) - 1);
            isOver = isOver || stored == 0;
            if (!isOver) sample.answers[q].push_back(stored);
        }
    }
    return sample;
}

}  // namespace quibra
