#include "tabulation/total_setup.h"

#include <gtest/gtest.h>

#include "tabulation/sheet_rig.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kFruit = 0;
constexpr int kSex = 1;
constexpr int kPlaces = 2;

class TotalSetupTest : public testing::Test {
  protected:
    // What the user writes into the condition editor next, if anything; what stood there goes to `found`.
    bool Pick(LimitList& list) {
        found = list;
        if (picks.empty()) return false;
        list = picks.front();
        picks.pop_front();
        return true;
    }
    static LimitList Condition(std::initializer_list<LimitLine> lines, qint16 mask = 0) {
        LimitList list;
        list[0].b = mask;
        int i = 0;
        for (const LimitLine& line : lines)
            list[++i] = line;
        return list;
    }
    static LimitList Answered(int q, int c) { return Condition({SurveyBuilder::Line(3, q, c)}); }

    SurveyBuilder builder = FruitSurvey();
    SheetRig rig{builder.Get()};
    std::deque<LimitList> picks;
    LimitList found;
    TotalSetup setup{builder.Get(), rig.ui, [this](LimitList& list) { return Pick(list); }};
};

const QString kEnd = u"以上↑"_s;

}  // namespace

TEST_F(TotalSetupTest, LastQuestionInFrontOfTheFirstCountsAsTheFirst) {
    setup.SelectQuestion(kSex);
    EXPECT_EQ(setup.toQno, kSex);
    EXPECT_EQ(setup.BuildOption(kTable).ToQno, kSex);
    setup.toQno = kPlaces;
    EXPECT_EQ(setup.BuildOption(kTable).ToQno, kPlaces);
    setup.toQno = kFruit;
    EXPECT_EQ(setup.BuildOption(kTable).FromQno, kSex);
    EXPECT_EQ(setup.BuildOption(kTable).ToQno, kSex);
    setup.rank = 1;
    setup.SelectQuestion(kPlaces);
    EXPECT_EQ(setup.rank, 0);
    EXPECT_EQ(setup.RankRows(kPlaces), QStringList({u"全順位"_s, u"1位"_s, u"2位"_s}));
}

TEST_F(TotalSetupTest, CrossByQuestionHasChoiceZeroLastAndByPredefinedConditionsCopiesTheirLines) {
    setup.SelectCrossQuestion(kSex);
    EXPECT_EQ(setup.LimitRows(), QStringList({u"男"_s, u"女"_s, u"無回答"_s, kEnd}));
    EXPECT_EQ(setup.Cross(), kCrossQuestion);
    TotalOption option = setup.BuildOption(kTable);
    EXPECT_EQ(option.CrossQno, kSex);
    EXPECT_EQ(option.LimitCount, 3);
    EXPECT_EQ(option.Limits(1, 3), SurveyBuilder::Line(3, kSex, 0));

    setup.SelectCross(kCrossPreLimit);
    option = setup.BuildOption(kTable);
    EXPECT_EQ(option.LimitCount, 2);
    EXPECT_EQ(option.Limits(1, 1), SurveyBuilder::Line(3, kSex, 2));
    EXPECT_EQ(option.Limits(2, 2), SurveyBuilder::Line(4, kSex, 1));
    EXPECT_EQ(option.Limits(1, 3), LimitLine{}) << "the cross before has left nothing behind";
    const QStringList rows = setup.LimitRows();
    builder.Get().PreLimit(1, 3) = SurveyBuilder::Line(3, kSex, 1);
    EXPECT_EQ(setup.LimitRows(), rows) << "a later change of the predefined condition does not reach the copy";

    builder.Get().PreLimit(1, 3) = builder.Get().PreLimit(1, 5) = LimitLine{};
    setup.SelectCross(kCrossPreLimit);
    EXPECT_EQ(setup.LimitRows(), QStringList({u"条件なし"_s, kEnd}));
    EXPECT_EQ(setup.Cross(), kCrossPreLimit);
}

