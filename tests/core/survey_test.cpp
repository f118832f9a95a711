#include "core/survey.h"

#include <gtest/gtest.h>


#include "core/code_page.h"
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

TEST(Survey, NewOneHasOneQuestionOfOneAnswer) {
    const Survey survey = NewSurvey();
    EXPECT_EQ(survey.Title, u"新規アンケート"_s);
    EXPECT_EQ(survey.Editor, u"＊＊＊＊"_s);
    EXPECT_EQ(survey.FileName, u"/somewhere/new.qb"_s);
    EXPECT_EQ(survey.Questions[0].Text, u"質問1\r質問文はここで書き込んでいく･･･\r"_s.leftJustified(128));
    EXPECT_EQ(survey.Choices(0, 0).Text, u"無回答"_s);
    EXPECT_EQ(survey.Choices(0, 0).Status, 0);
    EXPECT_EQ(survey.Choices(1, 0).Text, u"選択肢はここで･･･"_s);
    EXPECT_EQ(survey.CorrectFlags, 15);
    EXPECT_EQ(survey.QIdx[0].BitWidth, 2);
    EXPECT_EQ(survey.SampleBytes, 2);
    EXPECT_EQ(survey.EssaySlots, 0);
    EXPECT_EQ(survey.QuotaUsed, -1);
    EXPECT_EQ(survey.DistName, u"newfile"_s);
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

    const auto layoutError = [&](const std::function<void()>& change) {
        change();
        return ErrorOf([&] { RecalcLayout(survey); });
    };
    for (int q = 0; q < kMaxQuestions; ++q)
        survey.Questions[q].ChoiceCount = 127;
    RecalcLayout(survey);
    EXPECT_EQ(survey.QIdx[0].BitWidth, 7);
    EXPECT_EQ(layoutError([&] { survey.Questions[255].Anum = 129; }), kErrorSubscript);
    EXPECT_EQ(layoutError([&] { survey.Questions[255].Anum = -1; }), kErrorSubscript);
    EXPECT_EQ(layoutError([&] {
                  for (int q = 0; q < kMaxQuestions; ++q)
                      survey.Questions[q].Anum = 40;
              }),
              kErrorOverflow);
    EXPECT_EQ(layoutError([&] { survey.Questions[0].ChoiceCount = 0; }), kErrorInvalidCall);
    // 32760 bits are sound, but the rounding up to whole words passes through 32775.
    EXPECT_EQ(layoutError([&] {
                  survey.QuestionCount = 65;
                  for (int q = 0; q < 65; ++q) {
                      survey.Questions[q].ChoiceCount = 64;
                      survey.Questions[q].Anum = 72;
                      survey.Choices(127, q).Status = 0;
                  }
              }),
              kErrorOverflow);
    EXPECT_EQ(ErrorOf([&] { survey.Questions[256].Anum = 1; }), kErrorSubscript);
    EXPECT_EQ(ErrorOf([&] { survey.Choices(128, 0).Status = 1; }), kErrorSubscript);
}

TEST(Survey, PositionsWrapInto16Bits) {
    EXPECT_EQ(PackPosition(255, 127), 32767);
    EXPECT_EQ(PackPosition(256, 0), -32768);
    EXPECT_EQ(ErrorOf([] { PackPosition(512, 0); }), kErrorOverflow);
    int q = 0, c = 0;
    UnpackPosition(-32768, q, c);
    EXPECT_EQ(q, 256);
    EXPECT_EQ(c, 0);
    UnpackPosition(PackPosition(200, 99), q, c);
    EXPECT_EQ(q, 200);
    EXPECT_EQ(c, 99);
}

