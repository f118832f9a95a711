#include "entry/sheet_parser.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "companion/limit_terms.h"
#include "core/answer_store.h"
#include "core/code_page.h"
#include "entry/sheet_text.h"
#include "support/error_of.h"
#include "support/qt_printers.h"
#include "support/random_survey.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"

using namespace Qt::StringLiterals;
using namespace quibra;

namespace {

// Keeps where an error was marked.
class MarkedReply : public PlainReply {
  public:
    void MarkError(int start, int length) override { marked = QString::number(start) + u'+' + QString::number(length); }
    QString marked;
};

struct Reader {
    explicit Reader(Survey& read) : survey(read) {}

    // "|" stands for a line end.
    QString Parse(const QString& text, int caret = -1, bool save = true) {
        reading = {};
        reading.Text = QString(text).replace(u"|"_s, u"\r\n"_s);
        reading.Caret = caret;
        box.SetText(reading.Text);
        return ParseAnswerSheet(survey, 0, reading, save, {ui, tables, &box, &corrections});
    }
    // "年齢 3, 職業 2=自営業": the answered questions of the sample.
    QString Stored() const {
        WorkingSample working(survey);
        GetAllAnswersEssay(survey, 0, working.AnswerCount.data(), working.SlotCno.data(), working.SlotEssay.data());
        QStringList answers;
        for (size_t q = 0, slot = 0; q < static_cast<size_t>(survey.QuestionCount); ++q) {
            QString answer = u'Q' + QString::number(q + 1);
            for (int i = 0; i < working.AnswerCount[q]; ++i, ++slot)
                answer += u' ' + QString::number(working.SlotCno[slot]) +
                          (working.SlotEssay[slot].isEmpty() ? QString() : u'=' + working.SlotEssay[slot]);
            if (working.AnswerCount[q] > 0) answers += answer;
        }
        return answers.join(u", "_s);
    }
    QString Stop() const { return QString::number(reading.StopQ + 1) + u'.' + QString::number(reading.StopA + 1); }

