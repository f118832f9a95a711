#include "core/survey.h"

#include <gtest/gtest.h>

#include "support/error_of.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

Survey NewSurvey() {
    Survey survey;
    NewSurveyHead(survey, u"/somewhere/"_s);
    NewSurveyBody(survey);
    return survey;
}

// What its file does not hold.
TEST(Survey, NewOneHasANameAndAFirstChoiceThatExcludesNothing) {
    const Survey survey = NewSurvey();
    EXPECT_EQ(survey.FileName, u"/somewhere/new.qb"_s);
    EXPECT_EQ(survey.Choices(0, 0).Text, u"無回答"_s);
    EXPECT_EQ(survey.Choices(0, 0).Status, 0);
    EXPECT_EQ(survey.SampleBytes, 2);
}

// 256 questions of 127 choices: with one answer each they fit, with four each the bits leave 16-bit numbers.
TEST(Survey, LayoutReachesTheLimitsAndRefusesWhatLiesBeyond) {
    Survey survey = NewSurvey();
    survey.QuestionCount = kMaxQuestions;
    for (int q = 0; q < kMaxQuestions; ++q) {
        survey.Questions[q].ChoiceCount = kMaxChoices;
        survey.Questions[q].Anum = static_cast<qint16>(1 + q % 2);
        survey.Choices(127, q).Status = q % 3 == 0 ? 1 : 0;
    }
    RecalcLayout(survey);
    EXPECT_EQ(survey.AnswerSlots, 384);
    EXPECT_EQ(survey.QIdx[255].BitStart, 382 * 8);
    EXPECT_EQ(survey.QIdx[256].Anum, 0);
    EXPECT_EQ(survey.SampleBytes, 384);
    EXPECT_EQ(survey.EssaySlots, 43 * 1 + 43 * 2);
    EXPECT_EQ(survey.SampleRecBytes, 384 + 6 + 129 * 4);

    const auto errorWith = [&](int questions, qint16 choices, qint16 answers) {
        survey.QuestionCount = static_cast<qint16>(questions);
        for (int q = 0; q < questions; ++q) {
            survey.Questions[q].ChoiceCount = choices;
            survey.Questions[q].Anum = answers;
            survey.Choices(127, q).Status = 0;
        }
        return ErrorOf([&] { RecalcLayout(survey); });
    };
    EXPECT_EQ(errorWith(256, 127, 1), 0);
    EXPECT_EQ(survey.QIdx[0].BitWidth, 7);
    EXPECT_EQ(errorWith(1, 127, 129), kErrorSubscript);
    EXPECT_EQ(errorWith(1, 127, -1), kErrorSubscript);
    EXPECT_EQ(errorWith(256, 127, 40), kErrorOverflow);
    EXPECT_EQ(errorWith(1, 0, 1), kErrorInvalidCall);
    // 32760 bits are sound, but the rounding up to whole words passes through 32775.
    EXPECT_EQ(errorWith(65, 64, 72), kErrorOverflow);
    EXPECT_EQ(ErrorOf([&] { survey.Questions[256].Anum = 1; }), kErrorSubscript);
    EXPECT_EQ(ErrorOf([&] { survey.Choices(128, 0).Status = 1; }), kErrorSubscript);
}

TEST(Survey, PositionsWrapInto16Bits) {
    for (const auto& [q, c, packed] : {std::tuple{255, 127, 32767}, {256, 0, -32768}, {200, 99, 25699}}) {
        EXPECT_EQ(PackPosition(q, c), packed);
        int question = 0, choice = 0;
        UnpackPosition(static_cast<qint16>(packed), question, choice);
        EXPECT_TRUE(question == q && choice == c) << packed;
    }
    EXPECT_EQ(ErrorOf([] { PackPosition(512, 0); }), kErrorOverflow);
}

TEST(Survey, SymbolsOfAllKindsAreWrittenAndRead) {
    Survey survey = NewSurvey();
    const auto symbol = [&](int kind, int c) {
        survey.Questions[0].LabelKind = static_cast<qint16>(kind);
        return ChoiceToSymbol(survey, 0, c);
    };
    const auto choice = [&](int kind, const QString& token) {
        survey.Questions[0].LabelKind = static_cast<qint16>(kind);
        return SymbolToChoice(survey, 0, token);
    };
    const std::tuple<int, int, QString> symbols[] = {{0, 7, u"7"_s},  {0, 12, u".12."_s}, {1, 12, u"c"_s},
                                                     {1, 36, u"{"_s}, {2, 12, u"ｼ"_s},    {2, 45, u"ﾝ"_s},
                                                     {3, 12, u"L"_s}, {3, 0, u"0"_s},     {4, 3, QString()}};
    for (const auto& [kind, c, text] : symbols)
        EXPECT_EQ(symbol(kind, c), text) << kind;
    for (int kind = 0; kind <= 3; ++kind)
        for (int c = 0; c <= 26; ++c)
            EXPECT_EQ(choice(kind, symbol(kind, c).remove(u'.')), c) << kind;
    // Half goes to even.
    const std::tuple<int, QString, int> tokens[] = {
        {0, u"a"_s, 10},    {1, u"ｱ"_s, 1},     {2, u"Z"_s, 35},   {3, u"z"_s, 26}, {3, u"ｱ"_s, 0}, {0, u"１"_s, 0},
        {3, u"12.5"_s, 12}, {3, u"13.5"_s, 14}, {0, QString(), 0}, {9, u"1"_s, 0},  {2, u"ﾝ"_s, 45}};
    for (const auto& [kind, token, c] : tokens)
        EXPECT_EQ(choice(kind, token), c) << kind << ' ' << token.toStdString();
    EXPECT_EQ(ErrorOf([&] { choice(0, u"40000"_s); }), kErrorOverflow);
}

TEST(Survey, ChoicesTravelAsOneString) {
    Survey survey = NewSurvey();
    ChoiceRec& choice = survey.Choices(1, 0);
    choice.Low = 5;
    const std::pair<QString, QString> texts[] = {{u"文だけ"_s, u"文だけ\r5\r0"_s},
                                                 {u"年齢\r-1.5\r 120歳\rまで"_s, u"年齢\r-1.5\r120"_s},
                                                 {u"町\r町名.csv"_s, u"町\r町名.csv"_s}};
    for (const auto& [text, back] : texts) {
        SetChoiceFromFile(survey, 0, 1, text);
        EXPECT_EQ(ChoiceToFile(survey, 0, 1), back);
    }
    EXPECT_EQ(choice.High, 120);
    ToggleChoiceStatus(survey, 0, 1, kOther);
    EXPECT_EQ(GetChoiceStatus(survey, 0, 1, kOther), -1);
    EXPECT_EQ(GetChoiceStatus(survey, 0, 1, kEssay), 0);
    EXPECT_EQ(ErrorOf([&] { GetChoiceStatus(survey, 0, 128, 0); }), kErrorSubscript);
}

TEST(Survey, QuotaUsedIsTheHighestIDInsideTheQuota) {
    Survey survey = NewSurvey();
    EXPECT_EQ(survey.QuotaUsed, -1);
    survey.Samples.Allocate(3);
    survey.QuotaFirst = 10;
    survey.QuotaLast = 20;
    for (const auto& [ids, used] : {std::pair{std::array{12, 20, 21}, 20}, {{-5, 3, 21}, 10}}) {
        std::copy(ids.begin(), ids.end(), survey.Samples.IDs());
        RecalcQuotaUsed(survey);
        EXPECT_EQ(survey.QuotaUsed, used);
    }
}

}  // namespace
}  // namespace quibra
