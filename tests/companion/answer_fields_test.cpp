#include <gtest/gtest.h>

#include "companion/plain_answers.h"

using namespace quibra;

extern "C" const char* CheckCompanionFromC(void);

// Every offset and width, among words full of other questions' bits, against packing bit by bit.
TEST(AnswerFields, PackAndUnpackAsBitByBit) {
    std::mt19937 random(16);
    for (int round = 0; round < 8 * 48 * 4; ++round) {
        PlainSample sample = RandomSample(random);
        const int16_t width = static_cast<int16_t>(1 + round % 8);
        const int start = static_cast<int>(sample.bits.size()) * 16 + round / 8 % 48;
        sample.Add(7, start, width, 5, random);
        std::vector<int16_t> counts(8, -1), all(60, -1), flat;
        maAno_pop_verstC(8 | 0x70000, sample.layout.data(), sample.bits.data(), counts.data(), all.data());
        std::vector<int16_t> filled(sample.bits.size(), round % 2 ? 0 : -1);
        std::vector<int16_t> expected = filled, one = filled;
        for (int q = 0; q < 8; ++q) {
            const std::vector<int>& answers = sample.answers[q];
            const AnswerLayoutRec& layout = sample.layout[q];
            const int16_t count = static_cast<int16_t>(answers.size());
            ASSERT_EQ(counts[q], count) << q;
            int16_t popCount = -1;
            std::vector<int16_t> popped(6, -1), given(answers.begin(), answers.end());
            flat.insert(flat.end(), given.begin(), given.end());
            maAno_popC(sample.layout.data(), q | 0x50000, sample.bits.data(), &popCount, popped.data());
            ASSERT_EQ(popCount, count);
            // What lies behind the answers stays, but for the first entry.
            given.resize(6, -1);
            if (count == 0) given[0] = 0;
            ASSERT_EQ(popped, given) << q;
            given.assign(6, 1);
            std::copy(answers.begin(), answers.end(), given.begin());
            maAno_pushC(sample.layout.data(), q, one.data(), &count, given.data());
            for (int i = 0; i < layout.Anum; ++i)
                SetPlainField(expected, layout.BitStart + i * layout.BitWidth, layout.BitWidth,
                              i < count ? answers[i] : 0);
            ASSERT_EQ(one, expected) << "width " << layout.BitWidth << " start " << layout.BitStart;
        }
        all.resize(flat.size());
        ASSERT_EQ(all, flat);
        maAno_push_verstC(8, sample.layout.data(), filled.data(), counts.data(), all.data());
        ASSERT_EQ(filled, expected);
    }
}

TEST(AnswerFields, AreAtHomeInC) {
    EXPECT_STREQ(CheckCompanionFromC(), nullptr);
}