    Survey& survey;
    ScriptedInterface ui;
    CodeTables tables;
    MarkedReply box;
    ShowCorrectionBox corrections{box, ui};
    SheetReading reading;
};

// Q1 of 20 choices, 7 その他 with text; Q2 takes three of five, 3 exclusive, 4 その他; Q3 a number from 0 to 100.5;
// Q4 takes two by letters; Q5 is asked of those who gave 1 to Q1. Lines: Q1 | Q2 | Q3 Q4 | Q5.
SurveyBuilder Typed() {
    SurveyBuilder builder;
    QStringList twenty;
    for (int c = 1; c <= 20; ++c)
        twenty += u"c%1"_s.arg(c);
    builder.Question(u"年齢"_s, u""_s, 1, twenty);
    builder.Status(0, 7, {kOther, kEssay});
    builder.Question(u"趣味"_s, u""_s, 3, {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s});
    builder.Status(1, 3, {kExclusive});
    builder.Status(1, 4, {kOther, kEssay});
    builder.Question(u"金額"_s, u""_s, 1, {u"a"_s, u"b"_s});
    builder.Status(2, 1, {kEssay, kNumber});
    builder.Question(u"職業"_s, u""_s, 2, {u"a"_s, u"b"_s, u"c"_s});
    builder.Question(u"続き"_s, u""_s, 1, {u"a"_s, u"b"_s});
    builder.QuestionLimit(4, {SurveyBuilder::Line(kLimitAnd, 0, 1)});
    builder.Lines({{0, 0}, {1, 0}, {2, 0}, {4, 0}});
    Survey& survey = builder.Get();
    survey.Choices(1, 2).High = 100.5;
    survey.Questions[3].LabelKind = 3;
    survey.LineFlag[1] = true;
    builder.Sample({});
    return builder;
}

const QString kNoSlash = u"記述回答文が//でくくれていません。"_s;
const QString kNoBracket = u"質問名が[]でくくれていません。"_s;
const QString kTooLarge = u"回答番号が大きすぎます。"_s;
const QString kNoDot = u"回答番号が ..でくくれていません。"_s;
const QString kTooMany = u"%1行目の回答数が違います。"_s;
const QString kOutside = u"数量回答が範囲0～100.5に納まっていません。"_s;
const QString kFarOutside = u"数量回答が範囲0～100.5を大きく超えています。"_s;

TEST(SheetParser, ReadsWhatIsTyped) {
    struct Case {
        QString text;
        QString stop;
        QString stored;
        QString message = QString();
        QString shown = QString();  // where the text comes back changed
    };
    const Case cases[] = {
        {u""_s, u"1.1"_s, u""_s},
        {u"[年齢] 3-¶|"_s, u"2.1"_s, u"Q1 3"_s, u"EXEDLL"_s},
        {u"1|1-|1/5/A-|1"_s, u"6.1"_s, u"Q1 1, Q2 1, Q3 1=5, Q4 1, Q5 1"_s},
        {u"1|--|2-bC|2|"_s, u"6.1"_s, u"Q1 1, Q3 2, Q4 2 3, Q5 2"_s},
        // A bare line: a choice goes between dots, anything else between slashes and so to その他.
        {u"12"_s, u"2.1"_s, u"Q1 12"_s, u""_s, u".12."_s},
        {u"21|"_s, u"2.1"_s, u"Q1 7=21"_s, u"EXEDLL"_s, u"/21/|"_s},
        {u"無職 2.5.-¶|"_s, u"2.1"_s, u"Q1 7=無職 2.5."_s, u"EXEDLL"_s, u"/無職 2.5./-¶|"_s},
        {u"2-"_s, u"2.1"_s, u"Q1 7=2-"_s, u""_s, u"/2-/"_s},
        {u"0-|"_s, u"2.1"_s, u""_s, u"EXEDLL"_s},
        {u"00|"_s, u"2.1"_s, u"Q1 7=00"_s, u"EXEDLL"_s, u"/00/|"_s},
        {u"99999999|"_s, u"2.1"_s, u"Q1 7=99999999"_s, u"EXEDLL"_s, u"/99999999/|"_s},
        {u"7/*a/b*/-|"_s, u"2.1"_s, u"Q1 7=a/b"_s, u"EXEDLL"_s},
        {u".7.//|"_s, u"2.1"_s, u"Q1 7"_s, u"EXEDLL"_s},
        {u".長い話.|"_s, u"2.1"_s, u""_s, u"EXEDLL"_s},
        {u".もっと長い話.|"_s, u"2.1"_s, u"Q1 7=.もっと長い話."_s, u"EXEDLL"_s, u"/.もっと長い話./|"_s},
        // Three answers of one question, an exclusive one, a closing "-" where the question has closed itself.
        {u"5|12"_s, u"2.3"_s, u"Q1 5, Q2 1 2"_s, u"EXEDLL"_s},
        {u"5|125"_s, u"3.1"_s, u"Q1 5, Q2 1 2 5"_s, u"EXEDLL"_s},
        {u"5|1 2 5-|"_s, u"3.1"_s, u"Q1 5, Q2 1 2 5"_s},
        {u"5|125-|-A"_s, u"4.2"_s, u"Q1 5, Q2 1 2 5, Q4 1"_s},
        {u"5|/x/-"_s, u"3.1"_s, u"Q1 5, Q2 4=x"_s, u"EXEDLL"_s},
        // Line ends: an empty line of several places is none, a short one leaves blanks.
        {u"5||1|"_s, u"3.1"_s, u"Q1 5, Q2 1"_s},
        {u"1|1|2|"_s, u"5.1"_s, u"Q1 1, Q2 1, Q3 2"_s},
        {u"|"_s, u"2.1"_s, u""_s, u"EXEDLL"_s},
        // Behind the last question.
        {u"1|1-|--|2|||"_s, u"6.1"_s, u"Q1 1, Q2 1, Q5 2"_s},
        {u"1|1-|--|2-|---|-"_s, u"6.1"_s, u"Q1 1, Q2 1, Q5 2"_s},
        {u"1|1-|--|2-|1-"_s, u"6.1"_s, u"Q1 1, Q2 1, Q5 2"_s},
        // The question asked next is one that applies; Q5 is not, after a 5.
        {u"5|1-|--"_s, u"6.1"_s, u"Q1 5, Q2 1"_s},
        {u"1|1-|--"_s, u"5.1"_s, u"Q1 1, Q2 1"_s},
        // Symbols.
        {u"a-|"_s, u"2.1"_s, u"Q1 10"_s, u"EXEDLL"_s},
        {u"▼.10.-|"_s, u"2.1"_s, u"Q1 10"_s, u"EXEDLL"_s},
        {u"5|1-|1/1e2/bc"_s, u"6.1"_s, u"Q1 5, Q2 1, Q3 1=1e2, Q4 2 3"_s},
        // What stops the parser leaves the sample as it was.
        {u"5|1/x"_s, u"2.1"_s, u""_s, kNoSlash},
        {u"5|1/*x/|"_s, u"2.1"_s, u""_s, kNoSlash},
        {u"5|[年|[性]1"_s, u"2.1"_s, u""_s, kNoBracket},
        {u"5|1[趣味"_s, u"2.1"_s, u""_s, kNoBracket},
        {u"5|.1000.-"_s, u"2.1"_s, u""_s, kTooLarge},
        {u"5|.200.-"_s, u"2.1"_s, u""_s, kTooLarge},
        {u"5|.1|"_s, u"2.1"_s, u""_s, kNoDot},
        {u"5|1-2-"_s, u"4.1"_s, u""_s, kTooMany.arg(2)},
        {u"5 3|"_s, u"2.1"_s, u"Q1 7=5 3"_s, u"EXEDLL"_s, u"/5 3/|"_s},
        {u"5-3|"_s, u"2.1"_s, u"Q1 7=5-3"_s, u"EXEDLL"_s, u"/5-3/|"_s},
        {u"5|1-|1/-0.5/"_s, u"4.1"_s, u""_s, kOutside},
        {u"5|1-|1/"_s + u"1"_s.repeated(308) + u'/', u"4.1"_s, u""_s, kFarOutside},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.text.toStdString());
        SurveyBuilder builder = Typed();
        Reader reader(builder.Get());
        EXPECT_EQ(reader.Parse(one.text), one.message);
        EXPECT_EQ(reader.Stop(), one.stop);
        EXPECT_EQ(reader.Stored(), one.stored);
        const QString shown = QString(one.shown.isEmpty() ? one.text : one.shown).replace(u"|"_s, u"\r\n"_s);
        EXPECT_EQ(reader.reading.Text, shown);
        EXPECT_EQ(reader.box.Text(), shown);
        EXPECT_EQ(reader.ui.transcript, QStringList());
    }
}

