#include "conditions/block_condition.h"

#include <gtest/gtest.h>

#include "conditions/limit_lists.h"
#include "support/random_survey.h"

namespace quibra {
namespace {

// What lmDoC says of each sample, by every instruction set, from planes made field by field and all together, at block
// sizes that end in every way.
TEST(BlockCondition, AgreesWithEachSampleTestedAlone) {
    Random random(1);
    for (int round = 0; round < 60; ++round) {
        const qint32 samples = Pick(random, 1, 3) == 1 ? Pick(random, 1, 200) : Pick(random, 4000, 4700);
        const Survey survey = MakeRandomSurvey(random, 40, samples);
        const LimitList list(MakeRandomColumn(random, survey, 14));
        const BlockCondition condition(survey, list);
        for (const BitKernels* kernels : UsableBitKernels())
            for (const int fields : {1, 100000}) {
                SamplePlanes planes(survey, fields, *kernels);
                for (qint32 first = 0; first < samples; first += kBlockSamples) {
                    planes.Load(first, std::min<qint32>(samples - first, kBlockSamples));
                    BlockMask mask = planes.Valid();
                    condition.Restrict(planes, mask);
                    for (int s = 0; s < planes.Count(); ++s)
                        ASSERT_EQ((mask[static_cast<size_t>(s / 64)] >> s % 64) & 1,
                                  TestLimit(survey, first + s, list) ? 1u : 0u)
                            << "round " << round << " sample " << first + s << " by " << kernels->name;
                }
            }
    }
}

TEST(BlockCondition, ColumnsThatReachBackDoNotStandAlone) {
    const auto standsAlone = [](std::initializer_list<int> kinds) {
        std::array<LimitLine, 16> column{};
        size_t line = 1;
        for (const int kind : kinds)
            column[line++].a = static_cast<qint16>(kind + 16);
        return StandsAlone(column);
    };
    EXPECT_TRUE(standsAlone({}));
    EXPECT_TRUE(standsAlone({kLimitAnd, kLimitOr}));
    EXPECT_TRUE(standsAlone({kLimitNot, kLimitTo}));
    EXPECT_TRUE(standsAlone({kLimitNone, kLimitTo, kLimitAnd, kLimitOr}));
    EXPECT_FALSE(standsAlone({kLimitOr, kLimitAnd}));
    EXPECT_FALSE(standsAlone({kLimitTo, kLimitAnd}));
    EXPECT_FALSE(standsAlone({kLimitNone, kLimitOr}));
}

}  // namespace
}  // namespace quibra
