#include "tabulation/total_sheet.h"

#include <gtest/gtest.h>

#include "core/answer_store.h"
#include "tabulation/sheet_rig.h"

using namespace Qt::StringLiterals;

namespace quibra {

TEST(TotalSheet, ReportsTheWalkAndKnowsTheChoiceOfEachRow) {
    SurveyBuilder builder = FruitSurvey();
    SheetRig rig(builder.Get());
    rig.sheet.RunTotal();
    EXPECT_FALSE(rig.sheet.result.chkTotaled) << "a view command before the first total does nothing";
    rig.sheet.DoTotal(TableOf(0, 0));
    for (const auto& [row, code] : {std::pair{1, -32768}, {5, PackPosition(0, 2)}, {7, 0}, {8, -32768}})
        EXPECT_EQ(rig.sheet.result.RowCode(0, row), code) << row;
    EXPECT_EQ(rig.monitor.percents, QStringList({u"0%"_s, u"100%"_s}));
    EXPECT_EQ(rig.monitor.lastPass, u"質問:Q0/Q0まで  限定条件:1/1"_s);
    EXPECT_TRUE(rig.IsAtRest() && rig.ui.transcript.isEmpty());
}

TEST(TotalSheet, ViewsComeAndGoWithoutCountingAgain) {
    SurveyBuilder builder = FruitSurvey();
    SheetRig rig(builder.Get());
    TotalOption option = TableOf(0, 0, 1);
    SetCrossQuestion(option, builder.Get(), 1);
    rig.sheet.DoTotal(option);
    const QStringList both = rig.Rows(1, 7);
    EXPECT_EQ(both[3], u"りんご|3|60.0%||3|75.0%||0|0.0%||"_s);
    // The answers change behind the table's back: only a new total may see it.
    const qint16 none = 0;
    SetAnswers(builder.Get(), 0, 0, 0, &none);
    const std::tuple<TotalView, int, QString> views[] = {
        {{.percent = TotalView::PercentOnly, .sort = true, .space = false},
         2 + 4,
         u"りんご|60.0%|りんご|75.0%|みかん|100.0%"_s},
        {{.percent = TotalView::CountsOnly, .sort = true, .space = false}, 1 + 4, u"りんご|3|りんご|3|みかん|1"_s},
        {{}, 3 + 8, both[3]}};
    for (const auto& [view, flags, row] : views) {
        rig.sheet.view = view;
        rig.sheet.RunTotal();
        EXPECT_EQ(rig.sheet.ViewFlags, flags);
        EXPECT_EQ(rig.Rows(4, 4)[0], row);
        EXPECT_EQ(rig.monitor.reports, 0);
    }
    EXPECT_EQ(rig.Rows(1, 7), both);
    rig.sheet.DoTotal(option);
    EXPECT_EQ(rig.Rows(4, 4)[0], u"りんご|2|40.0%||3|75.0%||0|0.0%||"_s);
    EXPECT_EQ(rig.sheet.grid.RowHeight(1), 400);
    SetCrossPreLimit(option, SurveyBuilder().Get());
    EXPECT_TRUE(option.LimitCount == 1 && option.Limits(1, 1).a == 0);
}

TEST(TotalSheet, DraggedColumnWidthsCarryOverToTheNextResult) {
    SurveyBuilder builder = FruitSurvey();
    SheetRig rig(builder.Get());
    rig.sheet.FontScale = 2;
    rig.sheet.DoTotal(TableOf(0, 0));
    EXPECT_EQ(rig.widths, kDefaultColumnWidths) << "nobody has dragged a column";
    EXPECT_EQ(rig.sheet.grid.ColumnWidth(2), 1600);
    EXPECT_EQ(rig.sheet.grid.ColumnWidth(3), 100);
    EXPECT_EQ(rig.sheet.grid.Alignment(0), CellAlignment::LeftTop);
    rig.sheet.grid.DragColumn(0, 3001);
    rig.sheet.grid.DragColumn(2, 901);
    rig.sheet.view.percent = TotalView::CountsOnly;
    rig.sheet.RunTotal();
    rig.sheet.view.percent = TotalView::CountsAndPercent;
    rig.sheet.RunTotal();
    EXPECT_EQ(rig.widths[0], 1500);
    EXPECT_EQ(rig.widths[2], 450) << "the blank column of the view without percentages is no width of theirs";
    TotalOption essays = TableOf(2, 2);
    essays.TotalKind = kEssayList;
    rig.sheet.grid.DragColumn(1, 700);
    rig.sheet.DoTotal(essays);
    EXPECT_EQ(rig.widths, (ColumnWidths{1500, 350, 450, 0, 0, 1000, 1000, 1400, 2600, 1400}))
        << "what was dragged in the table counts for tables";
}

// Many samples of one question, choices 1 to 4 in turn.
SurveyBuilder LongSurvey(int samples) {
    SurveyBuilder builder;
    for (int q = 0; q < 2; ++q)
        builder.Question(u"q"_s, u"b"_s, 1, {u"1"_s, u"2"_s, u"3"_s, u"4"_s});
    for (int i = 0; i < samples; ++i)
        builder.Sample({{i % 4 + 1}, {i % 4 + 1}});
    return builder;
}

TEST(TotalSheet, CancelKeepsWhatTheWalkHadReachedAndShowsOnlyWholeBlocks) {
    SurveyBuilder builder = LongSurvey(3500);
    TotalOption option = TableOf(0, 1);
    SetCrossQuestion(option, builder.Get(), 1);
    SheetRig rig(builder.Get());
    // Reports of a walk: at 0, 1000, 2000, 3000 samples and at its end. The 8th is the second question's at 2000.
    rig.monitor.cancelAtReport = 8;
    rig.sheet.DoTotal(option);
    EXPECT_EQ(rig.monitor.percents.mid(0, 9).join(u' '), u"0% 29% 57% 86% 100% 0% 29% 57% 100%"_s);
    // Each further limit is entered, and left at the first report of its first question.
    EXPECT_EQ(rig.monitor.percents.mid(9).join(u' '), u"0% 100% 0% 100% 0% 100% 0% 100%"_s);
    EXPECT_TRUE(rig.sheet.result.chkTotaled);
    const int second = rig.sheet.result.RowStart[1];
    const std::tuple<int, int, int> counts[] = {{0, 9, 875}, {0, second + 8, 500}, {0, second + 3, 500}, {1, 9, 0}};
    for (const auto& [L, row, count] : counts)
        EXPECT_EQ(rig.sheet.result.Counts(L, row), count) << L << ' ' << row;
    EXPECT_EQ(rig.Row(4).at(1), u"875"_s);
    EXPECT_EQ(rig.Row(second).at(0) + rig.Row(3).at(4), QString());
    // A view command shows the partial table without a new count.
    rig.monitor.cancelAtReport = 0;
    rig.sheet.view.sort = true;
    rig.sheet.RunTotal();
    EXPECT_EQ(rig.monitor.reports, 0);
    EXPECT_TRUE(rig.Rows(second + 3, second + 3)[0].startsWith(u"1|500|100.0%|"_s));
    rig.monitor.cancelAtReport = 1;
    rig.sheet.DoTotal(TableOf(0, 0));
    EXPECT_EQ(rig.sheet.result.Counts(0, 9), 0);
    EXPECT_TRUE(rig.sheet.result.chkTotaled);
}

SurveyBuilder WideSurvey(int questions, int choices) {
    SurveyBuilder builder;
    for (int q = 0; q < questions; ++q)
        builder.Question(u"名%1"_s.arg(q), u"本文"_s, 2, QStringList(choices, u"c"_s));
    builder.Sample({{1}});
    return builder;
}

TEST(TotalSheet, TableBeyond1999RowsIsCutAtAWholeQuestion) {
    SurveyBuilder builder = WideSurvey(25, 94);
    SheetRig rig(builder.Get());
    // Blocks of 100 rows from row 1 on: the 20th ends in front of row 2001.
    rig.sheet.DoTotal(TableOf(0, 24));
    EXPECT_EQ(rig.ui.transcript.join(u'\n'),
              u"message 48 %1: Q19 名18 本文［2つまで］までしかリストに入りません。 -> Ok"_s.arg(
                  UserInterface::DefaultTitle()));
    EXPECT_EQ(rig.sheet.result.option.ToQno, 18);
    EXPECT_EQ(rig.sheet.result.RowStart[18], 1801);
    EXPECT_TRUE(rig.sheet.result.RowStart[19] == 2001 && rig.sheet.grid.Rows() == 2001);
    EXPECT_EQ(rig.Row(1899).at(0), u"[人数]"_s);
    EXPECT_EQ(rig.Rows(1900, 2000).join(QString()).remove(u'|'), QString());
    // 27 blocks of 74 rows end in front of row 1999.
    SurveyBuilder exact = WideSurvey(27, 68);
    SheetRig whole(exact.Get());
    whole.sheet.DoTotal(TableOf(0, 26));
    EXPECT_TRUE(whole.ui.transcript.isEmpty());
}

TEST(TotalSheet, RoughTotalVisitsAboutTwoHundredSamplesAndSmallSurveysWhole) {
    for (const auto& [samples, least, most] : {std::tuple{150, 150, 150}, {20000, 151, 259}}) {
        SurveyBuilder builder = LongSurvey(samples);
        SheetRig rig(builder.Get());
        TotalOption option = TableOf(0, 0);
        option.Rough = true;
        rig.sheet.DoTotal(option);
        const qint32 persons = rig.sheet.result.Counts(0, 9);
        EXPECT_TRUE(least <= persons && persons <= most) << persons;
        EXPECT_EQ(rig.Rows(9, 9), QStringList(u"[粗集計人数]|%1|100.0%||"_s.arg(persons)));
        EXPECT_EQ(rig.monitor.percents.first(), u"0%"_s);
    }
}

TEST(TotalSheet, DamagedAnswersEndInTheToldMessageNotInACrash) {
    SurveyBuilder builder = FruitSurvey();
    Survey& survey = builder.Get();
    SheetRig rig(survey);
    rig.sheet.DoTotal(TableOf(0, 1));
    survey.Questions[1].ChoiceCount = 100;  // the definition no longer fits the rows that were counted
    rig.sheet.view.percent = TotalView::CountsOnly;
    rig.sheet.RunTotal();
    EXPECT_EQ(rig.ui.transcript.size(), 1);
    EXPECT_TRUE(rig.ui.transcript.first().contains(u"結果表示の際にエラーが起きました。集計結果ファイルが"_s));
    EXPECT_EQ(rig.monitor.redrawOff, 0);
    EXPECT_EQ(rig.Row(4).at(1), u"6"_s);
}

}  // namespace quibra