TEST(SheetParser, FailsInTheMiddleWithoutStoring) {
    SurveyBuilder builder = Typed();
    builder.Get().Samples.SetEssay(0, 0, u"古い"_s);
    Reader reader(builder.Get());
    EXPECT_EQ(ErrorOf([&] { reader.Parse(u"1|1-|--|2-|11"_s); }), kErrorSubscript);
    EXPECT_EQ(ErrorOf([&] { reader.Parse(u"1|.9e9.-"_s); }), kErrorOverflow);
    EXPECT_EQ(reader.Stored(), QString());
    EXPECT_EQ(reader.Parse(u"7/新しい/-|"_s, -1, false), QString());
    EXPECT_EQ(builder.Get().Samples.Essay(0, 0), u"古い"_s);
}

TEST(SheetParser, PutsTheCaretWhereTheErrorIs) {
    SurveyBuilder builder = Typed();
    Reader reader(builder.Get());
    const std::pair<QString, int> errors[] = {{u"5|12/x"_s, 6},        {u"5|1[趣味"_s, 5}, {u"5|1.1000."_s, 5},
                                              {u"5|.200."_s, 4},       {u"5|1.2"_s, 5},    {u"5|1-2-"_s, 6},
                                              {u"5|1-|1/200/A|"_s, 18}};
    for (const auto& [text, place] : errors) {
        EXPECT_FALSE(reader.Parse(text, 2).isEmpty());
        EXPECT_EQ(reader.reading.Caret, place) << text.toStdString();
    }
    // Which question the caret is in; in the first slot it is in none, and so in the one that comes next.
    for (const auto& [caret, question] : {std::pair{0, 5}, {1, 5}, {4, 1}, {5, 1}, {8, 2}, {9, 2}, {99, 5}}) {
        EXPECT_EQ(reader.Parse(u"1|2-|2-AB|2"_s, caret), QString());
        EXPECT_EQ(reader.reading.CaretQ, question) << caret;
        EXPECT_EQ(reader.reading.Caret, caret);
    }
}

