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

}  // namespace

// Sample 7 answered, but the question is only for those who named a fruit.
TEST(EssayList, EachConditionTakesItsAnswers) {
    SurveyBuilder builder = FruitSurvey();
    SheetRig rig(builder.Get());
    const QString all = u"1:1 1:2 2:2 3:3 3:1 4:1 5:1 5:2 6:4 8:1 9:3 9:4"_s;
    // The listed answers as "ID:choice".
    const struct {
        int choice, condition;
        QString listed, low = {}, high = {};
        qint16 rank = 0;
        int limit = 0;
    } cases[] = {
        {kAnyChoice, kEssayAny, all},
        {1, kEssayAny, u"1:1 3:1 4:1 5:1 8:1"_s},
        {0, kEssayAny, {}},
        {kAnyChoice, kEssayEmpty, u"6:4 8:1 9:4"_s},
        {1, kEssayFilled, u"1:1 3:1 4:1 5:1"_s},
        {kAnyChoice, kEssayNoCondition, u"1:0 2:0 3:0 4:0 5:0 6:0 8:0 9:0 10:0"_s},
        {kAnyChoice, kEssayHolds, all},
        {kAnyChoice, kEssayHolds, u"3:3 9:3"_s, u"畑"_s},
        {kAnyChoice, kEssayHolds, {}, u"畑"_s, {}, 2},
        {kAnyChoice, kEssayHolds, u"3:3 9:3"_s, u"畑"_s, {}, 1},
        {1, kEssayNumber, u"1:1 3:1"_s, u"3.5"_s, u"12"_s},
        {1, kEssayNumber, u"4:1"_s, u"-1"_s, u"3.4"_s},  // what is no number is not 0
        {2, kEssayCode, u"1:2"_s, u"AB"_s, u"aB"_s},
        {2, kEssayCode, u"1:2 2:2"_s, u"AB"_s, u"B"_s},
        {2, kEssayCode, u"5:2"_s, u"?"_s, u"?"_s},
        {2, kEssayCode, {}, u"?"_s, u"?"_s, 0, 1},
    };
    for (const auto& [choice, condition, listed, low, high, rank, limit] : cases) {
        TotalOption option = EssaysOf(kPlaces, choice, condition);
        option.EssayText = option.CodeLow = low;
        option.CodeHigh = high;
        option.NumLow = low.toDouble();
        option.NumHigh = high.toDouble();
        option.Rank = rank;
        if (limit > 0) option.Limits(1, 0) = SurveyBuilder::Line(3, 1, limit);
        rig.sheet.DoTotal(option);
        QStringList rows;
        for (const TotalSheet::EssayRow& row : rig.sheet.EssayRows)
            rows << u"%1:%2"_s.arg(row.IDno).arg(row.Cno);
        EXPECT_EQ(rows.join(u' '), listed) << choice << ' ' << condition;
    }
}

