#include "tabulation/essay_list.h"

#include <gtest/gtest.h>

#include "core/answer_store.h"
#include "tabulation/sheet_rig.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kPlaces = 2;
constexpr int kAnyChoice = 5;

TotalOption EssaysOf(int q, int choice, int condition) {
    TotalOption option = TableOf(q, 0);
    option.TotalKind = kEssayList;
    option.CrossQno = static_cast<qint16>(choice);
    option.CrossMode = static_cast<qint16>(condition);
    return option;
}

SurveyBuilder ThreeNumbersEach(int samples) {
    SurveyBuilder builder;
    builder.Question(u"q"_s, u"b"_s, 3, {u"数"_s});
    builder.Status(0, 1, {kEssay, kNumber});
    const GivenAnswer one(1, u"1"_s);
    for (int i = 0; i < samples; ++i)
        builder.Sample({{one, one, one}});
    return builder;
}

}  // namespace

TEST(EssayList, RowsAreASelectionOfSamples) {
    SurveyBuilder builder = FruitSurvey();
    SheetRig rig(builder.Get());
    rig.sheet.result.RefQno = {1, 2};
    TotalOption option = EssaysOf(kPlaces, kAnyChoice, kEssayFilled);
    option.Rank = 1;
    option.Limits(1, 0) = SurveyBuilder::Line(4, 1, 2);
    rig.sheet.DoTotal(option);
    EXPECT_EQ(rig.sheet.result.ExLimitText, u"除く女"_s);
    EXPECT_EQ(rig.sheet.grid.ColumnWidth(4), 1400);
    EXPECT_EQ(rig.sheet.grid.Alignment(1), CellAlignment::LeftCenter);
    EXPECT_EQ(rig.sheet.grid.Alignment(3), CellAlignment::LeftTop);
    // The selection that a writer walks.
    EXPECT_EQ(rig.sheet.result.EssayDnoCount(), 4);
    for (int pass = 0; pass < 2; ++pass) {
        for (const qint32 dno : {0, 3, 4, 8, -1, -1})
            EXPECT_EQ(rig.sheet.result.EssayDno(), dno);
        rig.sheet.result.EssayDnoReset();
    }
    EXPECT_EQ(rig.sheet.result.Places(), std::vector<qint32>({0, 3, 4, 8}));

    // A tab inside an essay parts its cells only.
    option.Limits(1, 0) = SurveyBuilder::Line(3, 1, 2);
    rig.sheet.DoTotal(option);
    EXPECT_EQ(rig.sheet.result.EssayRows[1].Essay, u"畑で\t買う"_s);
    option.Limits(1, 0) = SurveyBuilder::Line(3, 0, 0);
    rig.sheet.DoTotal(option);
    EXPECT_TRUE(rig.sheet.result.EssayDnoCount() == 1 && rig.sheet.result.EssayDno() == -1);
}

TEST(EssayList, LongListGoesOnWhereTheLastPartEnded) {
    SurveyBuilder builder = ThreeNumbersEach(3400);
    SheetRig rig(builder.Get());
    const TotalOption option = EssaysOf(0, 2, kEssayAny);
    rig.sheet.DoTotal(option);
    // 3332 samples make 9996 rows, the first count that leaves no room for a sample more.
    EXPECT_EQ(rig.sheet.result.EssayRows.size(), 9996u);
    EXPECT_EQ(rig.sheet.result.FromDno, 3332);
    EXPECT_TRUE(rig.sheet.result.HasNext);
    EXPECT_EQ(rig.ui.TakeTranscript(), QStringList(u"message 64 %1: 人数が多くて3331番までしか表示出来ませんでした。"
                                                   "続きを見るときは『集計の続き』ボタンを押してください。 -> Ok"_s.arg(
                                                       UserInterface::DefaultTitle())));
    rig.sheet.DoTotal(option);
    EXPECT_EQ(rig.sheet.result.EssayRows.size(), 204u);
    EXPECT_EQ(rig.sheet.result.EssayRows.front().Dno, 3332);
    EXPECT_TRUE(!rig.sheet.result.HasNext && rig.sheet.result.FromDno == 0);
    EXPECT_EQ(rig.monitor.percents.join(u' '), u"99%"_s);
    EXPECT_TRUE(rig.ui.transcript.isEmpty());
    // Cancelled at the second look at the samples, the list ends in a total of what it has.
    rig.monitor.cancelAtReport = 2;
    rig.sheet.DoTotal(option);
    EXPECT_EQ(rig.Row(rig.sheet.grid.Rows() - 1).mid(0, 3).join(u'|'), u"のべ150人|平均 |1"_s);
    EXPECT_TRUE(rig.IsAtRest());
    // A list that is full with the last sample has nothing to go on with.
    SurveyBuilder exact = ThreeNumbersEach(3332);
    SheetRig full(exact.Get());
    full.sheet.DoTotal(option);
    EXPECT_EQ(full.sheet.result.EssayRows.size(), 9996u);
    EXPECT_TRUE(!full.sheet.result.HasNext && full.sheet.result.FromDno == 0 && full.ui.transcript.isEmpty());
}

TEST(EssayList, DamagedAnswersAreARunTimeErrorAndLeaveTheMonitorAtRest) {
    SurveyBuilder builder;
    builder.Question(u"q"_s, u"b"_s, 1, QStringList(127, u"c"_s));
    builder.Sample({{1}});
    builder.Get().Samples.Bits(0)[0] = 200;
    SheetRig rig(builder.Get());
    EXPECT_THROW(rig.sheet.DoTotal(EssaysOf(0, 128, kEssayAny)), RuntimeError);
    EXPECT_TRUE(rig.IsAtRest());
}

}  // namespace quibra