TEST(SheetParser, SaysWhatTheChecksChanged) {
    SurveyBuilder builder = Typed();
    Reader reader(builder.Get());
    reader.Parse(u".99.-|1.77.1-|2"_s);
    EXPECT_EQ(
        reader.ui.transcript,
        (QStringList{u"message 48 クイブラ: Q1 年齢の回答は存在しない選択肢(99)を回答してます -> Ok"_s,
                     u"message 48 クイブラ: Q2 趣味の回答は存在しない選択肢(77)を回答してます -> Ok"_s,
                     u"message 48 クイブラ: Q2 趣味の複数回答に重複(1)がありました。取り除いておきます -> Ok"_s}));
    EXPECT_EQ(reader.Stored(), u"Q1 7, Q2 1 4, Q3 2"_s);
    EXPECT_EQ(reader.box.marked, u"12+1"_s);
    EXPECT_EQ(reader.box.Text(), u".99.-\r\n1.77.1-\r\n2"_s);
}

TEST(SheetParser, LooksCodesUp) {
    QTemporaryDir folder;
    QFile table(folder.filePath(u"市.txt"_s));
    ASSERT_TRUE(table.open(QIODevice::WriteOnly));
    table.write(EncodeCodePage(u"'コード表\r\n\r\n01,札幌\r\n2,青森\n,3,\r\nx,4, 盛岡 \r\n5"_s));
    table.close();
    SurveyBuilder builder;
    builder.Question(u"市"_s, u""_s, 1, {u"a"_s, u"b"_s});
    builder.Status(0, 1, {kEssay, kCode});
    builder.Lines();
    builder.Sample({});
    Survey& survey = builder.Get();
    survey.Choices(1, 0).CodeText = u"市.txt"_s;
    survey.FileName = folder.filePath(u"a.qb"_s);
    Reader reader(survey);
    const std::pair<QString, QString> cases[] = {
        {u"1"_s, u"?:1"_s},       {u"1:"_s, u"01:札幌"_s},      {u"1:東京"_s, u"01:札幌"_s}, {u"?:青森"_s, u"2:青森"_s},
        {u"青森"_s, u"2:青森"_s}, {u"2"_s, u"2:青森"_s},        {u"x:"_s, u"x:4"_s},         {u":4"_s, u"x:4"_s},
        {u":"_s, u"3:"_s},        {u" 盛岡 :"_s, u" 盛岡 :5"_s}};
    for (const auto& [typed, stored] : cases) {
        EXPECT_EQ(reader.Parse(u"1/"_s + typed + u'/'), QString());
        EXPECT_EQ(reader.Stored(), u"Q1 1="_s + stored) << typed.toStdString();
        EXPECT_EQ(reader.ui.TakeTranscript(), QStringList());
    }
    // A code without a name at the end, a folder, no file at all: said each time, and the text stays as typed.
    ASSERT_TRUE(table.open(QIODevice::Append));
    table.write(",6");
    table.close();
    for (const auto& [name, error] : {std::pair{u"市.txt"_s, u"ファイルにこれ以上データがありません。"_s},
                                      {u""_s, u"パス名が無効です。"_s},
                                      {u"村.txt"_s, u"ファイルが見つかりません。"_s}}) {
        survey.Choices(1, 0).CodeText = name;
        EXPECT_EQ(reader.Parse(u"1/9:九/"_s), QString());
        EXPECT_EQ(reader.Stored(), u"Q1 1=9:?"_s);
        EXPECT_EQ(reader.ui.TakeTranscript(), QStringList{u"message 0 クイブラ: "_s + error + u" : \\r\\n"_s +
                                                          folder.path() + u'/' + name + u" -> Ok"_s});
    }
    survey.Choices(1, 0).CodeText = u"市.txt"_s;
    reader.Parse(u"1/2:/"_s);
    EXPECT_EQ(reader.Stored(), u"Q1 1=2:青森"_s);
}

