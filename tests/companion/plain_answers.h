// Packed answers the slow way, for the tests to compare with: bit by bit, unpacked into lists.
#pragma once

#include <algorithm>
#include <random>
#include <vector>

#include "companion/quibra.h"

namespace quibra {

inline void SetPlainField(std::vector<int16_t>& bits, int start, int width, int value) {
    for (int i = 0; i < width; ++i) {
        const int bit = start + i;
        const int flag = 1 << (bit % 16);
        bits[bit / 16] = static_cast<int16_t>((value >> i) & 1 ? bits[bit / 16] | flag : bits[bit / 16] & ~flag);
    }
}

struct PlainSample {
    std::vector<AnswerLayoutRec> layout{256};
    std::vector<int16_t> bits;
    // The answers of each question, none for one that is absent or unanswered.
    std::vector<std::vector<int>> answers{256};

    // Question q from bit `start` on, its fields filled at random, so that empty ones stand in front of filled ones
    // too. The words end with its last field's. Gives the bit behind it.
    int Add(int q, int start, int width, int anum, std::mt19937& random) {
        layout[q] = {static_cast<int16_t>(anum), static_cast<int16_t>(start), static_cast<int16_t>(width), 0};
        const int end = start + std::max(anum, 0) * width;
        bits.resize(static_cast<size_t>(end + 15) / 16);
        bool isOver = false;
        for (int at = start; at < end; at += width) {
            const int values = 1 << (random() % 2 == 0 ? std::min(2, width) : width);
            const int answer = random() % 4 == 0 ? 0 : static_cast<int>(random()) & (values - 1);
            SetPlainField(bits, at, width, answer);
            isOver = isOver || answer == 0;
            if (!isOver) answers[q].push_back(answer);
        }
        return end;
    }
};

// A few questions, with gaps and absent ones between them.
inline PlainSample RandomSample(std::mt19937& random) {
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    PlainSample sample;
    const int questions = 1 + below(7);
    int start = 0;
    for (int q = 0; q < questions; ++q) {
        if (below(3) == 0) start += below(16);
        const int anum = below(7) - 1;  // -1 and 0: no such question
        start = sample.Add(q, start, 1 + below(8), anum, random);
    }
    return sample;
}

}  // namespace quibra
