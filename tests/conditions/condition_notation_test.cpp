#include "conditions/condition_notation.h"

#include <gtest/gtest.h>

#include "conditions/limit_lists.h"
#include "support/qt_printers.h"
#include "support/survey_builder.h"

using namespace quibra;
using namespace Qt::StringLiterals;

namespace {

// Three questions: choices 0 to 3 with one answer, 0 to 12 with three answers, 0 to 5 with two.
SurveyBuilder ThreeQuestions() {
    SurveyBuilder builder;
    for (const auto& [choices, answers] : {std::pair{3, 1}, {12, 3}, {5, 2}})
        builder.Question(QString(), QString(), answers, QStringList(choices, u"c"_s));
    return builder;
}

std::vector<LimitLine> Lines(const LimitList& list) {
    return {list.Data(), list.Data() + list.LineCount() + 1};
}

constexpr auto Line = [](int kind, int q, int c, int rank = 0) { return SurveyBuilder::Line(kind, q, c, rank); };

}  // namespace

TEST(ConditionNotation, WordsBecomeLines) {
    const Survey survey = ThreeQuestions().Get();
    struct Case {
        QString text;
        int mask;
        std::vector<LimitLine> lines;
    };
    std::vector<LimitLine> fourteenLines;
    for (int i = 0; i < 7; ++i)
        fourteenLines.insert(fourteenLines.end(), {Line(3, 1, 1, 0), Line(2, 1, 12, 0)});
    const std::vector<Case> cases{
        {u""_s, 0, {}},
        {u" \u3000\t\n"_s, 0, {}},
        {u"Q1=2"_s, 0, {Line(3, 0, 2)}},
        {u"Q1=0 |Q2@3=12\u3000-Q3=5"_s, 0, {Line(3, 0, 0), Line(1, 1, 12, 3), Line(4, 2, 5)}},
        {u"-Q2@1=3..7 |Q02=007..7"_s, 0, {Line(4, 1, 3, 1), Line(2, 1, 7), Line(1, 1, 7), Line(2, 1, 7)}},
        {u"P0 Q3=1 P15 P0"_s, 0x8001, {Line(3, 2, 1)}},
        {u"Q2=1..12 "_s.repeated(7) + u"P4"_s, 0x10, fourteenLines},
    };
    for (const Case& one : cases) {
        LimitList list;
        list[1] = Line(3, 0, 1);
        NotationError error;
        EXPECT_TRUE(ParseCondition(survey, one.text, list, error)) << error.message.toStdString();
        std::vector<LimitLine> expected{{0, static_cast<qint16>(one.mask)}};
        expected.insert(expected.end(), one.lines.begin(), one.lines.end());
        EXPECT_TRUE(Lines(list) == expected) << one.text.toStdString();
    }
}