TEST_F(TotalSetupTest, ConditionsByHandKeepTheOtherRowsAndMakeTheCrossFree) {
    setup.SelectCross(kCrossPreLimit);
    setup.limitRow = 1;
    setup.AddLimit();
    setup.ChangeLimit();
    setup.EditWholeLimit();
    EXPECT_EQ(setup.LimitRows(), QStringList({u"女"_s, u"りんご，除く男"_s, kEnd})) << "the editor was cancelled";
    EXPECT_EQ(setup.Cross(), kCrossPreLimit);
    EXPECT_TRUE(setup.MayDiscard());
    picks = {Answered(kFruit, 2)};
    setup.AddLimit();
    EXPECT_EQ(found.LineCount(), 0) << "a new condition starts empty";
    EXPECT_EQ(setup.LimitRows(), QStringList({u"女"_s, u"みかん"_s, u"りんご，除く男"_s, kEnd}));
    EXPECT_EQ(setup.Cross(), kCrossFree);
    EXPECT_EQ(setup.limitRow, 2) << "the selected row is the same one as before";
    setup.BuildOption(kEssayList);
    EXPECT_FALSE(setup.MayDiscard()) << "an essay list has no use for it";
    EXPECT_EQ(rig.ui.TakeTranscript(),
              QStringList({u"message 289 クイブラ: 書いた限定条件を集計に使わずに閉じます。 -> Cancel"_s}));

    picks = {Condition({SurveyBuilder::Line(3, kPlaces, 1), SurveyBuilder::Line(2, kPlaces, 3)}, 8)};
    setup.SelectCrossQuestion(kSex);
    setup.ChangeLimit();
    EXPECT_EQ(found[1], SurveyBuilder::Line(3, kSex, 1)) << "a change starts with what stands there";
    EXPECT_EQ(setup.Cross(), kCrossFree);
    const TotalOption& option = setup.BuildOption(kTable);
    EXPECT_TRUE(setup.MayDiscard());
    EXPECT_EQ(option.CrossMode, kCrossFree);
    EXPECT_EQ(option.Limits(0, 1).b, 8);
    EXPECT_EQ(option.Limits(2, 1), SurveyBuilder::Line(2, kPlaces, 3));
    EXPECT_EQ(option.Limits(1, 2), SurveyBuilder::Line(3, kSex, 2));

    setup.SelectCrossQuestion(kSex);
    setup.limitRow = 3;
    setup.DeleteLimit();
    setup.ChangeLimit();
    EXPECT_EQ(setup.LimitRows().size(), 4) << "the closing row can be neither changed nor deleted";
    EXPECT_EQ(setup.Cross(), kCrossQuestion);
    setup.limitRow = 1;
    setup.DeleteLimit();
    EXPECT_EQ(setup.LimitRows(), QStringList({u"男"_s, u"無回答"_s, kEnd}));
    EXPECT_EQ(setup.limitRow, 1);
    EXPECT_EQ(setup.Cross(), kCrossFree);
    setup.DeleteLimit();
    setup.limitRow = 0;
    setup.DeleteLimit();
    EXPECT_EQ(setup.LimitRows(), QStringList({u"男"_s, kEnd})) << "one condition always stays";

    setup.SelectCross(kCrossFree);
    EXPECT_EQ(setup.LimitRows(), QStringList({u"条件なし"_s, kEnd}));
}

