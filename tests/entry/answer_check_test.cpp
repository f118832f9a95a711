#include "entry/answer_check.h"

#include <gtest/gtest.h>

#include "companion/limit_terms.h"
#include "support/qt_printers.h"
#include "support/survey_builder.h"

using namespace Qt::StringLiterals;
using namespace quibra;

namespace {

// Writes down what it is told, with the place on the sheet.
class Notes : public CorrectionNotice {
  public:
    void ShowCorrection(const QString& head, const QString& tail, int pos, int len) override {
        text += head + u'(' + QString::number(pos) + u'+' + QString::number(len) + u')' + tail + u'\n';
    }
    QString text;
};

// "3 5=文 0": answers with their texts.
WorkingSample Answers(const Survey& survey, const QStringList& questions) {
    WorkingSample working(survey);
    size_t slot = 0;
    for (qsizetype q = 0; q < questions.size(); ++q) {
        for (const QString& answer : questions[q].split(u' ', Qt::SkipEmptyParts)) {
            working.SlotCno[slot] = answer.section(u'=', 0, 0).toShort();
            working.SlotEssay[slot] = answer.section(u'=', 1);
            working.SlotPos[slot] = static_cast<qint16>(10 * (slot + 1));
            working.SlotLen[slot++] = 1;
            ++working.AnswerCount[static_cast<size_t>(q)];
        }
    }
    return working;
}

QString Words(const Survey& survey, const WorkingSample& working) {
    QStringList questions;
    size_t slot = 0;
    for (int q = 0; q < survey.QuestionCount; ++q) {
        QStringList answers;
        for (int i = 0; i < working.AnswerCount[static_cast<size_t>(q)]; ++i, ++slot)
            answers += QString::number(working.SlotCno[slot]) +
                       (working.SlotEssay[slot].isEmpty() ? QString() : u'=' + working.SlotEssay[slot]);
        questions += answers.join(u' ');
    }
    return questions.join(u" | ");
}

// Q1 takes four of nine choices: 3 その他 with text, 4 with text, 5 exclusive, 6 exclusive, 7 複数, 8 複数 with text.
// Q2 has an その他 (2) without text, Q3 none.
Survey CheckedSurvey() {
    SurveyBuilder builder;
    builder.Question(u"趣味"_s, u""_s, 4, QString(u"abcdefgh"_s).split(QString(), Qt::SkipEmptyParts));
    builder.Status(0, 3, {kOther, kEssay});
    builder.Status(0, 4, {kEssay});
    builder.Status(0, 5, {kExclusive});
    builder.Status(0, 6, {kExclusive});
    builder.Status(0, 7, {kMultiple});
    builder.Status(0, 8, {kMultiple, kEssay});
    builder.Question(u"金額"_s, u""_s, 2, {u"a"_s, u"b"_s, u"c"_s});
    builder.Status(1, 2, {kOther});
    builder.Status(1, 3, {kEssay});
    builder.Question(u""_s, u""_s, 1, {u"a"_s, u"b"_s});
    return builder.Get();
}

const QString kAbsent = u"の回答は存在しない選択肢(%1)を回答してます\n"_s;
const QString kText = u"の回答(%1)は記述選択肢ではないのに記述文があります\n"_s;
const QString kRepeat = u"の複数回答に重複(%1)がありました。取り除いておきます\n"_s;
const QString kExclusiveGoes = u"の複数回答に排他回答(%1)が混じっていました。排他回答を取り除いておきます。\n"_s;
const QString kOthersGo = u"の複数回答に排他回答(%1)が混じっていました。排他回答以外の回答を取り除いておきます。\n"_s;

TEST(AnswerCheck, RepairsByThePolicyAndSaysSo) {
    struct Case {
        int flags;
        QStringList given;
        QString left;
        QString said;
        bool repeats = true;
    };
    const Case cases[] = {
        {0, {u"1 3=x"_s, u"1"_s, u"2"_s}, u"1 3=x | 1 | 2"_s, u""_s},
        {0, {}, u"0 | 0 | 0"_s, u""_s},
        // Choices that don't exist.
        {0, {u""_s, u""_s, u"200=x"_s}, u"0 | 0 | 0"_s, u"Q3 質問3"_s + kAbsent.arg(u"10+1"_s)},
        {15,
         {u""_s, u"-1"_s, u"3"_s},
         u"0 | 2 | 0"_s,
         u"Q2 金額"_s + kAbsent.arg(u"10+1"_s) + u"Q3 質問3"_s + kAbsent.arg(u"20+1"_s)},
        {0,
         {u"9 -3 1 10"_s, u"1"_s},
         u"1 | 1 | 0"_s,
         u"Q1 趣味"_s + kAbsent.arg(u"10+1"_s) + u"Q1 趣味"_s + kAbsent.arg(u"20+1"_s) + u"Q1 趣味"_s +
             kAbsent.arg(u"40+1"_s)},
        // Texts where none may be; その他 takes one only when it bears a text.
        {0, {u"1=x 3=y"_s, u"1"_s}, u"1 3=y | 1 | 0"_s, u"Q1 趣味"_s + kText.arg(u"10+1"_s)},
        {2,
         {u"1=x 4=y"_s, u"1=z"_s},
         u"3=x 4=y | 1 | 0"_s,
         u"Q1 趣味"_s + kText.arg(u"10+1"_s) + u"Q2 金額"_s + kText.arg(u"30+1"_s)},
        // Repeats.
        {0,
         {u"1 2 1 1"_s, u"2 2"_s},
         u"1 2 | 2 2 | 0"_s,
         u"Q1 趣味"_s + kRepeat.arg(u"30+1"_s) + u"Q1 趣味"_s + kRepeat.arg(u"40+1"_s)},
        {0, {u"7 7 8=x 8=x"_s}, u"7 7 8=x | 0 | 0"_s, u"Q1 趣味"_s + kRepeat.arg(u"40+1"_s)},
        {0, {u"4=x 4=y 3 3"_s}, u"4=x 4=y 3 3 | 0 | 0"_s, u""_s},
        {0, {u"1 1"_s}, u"1 1 | 0 | 0"_s, u""_s, false},
        // Exclusive answers, 0 among them; of two side by side the second escapes.
        {4, {u"3 0"_s}, u"3 | 0 | 0"_s, u"Q1 趣味"_s + kExclusiveGoes.arg(u"20+1"_s)},
        {0, {u"3=x 0"_s, u"1"_s}, u"0 | 1 | 0"_s, u"Q1 趣味"_s + kOthersGo.arg(u"20+1"_s)},
        {4, {u"1 5 6 2"_s}, u"1 6 2 | 0 | 0"_s, u"Q1 趣味"_s + kExclusiveGoes.arg(u"20+1"_s)},
        {4, {u"5 6"_s}, u"6 | 0 | 0"_s, u"Q1 趣味"_s + kExclusiveGoes.arg(u"10+1"_s)},
        {0, {u"1 5 2"_s}, u"5 | 0 | 0"_s, u"Q1 趣味"_s + kOthersGo.arg(u"20+1"_s)},
        // A place on the sheet goes with its answer: the second absent one stood at 20, the exclusive one at 40.
        {0,
         {u"99 98 1 5"_s},
         u"5 | 0 | 0"_s,
         u"Q1 趣味"_s + kAbsent.arg(u"10+1"_s) + u"Q1 趣味"_s + kAbsent.arg(u"20+1"_s) + u"Q1 趣味"_s +
             kOthersGo.arg(u"40+1"_s)},
    };
    Survey survey = CheckedSurvey();
    for (const Case& one : cases) {
        SCOPED_TRACE(one.given.join(u" | "_s).toStdString());
        survey.CorrectFlags = static_cast<qint16>(one.flags);
        Notes notes;
        WorkingSample told = Answers(survey, one.given);
        EXPECT_EQ(CorrectAnswers(survey, told, one.repeats, &notes), !one.said.isEmpty());
        EXPECT_EQ(Words(survey, told), one.left);
        EXPECT_EQ(notes.text, one.said);
        WorkingSample silent = Answers(survey, one.given);
        CorrectAnswers(survey, silent, one.repeats, nullptr);
        EXPECT_EQ(Words(survey, silent), one.left);
    }
}

// Q1 -> Q2 -> Q3: each asked of those who gave 1 to the one before. Q4 is not asked of those who gave 2 to Q1, Q5 hangs
// on an answer that Q1 doesn't have.
TEST(AnswerCheck, FitsAnswersToTheConditionsOfTheirQuestions) {
    const auto line = SurveyBuilder::Line;
    struct Case {
        int flags;
        std::vector<int> given;
        std::vector<int> left;
        QString said;
    };
    const auto unfit = [](int q) {
        return u"Q%1 %2の回答(%3+1)は質問の限定に合致していません。\n"_s.arg(q).arg(QChar(u'A' + q - 1));
    };
    const Case cases[] = {
        {0, {1, 1, 1, 1, 0}, {1, 1, 1, 1, 0}, u""_s},
        {0, {0, 0, 2, 0, 0}, {1, 1, 2, 0, 0}, unfit(3).arg(30) + unfit(2).arg(30)},
        {0, {2, 0, 2, 0, 0}, {2, 1, 2, 0, 0}, unfit(3).arg(30) + unfit(2).arg(30)},
        {0, {2, 2, 0, 0, 0}, {2, 2, 0, 0, 0}, unfit(2).arg(20)},
        {8, {0, 2, 2, 0, 0}, {0, 0, 0, 0, 0}, unfit(2).arg(20) + unfit(3).arg(30)},
        {0, {2, 0, 0, 1, 0}, {2, 0, 0, 0, 0}, unfit(4).arg(40)},
        {0, {0, 0, 0, 0, 1}, {0, 0, 0, 0, 1}, unfit(5).arg(50)},
        {8, {0, 0, 0, 0, 1}, {0, 0, 0, 0, 0}, unfit(5).arg(50)},
    };
    for (const Case& one : cases) {
        SurveyBuilder builder;
        for (const QChar name : u"ABCDE"_s)
            builder.Question(name, u""_s, 1, {u"a"_s, u"b"_s});
        builder.QuestionLimit(1, {line(kLimitAnd, 0, 1, 0)});
        builder.QuestionLimit(2, {line(kLimitAnd, 1, 1, 0)});
        builder.QuestionLimit(3, {line(kLimitNot, 0, 2, 0)});
        builder.QuestionLimit(4, {line(kLimitAnd, 0, 100, 0)});
        std::vector<std::vector<GivenAnswer>> answers;
        QStringList words;
        for (const int choice : one.given) {
            answers.push_back({choice});
            words += QString::number(choice);
        }
        builder.Sample(answers);
        Survey& survey = builder.Get();
        survey.CorrectFlags = static_cast<qint16>(one.flags);
        Notes notes;
        EXPECT_EQ(CheckAllLimits(survey, 0, Answers(survey, words), &notes), one.given != one.left);
        std::vector<int> left;
        for (int q = 0; q < 5; ++q) {
            qint16 count;
            qint16 answer[128];
            GetAnswers(survey, 0, q, count, answer);
            left.push_back(answer[0]);
        }
        EXPECT_EQ(left, one.left);
        EXPECT_EQ(notes.text, one.said);
    }
}

}  // namespace