TEST(ConditionNotation, WhatIsNoConditionIsRefusedByName) {
    const Survey survey = ThreeQuestions().Get();
    const auto unreadable = [](const QString& word) {
        return u"「"_s + word +
               u"」は条件として読めません。Q3=2、Q3=2..5、Q3@1=2、|Q3=2、-Q3=2、P4のように書いてください。"_s;
    };
    const QString fourteen = u"Q1=1 "_s.repeated(14);
    struct Case {
        QString text;
        QString word;
        QString message;
    };
    std::vector<Case> cases{
        {u"Q1=1 Q4=1"_s, u"Q4=1"_s, u"質問Q4はありません。質問はQ1からQ3までです。"_s},
        {u"Q0=1"_s, u"Q0=1"_s, u"質問Q0はありません。質問はQ1からQ3までです。"_s},
        {u"Q99999999999=1"_s, u"Q99999999999=1"_s, u"質問Q99999999999はありません。質問はQ1からQ3までです。"_s},
        {u"Q1=4"_s, u"Q1=4"_s, u"Q1に選択肢4はありません。選択肢は0から3までです。"_s},
        {u"Q2=3..13 Q1=1"_s, u"Q2=3..13"_s, u"Q2に選択肢13はありません。選択肢は0から12までです。"_s},
        {u"Q2=7..3"_s, u"Q2=7..3"_s, u"範囲の3は7より小さい番号です。"_s},
        {u"Q2@4=1"_s, u"Q2@4=1"_s, u"Q2に順位4はありません。順位は1から3までです。"_s},
        {u"Q2@0=1"_s, u"Q2@0=1"_s, u"Q2に順位0はありません。順位は1から3までです。"_s},
        {u"P3 |Q1=1"_s, u"|Q1=1"_s, u"「|」（又は）の前に条件がありません。"_s},
        {u"Q1=1 |P3"_s, u"|P3"_s, u"既成限定の前に「|」は書けません。"_s},
        {u"-P3"_s, u"-P3"_s, u"既成限定の前に「-」は書けません。"_s},
        {u"P16"_s, u"P16"_s, u"既成限定P16はありません。既成限定はP0からP15までです。"_s},
        {u"P99999999999"_s, u"P99999999999"_s, u"既成限定P99999999999はありません。既成限定はP0からP15までです。"_s},
        {fourteen + u"|Q2=1"_s, u"|Q2=1"_s, u"条件は14個までです。"_s},
        {fourteen.chopped(5) + u"Q2=1..2"_s, u"Q2=1..2"_s, u"条件は14個までです。"_s},
    };
    for (const QString& word :
         {u"Q1"_s, u"Q1="_s, u"1=2"_s, u"q1=2"_s, u"Q１=2"_s, u"Q1=2.."_s, u"Q1=2.3"_s, u"Q1=-2"_s, u"Q1@=2"_s,
          u"||Q1=2"_s, u"|"_s, u"P"_s, u"男性"_s, u"Q1=2,3"_s, u"Q1=2\u00003"_s})
        cases.push_back({u"Q1=1 "_s + word + u" Q1=2"_s, word, unreadable(word)});
    for (const Case& one : cases) {
        LimitList list;
        list[1] = Line(3, 0, 1);
        NotationError error;
        EXPECT_FALSE(ParseCondition(survey, one.text, list, error)) << one.text.toStdString();
        EXPECT_EQ(error.message, one.message);
        EXPECT_EQ(one.text.mid(error.position, error.length), one.word);
        EXPECT_EQ(list.LineCount(), 1) << "a refused text leaves the list as it was";
    }

    NotationError error;
    LimitList list;
    const QString text = u"Q1=1\u3000男\tQ9=1 Q1=2"_s;
    ASSERT_FALSE(ParseCondition(survey, text, list, error));
    EXPECT_EQ(NotationErrorText(text, error), unreadable(u"男"_s) + u"\nQ1=1\u3000男 Q9=1 Q1=2\n      ^^"_s);
}

// A condition typed, kept as a predefined one and tested on answers.
TEST(ConditionNotation, TypedConditionPicksTheSamplesItsWordsSay) {
    SurveyBuilder builder = ThreeQuestions();
    for (int i = 0; i < 52; ++i)
        builder.Sample({{i % 4 == 0 ? std::vector<GivenAnswer>() : std::vector<GivenAnswer>{i % 4}},
                        i < 4 ? std::vector<GivenAnswer>() : std::vector<GivenAnswer>{i / 4, 12, 1}});
    Survey& survey = builder.Get();
    LimitList list;
    const auto picked = [&](const QString& text) {
        NotationError error;
        EXPECT_TRUE(ParseCondition(survey, text, list, error)) << error.message.toStdString();
        QStringList ids;
        for (qint32 dno = 0; dno < survey.SampleCount(); ++dno)
            if (TestLimit(survey, dno, list)) ids += QString::number(survey.Samples.IDno(dno));
        return ids.join(u' ').toStdString();
    };
    EXPECT_EQ(picked(u"Q2=0"_s), "1 2 3 4");
    EXPECT_EQ(picked(u"Q3=0 Q1=3 -Q2=1..12"_s), "4");
    EXPECT_EQ(picked(u"Q1=1..2 Q2@1=3..4 |Q2@1=9 -Q1=2"_s), "14 18 38");
    std::copy(list.Data() + 1, list.Data() + 16, survey.PreLimit.Column(4).begin() + 1);
    EXPECT_EQ(picked(u"-Q1=3 P4 Q2=9"_s), "37 38 39") << "what the samples know is the empty slot";
    for (qint32 dno = 0; dno < survey.SampleCount(); ++dno)
        RefreshPreLimitBit(survey, LimitList(survey.PreLimit.Column(4)), 4, dno);
    EXPECT_EQ(picked(u"P5 P4"_s), "14 18 38");
    EXPECT_EQ(picked(u"P4 Q2=9"_s), "38");
}
