#include "core/labels.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/error_of.h"
#include "support/survey_builder.h"

using namespace quibra;
using namespace Qt::StringLiterals;

namespace {

constexpr auto Line = [](int kind, int rank, int q, int c) { return SurveyBuilder::Line(kind, q, c, rank); };

// Questions with the given texts, one answer and three choices each: 無回答, A1, A2 of the first, B1 and so on.
Survey SurveyOf(const QStringList& texts) {
    SurveyBuilder builder;
    for (int q = 0; q < texts.size(); ++q) {
        const QChar letter(u'A' + q);
        builder.Question(QString(), QString(), 1, {letter + u"1"_s, letter + u"2"_s});
        builder.Get().Questions[q].SetText(texts[q]);
    }
    return builder.Get();
}

LimitList List(std::initializer_list<LimitLine> lines, int mask = 0, int bound = 15) {
    LimitList list(bound);
    list[0].b = static_cast<qint16>(mask);
    std::copy(lines.begin(), lines.end(), &list[1]);
    return list;
}

}  // namespace

TEST(Labels, NameBodyAndLimitTextAreCutAsTheyAlwaysWere) {
    const auto padded = [](const QString& text) { return text.leftJustified(128, u' '); };
    const QString longBody(200, u'長');
    const struct {
        QString text, name, body, limit;
    } cases[] = {
        {u"性別\rあなたの性別は\r女性の人\r"_s, u"性別"_s, u"あなたの性別は"_s, u"女性の人"_s},
        {u"性別\rあなたの性別は\r\r"_s, u"性別"_s, u"あなたの性別は"_s, QString()},
        {u"性別\rあなたの性別は\r"_s, u"性別"_s, u"あなたの性別は"_s, QString()},
        {u"性別\rあなたの性別は"_s, u"性別"_s, padded(u"性別\rあなたの性別は"_s), QString()},
        {u"性別\r\r\r"_s, u"性別"_s, QString(), QString()},
        {u"\rあなたの性別は\r女性の人\r"_s, u"質問6"_s, u"\rあなたの性別は"_s, u"女性の人"_s},
        {u"\r\r\r"_s, u"質問7"_s, u"\r"_s, QString()},
        {u"\rあなたの性別は"_s, u"質問8"_s, padded(u"\rあなたの性別は"_s), QString()},
        {u"性別"_s, u"質問9"_s, padded(u"性別"_s), QString()},
        {QString(), u"質問10"_s, QString(128, u' '), QString()},
        {u"名\r"_s + longBody + u"\r限\r"_s, u"名"_s, u"名\r"_s + longBody.left(126), QString()},
    };
    QStringList texts;
    for (const auto& one : cases)
        texts += one.text;
    Survey survey = SurveyOf(texts);
    for (int q = 0; q < survey.QuestionCount; ++q) {
        EXPECT_EQ(QuestionName(survey, q), cases[q].name) << q;
        EXPECT_EQ(QuestionBody(survey, q), cases[q].body) << q;
        EXPECT_EQ(QuestionLimitText(survey, q, true), cases[q].limit) << q;
        const QString& limit = cases[q].limit;
        EXPECT_EQ(QuestionLimitText(survey, q, false), limit.isEmpty() ? limit : u'(' + limit + u')') << q;
    }
    survey.Questions[0].Text.clear();
    EXPECT_EQ(QuestionName(survey, 0), u"質問1"_s);
    EXPECT_EQ(QuestionBody(survey, 0), QString());
    EXPECT_EQ(QuestionLimitText(survey, 0, true), QString());
    EXPECT_EQ(ErrorOf([&] { QuestionName(survey, 256); }), kErrorSubscript);
}