TEST(Survey, SymbolsOfAllKindsAreWrittenAndRead) {
    Survey survey = NewSurvey();
    const auto symbol = [&](qint16 kind, int c) {
        survey.Questions[0].LabelKind = kind;
        return ChoiceToSymbol(survey, 0, c);
    };
    const auto choice = [&](qint16 kind, const QString& token) {
        survey.Questions[0].LabelKind = kind;
        return SymbolToChoice(survey, 0, token);
    };
    EXPECT_EQ(symbol(0, 7), u"7"_s);
    EXPECT_EQ(symbol(0, 12), u".12."_s);
    EXPECT_EQ(symbol(1, 12), u"c"_s);
    EXPECT_EQ(symbol(1, 36), u"{"_s);
    EXPECT_EQ(symbol(2, 12), QString(CharacterOfCode(188)));
    EXPECT_EQ(symbol(2, 45), u"ﾝ"_s);
    EXPECT_EQ(symbol(3, 12), u"L"_s);
    EXPECT_EQ(symbol(3, 0), u"0"_s);
    EXPECT_EQ(symbol(4, 3), QString());
    for (qint16 kind = 0; kind <= 3; ++kind)
        for (int c = 0; c <= 26; ++c) {
            const QString token = symbol(kind, c);
            EXPECT_EQ(choice(kind, token.size() == 1 ? token : token.mid(1, token.size() - 2)), c) << kind;
        }
    EXPECT_EQ(choice(0, u"a"_s), 10);
    EXPECT_EQ(choice(1, u"ｱ"_s), 1);
    EXPECT_EQ(choice(2, u"Z"_s), 35);
    EXPECT_EQ(choice(3, u"z"_s), 26);
    EXPECT_EQ(choice(3, u"ｱ"_s), 0);
    EXPECT_EQ(choice(0, u"１"_s), 0);
    EXPECT_EQ(choice(3, u"12.5"_s), 12);  // half to even
    EXPECT_EQ(choice(3, u"13.5"_s), 14);
    EXPECT_EQ(choice(0, QString()), 0);
    EXPECT_EQ(choice(9, u"1"_s), 0);
    EXPECT_EQ(ErrorOf([&] { choice(0, u"40000"_s); }), kErrorOverflow);
}

TEST(Survey, ChoicesTravelAsOneString) {
    Survey survey = NewSurvey();
    ChoiceRec& choice = survey.Choices(1, 0);
    choice.Low = 5;
    SetChoiceFromFile(survey, 0, 1, u"文だけ"_s);
    EXPECT_EQ(choice.Text, u"文だけ"_s);
    EXPECT_EQ(choice.Low, 5);
    SetChoiceFromFile(survey, 0, 1, u"年齢\r-1.5\r 120歳\rまで"_s);
    EXPECT_EQ(choice.Low, -1.5);
    EXPECT_EQ(choice.High, 120);
    EXPECT_EQ(ChoiceToFile(survey, 0, 1), u"年齢\r-1.5\r120"_s);
    SetChoiceFromFile(survey, 0, 1, u"町\r町名.csv"_s);
    EXPECT_EQ(choice.CodeText, u"町名.csv"_s);
    EXPECT_EQ(ChoiceToFile(survey, 0, 1), u"町\r町名.csv"_s);
    ToggleChoiceStatus(survey, 0, 1, kOther);
    EXPECT_EQ(GetChoiceStatus(survey, 0, 1, kOther), -1);
    EXPECT_EQ(GetChoiceStatus(survey, 0, 1, kEssay), 0);
    EXPECT_EQ(ErrorOf([&] { GetChoiceStatus(survey, 0, 128, 0); }), kErrorSubscript);
}

TEST(Survey, QuotaUsedIsTheHighestIDInsideTheQuota) {
    Survey survey = NewSurvey();
    survey.Samples.Allocate(3);
    survey.QuotaFirst = 10;
    survey.QuotaLast = 20;
    const auto used = [&](qint32 first, qint32 second, qint32 third) {
        survey.Samples.SetIDno(0, first);
        survey.Samples.SetIDno(1, second);
        survey.Samples.SetIDno(2, third);
        RecalcQuotaUsed(survey);
        return survey.QuotaUsed;
    };
    EXPECT_EQ(used(12, 20, 21), 20);
    EXPECT_EQ(used(-5, 3, 21), 10);
}

}  // namespace
}  // namespace quibra