TEST_F(TotalSetupTest, EssayListTakesItsConditionFromTheOptionsAndTheirDialogs) {
    setup.SelectEssayQuestion(kPlaces);
    EXPECT_EQ(setup.EssayChoiceRows(),
              QStringList({u"(0)無回答［排他］"_s, u"(1)回数［数値:0-0］"_s, u"(2)店番[ｺｰﾄﾞ:]"_s,
                           u"(3)その他［記述］［その他］"_s, u"(4)買わない"_s, u"全選択肢(無回答除く)"_s}));
    EXPECT_EQ(setup.essayCno, 5);
    setup.rank = 1;
    setup.essayRank = 2;
    setup.SelectCrossQuestion(kSex);
    EXPECT_EQ(setup.BuildOption(kEssayList).CrossMode, kEssayAny);
    EXPECT_EQ(setup.BuildOption(kEssayList).Rank, 2);
    EXPECT_EQ(setup.BuildOption(kEssayList).LimitCount, 1);
    EXPECT_EQ(setup.BuildOption(kTable).LimitCount, 3) << "the page of tables keeps its conditions meanwhile";
    setup.require = true;
    EXPECT_EQ(setup.BuildOption(kEssayList).CrossMode, kEssayNoCondition);
    EXPECT_EQ(setup.BuildOption(kEssayList).Rank, 1) << "without a condition the other page's rank holds";
    setup.require = false;

    setup.SelectEssayCondition(kEssayFilled);
    EXPECT_EQ(setup.BuildOption(kEssayList).CrossMode, kEssayFilled);
    rig.ui.inputAnswers = {u"畑"_s};
    setup.SelectEssayCondition(kEssayHolds);
    EXPECT_EQ(setup.EssayDetailText(), u"畑"_s);
    setup.AskEssayDetail();
    EXPECT_EQ(setup.EssayDetailText(), u"畑"_s) << "Cancel keeps the text";
    EXPECT_EQ(setup.BuildOption(kEssayList).CrossMode, kEssayHolds);
    EXPECT_EQ(setup.BuildOption(kEssayList).EssayText, u"畑"_s);

    rig.ui.inputAnswers = {u"12.5人"_s, u"-3"_s};
    setup.SelectEssayCondition(kEssayNumber);
    EXPECT_EQ(setup.EssayDetailText(), u"-3 ～ 12.5"_s);
    EXPECT_EQ(setup.BuildOption(kEssayList).NumLow, -3);
    EXPECT_EQ(setup.BuildOption(kEssayList).NumHigh, 12.5);
    rig.ui.inputAnswers = {u"1"_s, std::nullopt};
    setup.AskEssayDetail();
    rig.ui.inputAnswers = {u"1"_s, u"1E999"_s};
    EXPECT_THROW(setup.AskEssayDetail(), RuntimeError);
    EXPECT_EQ(setup.EssayDetailText(), u"-3 ～ 12.5"_s);

    rig.ui.inputAnswers = {u"b"_s, u"Z"_s};
    setup.SelectEssayCondition(kEssayCode);
    EXPECT_EQ(setup.EssayDetailText(), u"Z ～ b"_s) << "in the order of the characters' codes";
    EXPECT_EQ(setup.BuildOption(kEssayList).CodeLow, u"Z"_s);
    EXPECT_EQ(rig.ui.TakeTranscript(),
              QStringList({
                  u"input 記述の条件 | 記述= |  | 条件を指定しないことも出来ます |  -> 畑"_s,
                  u"input 記述の条件 | 記述= |  | 条件を指定しないことも出来ます | 畑 -> cancel"_s,
                  u"input 数量の条件 | 最小値は |  |  | 0 -> 12.5人"_s,
                  u"input 数量の条件 | 最大値は | 12.5～ |  | 0 -> -3"_s,
                  u"input 数量の条件 | 最小値は |  |  | -3 -> 1"_s,
                  u"input 数量の条件 | 最大値は | 1～ |  | 12.5 -> cancel"_s,
                  u"input 数量の条件 | 最小値は |  |  | -3 -> 1"_s,
                  u"input 数量の条件 | 最大値は | 1～ |  | 12.5 -> 1E999"_s,
                  u"input ｺｰﾄﾞの条件 | 最小値は |  |  |  -> b"_s,
                  u"input ｺｰﾄﾞの条件 | 最大値は | b～ |  |  -> Z"_s,
              }));
    setup.SelectEssayCondition(kEssayEmpty);
    EXPECT_EQ(setup.BuildOption(kEssayList).CrossMode, kEssayEmpty) << "details refine the filled ones only";
    EXPECT_EQ(setup.EssayDetail(), kEssayCode);
}