TEST(Labels, QuestionLabelsConsistOfTheirParts) {
    Survey survey = SurveyOf({u"性別\rあなたの性別は\r\r"_s, u"番組\r見た番組は\r\r"_s, u"局\r見た局は\r見た人\r"_s});
    survey.Questions[1].Anum = 2;
    survey.QLimit(0, 1).a = 1;
    survey.QLimit(1, 1) = Line(3, 0, 0, 2);
    survey.QLimit(2, 1) = Line(1, 0, 0, 1);
    survey.QLimit(1, 2) = Line(3, 0, 1, 1);
    const std::tuple<int, LabelParts, QString> cases[] = {
        {0, {}, QString()},
        {0, {.number = true}, u"Q1 "_s},
        {1, {.name = true}, u"番組"_s},
        {0, {.limit = true}, u" "_s},
        {0, {.name = true, .answers = true}, u"性別 "_s},
        {1, {.body = true, .answers = true}, u" 見た番組は［2つまで］"_s},
    };
    for (const auto& [q, parts, label] : cases)
        EXPECT_EQ(QuestionLabel(survey, q, parts), label);
    EXPECT_EQ(FullQuestionList(survey), QStringList({u"Q1 性別 あなたの性別は"_s,
                                                     u"Q2 番組 （性別(2)A2又は性別(1)A1の人）見た番組は［2つまで］"_s,
                                                     u"Q3 局 (見た人)見た局は"_s}));
    EXPECT_EQ(PlainQuestionList(survey),
              QStringList({u"性別 あなたの性別は"_s, u"番組 見た番組は［2つまで］"_s, u"局 見た局は"_s}));
}

TEST(Labels, ChoiceLabelsCarrySymbolAndTags) {
    Survey survey = SurveyOf({u"年\r\r\r"_s});
    survey.Questions[0].ChoiceCount = 13;
    const auto label = [&](int c, int status) {
        survey.Choices(c, 0) = {u"他"_s, 0.5, 1e15, u"01,02"_s, static_cast<qint16>(status)};
        return ChoiceLabel(survey, 0, c, true, true);
    };
    const std::tuple<int, int, QString> cases[] = {
        {1, 0, u"(1)他"_s},
        {1, 1, u"(1)他［記述］"_s},
        {2, 3, u"(2)他［数値:0.5-1E+15］"_s},
        {2, 3 | 16, u"(2)他［数値:0.5-1E+15］"_s},
        {3, 17, u"(3)他[ｺｰﾄﾞ:01,02]"_s},
        {4, 2 | 16, u"(4)他"_s},
        {12, 63, u"(.12.)他［数値:0.5-1E+15］［排他］［その他］［複数］"_s},
    };
    for (const auto& [c, status, text] : cases)
        EXPECT_EQ(label(c, status), text);
    EXPECT_EQ(ChoiceLabel(survey, 0, 12, false, true), u"他［数値:0.5-1E+15］［排他］［その他］［複数］"_s);
    EXPECT_EQ(ChoiceLabel(survey, 0, 12, false, false), u"他"_s);
    survey.Questions[0].LabelKind = 2;
    EXPECT_EQ(ChoiceLabel(survey, 0, 12, true, false), u"(ｼ)他"_s);
    const QStringList list = ChoiceList(survey, 0);
    ASSERT_EQ(list.size(), 13);
    EXPECT_EQ(list[0], u"(0)無回答［排他］"_s);
    EXPECT_EQ(list[1], u"(ｱ)他［記述］"_s);
    EXPECT_EQ(ErrorOf([&] { ChoiceLabel(survey, 0, 128, false, false); }), kErrorSubscript);
}