// Sheets of random surveys give the samples that they were made from. Texts with "*/" or a "*" in front do not survive.
TEST(SheetParser, ReadsItsOwnSheetsBack) {
    Random random(20260);
    for (int round = 0; round < 60; ++round) {
        Survey survey = MakeRandomSurvey(random, 30, 4);
        MakeTypable(random, survey);
        const qint32 count = survey.SampleCount();
        for (qint32 dno = 0; dno < count; ++dno) {
            Survey copy = survey;
            for (const bool names : {false, true}) {
                SheetLook look;
                look.names = names;
                look.marks = !names;
                const SheetText sheet = BuildAnswerSheet(survey, dno, survey.QuestionCount, 0, look, -1, QString());
                copy.Samples.Erase(0);
                copy.Samples.Insert(0, 1);
                Reader reader(copy);
                ASSERT_EQ(reader.Parse(sheet.Text), QString()) << sheet.Text.toStdString();
                ASSERT_EQ(reader.ui.transcript, QStringList());
                ASSERT_EQ(BuildAnswerSheet(copy, 0, copy.QuestionCount, 0, look, -1, QString()).Text, sheet.Text);
                ASSERT_EQ(std::memcmp(copy.Samples.Packed(0), survey.Samples.Packed(dno),
                                      static_cast<size_t>(survey.SampleBytes)),
                          0);
            }
        }
    }
}

// Anything may be typed: it is stored, refused or a run-time error, and what is stored obeys the rules.
TEST(SheetParser, TakesAnyText) {
    const QStringList pieces = {u"1"_s, u"2"_s, u"a"_s, u"-"_s, u"."_s, u".12."_s, u"/"_s, u"/x/"_s, u"/*"_s, u"*/"_s,
                                u"["_s, u"]"_s, u"¶"_s, u"|"_s, u"|"_s, u" "_s,    u"▼"_s, u"字"_s,  u":"_s,  u"0"_s};
    Random random(7);
    for (int round = 0; round < 40; ++round) {
        Survey survey = MakeRandomSurvey(random, 8, 1);
        MakeTypable(random, survey, true);
        survey.CorrectFlags = static_cast<qint16>(Pick(random, 0, 15));
        for (int turn = 0; turn < 200; ++turn) {
            QString text;
            for (int i = Pick(random, 0, 30); i > 0; --i)
                text += pieces[Pick(random, 0, static_cast<int>(pieces.size()) - 1)];
            Reader reader(survey);
            try {
                reader.Parse(text, Pick(random, 0, 40));
            } catch (const RuntimeError&) {
                continue;
            }
            ASSERT_LE(reader.reading.StopQ, survey.QuestionCount);
            WorkingSample working(survey);
            GetAllAnswersEssay(survey, 0, working.AnswerCount.data(), working.SlotCno.data(), working.SlotEssay.data());
            ASSERT_FALSE(CorrectAnswers(survey, working, true, nullptr)) << text.toStdString();
        }
    }
}

}  // namespace
