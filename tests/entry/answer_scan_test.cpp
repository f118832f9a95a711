#include "entry/answer_scan.h"

#include <gtest/gtest.h>

#include <set>

#include "entry/answer_check.h"
#include "support/random_survey.h"

using namespace quibra;

namespace {

class Ear : public CorrectionNotice {
  public:
    void ShowCorrection(const QString&, const QString&, int, int) override { heard = true; }
    bool heard = false;
};

// Damaged answers, repeats, exclusive choices, conditions sensible and absurd: what the checks change or speak of one
// by one is among the suspects, and most of the others are not.
TEST(AnswerScan, SuspectsEverySampleThatTheChecksWouldTouch) {
    Random random(42);
    int touched = 0;
    int suspected = 0;
    int samples = 0;
    for (int round = 0; round < 30; ++round) {
        Survey survey = MakeRandomSurvey(random, 12, Pick(random, 1, 300));
        survey.CorrectFlags = static_cast<qint16>(Pick(random, 0, 15));
        for (int q = 0; q < survey.QuestionCount; ++q) {
            for (int c = 1; c < survey.Questions[q].ChoiceCount; ++c)
                if (Pick(random, 0, 5) == 0)
                    survey.Choices(c, q).Status = static_cast<qint16>(Pick(random, 0, 63) & ~1);
            if (Pick(random, 0, 3) > 0) continue;
            const auto column = MakeRandomColumn(random, survey, 3);
            std::copy(column.begin(), column.end(), survey.QLimit.Column(q).begin());
        }
        std::set<qint32> suspects;
        AnswerScan(survey, true).ForEachSuspect([&](qint32 dno) { suspects.insert(suspects.end(), dno); });
        WorkingSample working(survey);
        for (qint32 dno = 0; dno < survey.SampleCount(); ++dno) {
            Ear ear;
            const bool changed = CheckSample(survey, dno, working, true, &ear);
            ASSERT_TRUE(ear.heard || !changed);
            ASSERT_TRUE(!ear.heard || suspects.contains(dno)) << round << ' ' << dno;
            touched += ear.heard;
        }
        suspected += static_cast<int>(suspects.size());
        samples += survey.SampleCount();
    }
    EXPECT_GT(touched, samples / 10);
    EXPECT_LT(suspected - touched, samples / 10);
}

}  // namespace
