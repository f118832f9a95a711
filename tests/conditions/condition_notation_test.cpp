#include "conditions/condition_notation.h"

#include <gtest/gtest.h>

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
        {u"－Q２@１=３．．7 |Q02=007..7"_s, 0, {Line(4, 1, 3, 1), Line(2, 1, 7), Line(1, 1, 7), Line(2, 1, 7)}},
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

TEST(ConditionNotation, RefusedTextLeavesTheListAsItWas) {
    const Survey survey = ThreeQuestions().Get();
    LimitList list;
    list[1] = Line(3, 0, 1);
    NotationError error;
    const QString text = u"Q2=3..12 Q1=2"_s + QChar(0) + u"3"_s;
    EXPECT_FALSE(ParseCondition(survey, text, list, error));
    EXPECT_TRUE(error.position == 9 && error.length == 6 && list.LineCount() == 1);
}