TEST(EssayList, SheetShowsRowsReferencesAndTheAverage) {
    SurveyBuilder builder = FruitSurvey();
    SheetRig rig(builder.Get());
    rig.sheet.RefQno = {1, 2};
    TotalOption option = EssaysOf(kPlaces, kAnyChoice, kEssayFilled);
    option.Rank = 1;
    option.Limits(1, 0) = SurveyBuilder::Line(4, 1, 2);
    rig.sheet.DoTotal(option);
    EXPECT_EQ(rig.Rows(1, rig.sheet.grid.Rows() - 1),
              QStringList({
                  u"店 （果物(1)りんご又は果物(2)みかんの人）どの店で［2つまで］|||||||||"_s,
                  u"[全体の限定]|りんご又はみかん，除く女|1位|参照回答||||||"_s,
                  u"ＩＤ|選択肢|記述文| 性別は| どの店で［2つまで］|||||"_s,
                  u"1|回数|12|男|回数, 店番|||||"_s,
                  u"4|回数|0|男|回数|||||"_s,
                  u"5|回数|なし||回数, 店番|||||"_s,
                  u"9|その他|畑|男|その他, 買わない|||||"_s,
                  u"のべ4人|平均 |3|||||||"_s,
              }));
    EXPECT_EQ(rig.sheet.ExLimitText, u"除く女"_s);
    EXPECT_EQ(rig.sheet.grid.ColumnWidth(4), 1400);
    EXPECT_EQ(rig.sheet.grid.Alignment(1), CellAlignment::LeftCenter);
    EXPECT_EQ(rig.sheet.grid.Alignment(3), CellAlignment::LeftTop);
    // The selection that a writer walks.
    EXPECT_EQ(rig.sheet.EssayDnoCount(), 4);
    for (int pass = 0; pass < 2; ++pass) {
        for (const qint32 dno : {0, 3, 4, 8, -1, -1})
            EXPECT_EQ(rig.sheet.EssayDno(), dno);
        rig.sheet.EssayDnoReset();
    }

    // References stand beside the first answer of a sample only, and a tab inside an essay parts its cells.
    option.Rank = 0;
    option.Limits(1, 0) = SurveyBuilder::Line(3, 1, 2);
    rig.sheet.RefQno = {1};
    rig.sheet.DoTotal(option);
    EXPECT_EQ(rig.Rows(4, 6),
              QStringList({u"2|店番|ac:果物屋|女|||||"_s, u"3|その他|畑で|買う|女||||"_s, u"3|回数|3.5||||||"_s}));
    EXPECT_EQ(rig.sheet.EssayRows[1].Essay, u"畑で\t買う"_s);

    option.Limits(1, 0) = SurveyBuilder::Line(3, 0, 0);
    rig.sheet.DoTotal(option);
    EXPECT_EQ(rig.Rows(4, 4), QStringList(u"のべ0人||||||||"_s));
    EXPECT_TRUE(rig.sheet.EssayDnoCount() == 1 && rig.sheet.EssayDno() == -1);
}

TEST(EssayList, LongListGoesOnWhereTheLastPartEnded) {
    SurveyBuilder builder;
    builder.Question(u"q"_s, u"b"_s, 3, {u"数"_s});
    builder.Status(0, 1, {kEssay, kNumber});
    const GivenAnswer one(1, u"1"_s);
    for (int i = 0; i < 3400; ++i)
        builder.Sample({{one, one, one}});
    SheetRig rig(builder.Get());
    const TotalOption option = EssaysOf(0, 2, kEssayAny);
    rig.sheet.DoTotal(option);
    // 3332 samples make 9996 rows, the first count that leaves no room for a sample more.
    EXPECT_EQ(rig.sheet.EssayRows.size(), 9996u);
    EXPECT_EQ(rig.sheet.FromDno, 3332);
    EXPECT_TRUE(rig.sheet.HasNext);
    EXPECT_EQ(rig.ui.TakeTranscript(), QStringList(u"message 64 %1: 人数が多くて3331番までしか表示出来ませんでした。"
                                                   "続きを見るときは『集計の続き』ボタンを押してください。 -> Ok"_s.arg(
                                                       UserInterface::DefaultTitle())));
    rig.sheet.DoTotal(option);
    EXPECT_EQ(rig.sheet.EssayRows.size(), 204u);
    EXPECT_EQ(rig.sheet.EssayRows.front().Dno, 3332);
    EXPECT_TRUE(!rig.sheet.HasNext && rig.sheet.FromDno == 0);
    EXPECT_EQ(rig.monitor.percents.join(u' '), u"99%"_s);
    EXPECT_TRUE(rig.ui.transcript.isEmpty());
    // Cancelled at the second look at the samples, the list ends in a total of what it has.
    rig.monitor.cancelAtReport = 2;
    rig.sheet.DoTotal(option);
    EXPECT_EQ(rig.Row(rig.sheet.grid.Rows() - 1).mid(0, 3).join(u'|'), u"のべ150人|平均 |1"_s);
    EXPECT_TRUE(rig.IsAtRest());
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