TEST(Labels, ConditionsReadAsSentences) {
    Survey survey = SurveyOf({u"甲\r\r\r"_s, u"\r\r\r"_s});
    survey.PreLimit(1, 0) = Line(4, 0, 0, 1);
    survey.PreLimit(1, 15) = Line(3, 2, 1, 2);
    survey.PreLimit(2, 15) = Line(2, 0, 1, 1);
    const struct {
        LimitList list;
        QString text, verbose;
    } cases[] = {
        {List({}), u"条件なし"_s, u"限定条件はありません"_s},
        {List({}, 2), u"条件なし"_s, u"既成1()"_s},
        {List({}, 6), u","_s, u"既成1(),既成2()"_s},
        {List({}, 1), u"除くA1"_s, u"既成0(除く甲(1)A1)"_s},
        {List({Line(3, 0, 0, 2)}, -32767), u"除くA1,2位にB2からB1A2"_s,
         u"既成0(除く甲(1)A1),既成15(2位に質問2(2)B2から質問2(1)B1)甲(2)A2"_s},
        {List({Line(3, 0, 0, 1), Line(3, 0, 1, 1), Line(1, 0, 1, 2)}), u"A1のB1又はB2"_s,
         u"甲(1)A1の質問2(1)B1又は質問2(2)B2"_s},
        {List({Line(4, 3, 0, 0), Line(4, 0, 0, 1)}), u"除く3位に無回答，除くA1"_s,
         u"除く3位に甲(0)無回答，除く甲(1)A1"_s},
        {List({Line(1, 0, 0, 1)}), u"はA1"_s, u"は甲(1)A1"_s},
        {List({Line(0, 127, 0, 1)}), u"27位にA1"_s, u"27位に甲(1)A1"_s},
        {List({Line(7, 0, 0, 1), Line(9, 0, 0, 2)}), u"1A2"_s, u"(1)A1甲(2)A2"_s},
        {List({Line(3, 0, 0, 1), Line(3, 0, 0, 2), Line(3, 0, 0, 1)}, 0, 3), u"A1のA2"_s, u"甲(1)A1の甲(2)A2"_s},
    };
    for (const auto& [list, text, verbose] : cases) {
        EXPECT_EQ(LimitText(survey, list, false), text);
        EXPECT_EQ(LimitText(survey, list, true), verbose);
    }

    const LimitList list = List({Line(3, 0, 0, 1), Line(1, 2, 1, 0), Line(2, 3, 1, 2), Line(4, 1, 0, 2)});
    const QStringList lines{u"甲(1)A1"_s, u"　又は2位に質問2(0)無回答［排他］"_s, u"　から質問2(2)B2"_s,
                            u"除く1位に甲(2)A2"_s};
    for (int i = 0; i < lines.size(); ++i)
        EXPECT_EQ(LimitLineText(survey, i + 1, list), lines[i]);
    EXPECT_EQ(LimitLinesText(survey, List({{3, -1}}), false), u"質問512(127)"_s);
    EXPECT_EQ(ErrorOf([&] { LimitLineText(survey, 16, list); }), kErrorSubscript);
}

TEST(Labels, QuestionTreeFollowsTheChainOfConditions) {
    Survey survey = SurveyOf(QList<QString>(9, u"問\r文\r\r"_s));
    EXPECT_EQ(RefreshQuestionList(survey, 8), QStringList(u"問 文"_s));
    // Each question's conditions, its depth and its place in the tree; the chain follows the first line alone.
    const struct {
        std::vector<LimitLine> conditions;
        qint16 depth;
        QString place;
    } questions[] = {
        {{}, 0, u"問 文"_s},
        {{Line(3, 0, 0, 1)}, 1, u"+--問 文"_s},
        {{Line(3, 0, 0, 1)}, 1, u"|  問 文"_s},
        {{Line(3, 0, 2, 1)}, 2, u"|  +--問 文"_s},
        {{Line(3, 0, 3, 1), Line(1, 0, 0, 1)}, 3, u"|  |  +--問 文"_s},
        {{Line(3, 0, 3, 1)}, 3, u"|  |  +--問 文"_s},
        {{Line(3, 0, 0, 1), Line(1, 0, 8, 1)}, 1, u"+--問 文"_s},
        {{Line(3, 0, 0, 1)}, 1, u"+--問 文"_s},
        {{}, 0, u"問 文"_s},
    };
    QStringList tree;
    for (int q = 0; q < 9; ++q) {
        survey.QLimit(0, q) = {77, 77};
        std::ranges::copy(questions[q].conditions, survey.QLimit.Column(q).begin() + 1);
        tree += questions[q].place;
    }
    EXPECT_EQ(RefreshQuestionList(survey, 0), tree);
    EXPECT_EQ(RefreshQuestionList(survey, 3), tree.mid(3));
    for (int q = 0; q < 9; ++q)
        EXPECT_TRUE((survey.QLimit(0, q) == LimitLine{questions[q].depth, 0})) << q;

    survey.QLimit(1, 0) = Line(3, 0, 8, 1);  // opens a branch although nothing stands before it
    EXPECT_EQ(RefreshQuestionList(survey, 0).at(0), u"+--問 文"_s);
    survey.QLimit(1, 8) = Line(3, 0, 0, 1);
    EXPECT_EQ(ErrorOf([&] { RecalcQLimitDepth(survey); }), kErrorOverflow);
    survey.QLimit(1, 0).b = -1;
    RecalcQLimitDepth(survey);
    EXPECT_EQ(survey.QLimit(0, 8).a, 2) << "a chain ends at a question that is not there";
}
