#include <gtest/gtest.h>

#include "companion/plain_answers.h"

using namespace quibra;

extern "C" const char* CheckCompanionFromC(void);

namespace {

constexpr int kQuestion = 1;

// One question of `anum` answers at bit `start` among words full of other questions' bits.
struct Place {
    std::vector<AnswerLayoutRec> layout{2};
    std::vector<int16_t> bits;

    Place(int start, int width, int anum, int16_t filling) : bits((start + anum * width + 15) / 16, filling) {
        layout[kQuestion] = {static_cast<int16_t>(anum), static_cast<int16_t>(start), static_cast<int16_t>(width), 0};
    }
};

}  // namespace

TEST(AnswerFields, EveryOffsetAndWidthPacksAsBitByBit) {
    std::mt19937 random(8);
    for (int width = 1; width <= 8; ++width) {
        for (int start = 0; start < 48; ++start) {
            for (const int16_t filling : {int16_t{0}, int16_t{-1}}) {
                const int16_t anum = 5;
                Place place(start, width, anum, filling);
                std::vector<int16_t> expected = place.bits;
                const int16_t count = static_cast<int16_t>(random() % (anum + 1));
                std::vector<int16_t> Ano(anum);
                for (int i = 0; i < anum; ++i) {
                    Ano[i] = static_cast<int16_t>(1 + random() % ((1u << width) - 1));
                    SetPlainField(expected, start + i * width, width, i < count ? Ano[i] : 0);
                }
                maAno_pushC(place.layout.data(), kQuestion, place.bits.data(), &count, Ano.data());
                ASSERT_EQ(place.bits, expected) << "width " << width << " start " << start << " count " << count;

                int16_t popCount = -1;
                std::vector<int16_t> popped(anum, -1);
                maAno_popC(place.layout.data(), kQuestion | 0x50000, place.bits.data(), &popCount, popped.data());
                ASSERT_EQ(popCount, count);
                for (int i = 0; i < anum; ++i)
                    ASSERT_EQ(popped[i], i < count ? Ano[i] : i == 0 ? 0 : -1) << i;
            }
        }
    }
}

TEST(AnswerFields, AllQuestionsAtOnceAreTheSameAsOneByOne) {
    std::mt19937 random(16);
    for (int round = 0; round < 3000; ++round) {
        const PlainSample sample = RandomSample(random);
        const int32_t questions = 8;
        std::vector<int16_t> counts(questions, -1);
        std::vector<int16_t> all(60, -1);
        maAno_pop_verstC(questions | 0x70000, sample.layout.data(), sample.bits.data(), counts.data(), all.data());
        std::vector<int16_t> flat;
        std::vector<int16_t> packed(sample.bits.size(), 0x5A5A);
        std::vector<int16_t> expected = packed;
        for (int q = 0; q < questions; ++q) {
            const std::vector<int>& answers = sample.answers[q];
            ASSERT_EQ(counts[q], answers.size()) << q;
            flat.insert(flat.end(), answers.begin(), answers.end());
            const AnswerLayoutRec& layout = sample.layout[q];
            for (int i = 0; i < layout.Anum; ++i)
                SetPlainField(expected, layout.BitStart + i * layout.BitWidth, layout.BitWidth,
                              i < counts[q] ? answers[i] : 0);
        }
        all.resize(flat.size());
        ASSERT_EQ(all, flat);
        maAno_push_verstC(questions, sample.layout.data(), packed.data(), counts.data(), all.data());
        ASSERT_EQ(packed, expected);
    }
}

TEST(AnswerFields, AreAtHomeInC) {
    EXPECT_STREQ(CheckCompanionFromC(), nullptr);
}
