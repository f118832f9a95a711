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
    const std::pair<std::vector<int>, bool> cases[] = {
        {{}, true},
        {{kLimitAnd, kLimitOr}, true},
        {{kLimitNot, kLimitTo}, true},
        {{kLimitNone, kLimitTo, kLimitAnd, kLimitOr}, true},
        {{kLimitOr, kLimitAnd}, false},
        {{kLimitTo, kLimitAnd}, false},
        {{kLimitNone, kLimitOr}, false},
    };
    for (const auto& [kinds, standsAlone] : cases) {
        std::array<LimitLine, 16> column{};
        for (size_t i = 0; i < kinds.size(); ++i)
            column[i + 1].a = static_cast<qint16>(kinds[i] + 16);
        EXPECT_EQ(StandsAlone(column), standsAlone) << testing::PrintToString(kinds);
    }
}

}  // namespace
}  // namespace quibra
