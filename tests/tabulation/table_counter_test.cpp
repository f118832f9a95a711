#include "tabulation/table_counter.h"

#include <gtest/gtest.h>

#include "companion/limit_terms.h"
#include "conditions/limit_lists.h"
#include "support/random_survey.h"
#include "tabulation/sheet_rig.h"

namespace quibra {
namespace {

Figures CountOneByOne(const Survey& survey, const TotalOption& option, int q, int L, qint32 samples) {
    const LimitList list = JoinLimits({survey.QLimit.Column(q), option.Limits.Column(0), option.Limits.Column(L + 1)});
    Figures figures;
    for (qint32 dno = 0; dno < samples; ++dno)
        figures.persons += VerstTotalC(list.Data(), survey.QIdx.Data(), survey.Samples.PreLimitBits(dno),
                                       survey.Samples.Bits(dno), q, figures.counts, option.Rank);
    return figures;
}

void SetColumn(std::span<LimitLine, 16> column, const std::array<LimitLine, 16>& lines) {
    std::copy(lines.begin(), lines.end(), column.begin());
}

void ExpectSheet(const Survey& survey, const TotalOption& option, bool sort) {
    SheetRig rig(survey);
    rig.sheet.view.sort = sort;
    rig.sheet.DoTotal(option);
    for (int q = option.FromQno; q <= rig.sheet.result.option.ToQno; ++q)
        for (int L = 0; L < option.LimitCount; ++L) {
            const Figures expected = CountOneByOne(survey, option, q, L, survey.SampleCount());
            const std::vector<BlockRow> block = BlockRows(survey, rig.sheet.result, q, L);
            const auto choices = static_cast<size_t>(survey.Questions[q].ChoiceCount);
            ASSERT_EQ(block.size(), choices + 1);
            ASSERT_EQ(block[choices].Figure, expected.persons) << q << ' ' << L;
            for (size_t i = 0; i < choices; ++i) {
                ASSERT_EQ(block[i].Figure, expected.counts[PositionAnswer(block[i].RowCode)]) << q << ' ' << L;
                ASSERT_TRUE(!sort || i == 0 || block[i].Figure <= block[i - 1].Figure);
            }
            const int column = rig.sheet.ColStart(L) + (L == 0 || sort ? 1 : 0);
            ASSERT_EQ(rig.sheet.grid.Text(column, rig.sheet.result.RowStart[q] + 3), QString::number(block[0].Figure));
        }
}

// Tables made by chance, with conditions of questions, of the whole and of columns, some of which reach back into the
// one before them: the same figures as one call a sample, by every instruction set, whole and broken off anywhere, and
// in the rows of a sheet.
TEST(TableCounter, AgreesWithEachSampleCountedAlone) {
    Random random(2);
    int shown = 0;
    for (int round = 0; round < 40; ++round) {
        const qint32 samples = Pick(random, 1, 3) == 1 ? Pick(random, 0, 200) : Pick(random, 4000, 9000);
        Survey survey = MakeRandomSurvey(random, 30, samples);
        TotalOption option;
        option.FromQno = static_cast<qint16>(Pick(random, 0, survey.QuestionCount - 1));
        option.ToQno = static_cast<qint16>(Pick(random, option.FromQno, survey.QuestionCount - 1));
        option.Rank = static_cast<qint16>(Pick(random, 0, 2) == 0 ? Pick(random, 1, 4) : 0);
        option.LimitCount = static_cast<qint16>(Pick(random, 1, 5));
        for (int q = option.FromQno; q <= option.ToQno; ++q)
            if (Pick(random, 0, 3) == 0) SetColumn(survey.QLimit.Column(q), MakeRandomColumn(random, survey, 3));
        for (int column = 0; column <= option.LimitCount; ++column)
            SetColumn(option.Limits.Column(column), MakeRandomColumn(random, survey, 4));

        // A sheet tells its conditions in words, so each must be of a question.
        bool hasWords = true;
        for (int column = 0; column <= option.LimitCount; ++column)
            for (const LimitLine& line : option.Limits.Column(column))
                hasWords = hasWords && PositionQuestion(line.b) < survey.QuestionCount;
        shown += hasWords;
        if (hasWords) ExpectSheet(survey, option, Pick(random, 0, 1) == 1);

        for (const BitKernels* kernels : UsableBitKernels()) {
            TableCounter counter(survey, option, *kernels);
            for (const qint32 reached : {samples / 3, samples}) {
                counter.CountTo(reached);
                for (int q = option.FromQno; q <= option.ToQno; ++q) {
                    const int L = Pick(random, 0, option.LimitCount - 1);
                    const Figures expected = CountOneByOne(survey, option, q, L, reached);
                    const Figures counted = counter.Count(q, L, reached);
                    ASSERT_EQ(counted.persons, expected.persons) << "round " << round << " by " << kernels->name;
                    for (int c = 0; c < survey.Questions[q].ChoiceCount; ++c)
                        ASSERT_EQ(counted.counts[c], expected.counts[c])
                            << "round " << round << " question " << q << " choice " << c << " by " << kernels->name;
                }
            }
        }
    }
    EXPECT_GT(shown, 10);
}

}  // namespace
}  // namespace quibra