// What one set-up builds another one shows and builds again.
TEST_F(TotalSetupTest, RecordsComeBackAsTheyWentAndNonsenseIsLeftOut) {
    TotalSetup other(builder.Get(), rig.ui, [](LimitList&) { return false; });
    const auto comesBack = [&](TotalKindValue kind) {
        const TotalOption option = setup.BuildOption(kind);
        other.SetTotalOption(option);
        EXPECT_EQ(other.page, kind);
        EXPECT_EQ(WriteTotalOptionJson(other.BuildOption(kind)), WriteTotalOptionJson(option));
    };
    setup.Nname = u"店の数"_s;
    picks = {Answered(kSex, 2), Answered(kFruit, 1), Condition({}, 32)};
    setup.EditWholeLimit();
    setup.AddLimit();
    setup.AddLimit();
    setup.SelectQuestion(kPlaces);
    setup.rank = 2;
    setup.rough = true;
    comesBack(kTable);
    EXPECT_EQ(other.LimitRows(), setup.LimitRows());
    setup.SelectCrossQuestion(kSex);
    setup.SelectQuestion(kFruit);
    setup.toQno = kPlaces;
    comesBack(kTable);
    setup.SelectCross(kCrossPreLimit);
    comesBack(kTable);

    setup.SelectCross(kCrossFree);
    setup.SelectEssayQuestion(kPlaces);
    setup.essayRank = 1;
    rig.ui.inputAnswers = {u"畑"_s, u"1"_s, u"2.5"_s, u"a"_s, u"ab"_s};
    for (const auto condition : {kEssayEmpty, kEssayFilled, kEssayHolds, kEssayNumber, kEssayCode, kEssayAny}) {
        setup.SelectEssayCondition(condition);
        comesBack(kEssayList);
        EXPECT_EQ(other.EssayCondition(), setup.EssayCondition());
    }
    setup.SelectEssayCondition(kEssayFilled);
    setup.SelectEssayQuestion(kSex);
    setup.essayCno = 1;
    setup.require = true;
    comesBack(kEssayList);
    TotalOption plainFilled = setup.BuildOption(kEssayList);
    plainFilled.CrossMode = kEssayFilled;
    other.SetTotalOption(plainFilled);
    EXPECT_FALSE(other.require);
    EXPECT_EQ(other.EssayDetail(), kEssayFilled) << "a detail selected before must not narrow it";
    EXPECT_EQ(rig.ui.Lines(u"input"_s).size(), 5) << "a record that comes back asks nothing";

    for (const qint16 kind : std::initializer_list<qint16>{0, 1, 2, 3})
        for (const qint16 nonsense : std::initializer_list<qint16>{-32768, -1, 3, 129, 256, 32767}) {
            TotalOption option;
            option.TotalKind = kind;
            option.FromQno = option.ToQno = option.Rank = option.CrossQno = option.LimitCount = nonsense;
            for (const qint16 mode : std::initializer_list<qint16>{0, 1, 2, -7, 6, 32767}) {
                option.CrossMode = mode;
                other.SetTotalOption(option);
                EXPECT_LE(other.LimitRows().size(), kMaxLimitColumns + 1);
                EXPECT_LT(other.FromQno(), 3);
                EXPECT_LT(other.toQno, 3);
                EXPECT_LT(other.rank, other.RankRows(other.FromQno()).size());
                EXPECT_LT(other.essayRank, other.RankRows(other.EssayQno()).size());
                EXPECT_LT(other.essayCno, other.EssayChoiceRows().size());
                rig.sheet.DoTotal(other.BuildOption(other.page));
            }
        }
}

}  // namespace quibra
