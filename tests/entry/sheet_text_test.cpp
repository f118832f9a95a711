#include "entry/sheet_text.h"

#include <gtest/gtest.h>

#include "companion/limit_terms.h"
#include "core/answer_store.h"
#include "support/error_of.h"
#include "support/qt_printers.h"
#include "support/survey_builder.h"

using namespace Qt::StringLiterals;
using namespace quibra;

namespace {

// Five questions on three lines. The fourth is asked of those who gave 1 to the first.
SurveyBuilder Sheets() {
    const QString letters = u"abc"_s;
    SurveyBuilder builder;
    for (const auto& [name, answers] :
         {std::pair{u"年齢"_s, 1}, {u"性別"_s, 1}, {u"職業"_s, 1}, {u"趣味"_s, 3}, {u"額{"_s, 1}})
        builder.Question(name, u""_s, answers, {u"a"_s, u"b"_s, u"c"_s});
    builder.Status(2, 2, {kEssay});
    builder.Status(4, 1, {kEssay, kNumber});
    builder.QuestionLimit(3, {SurveyBuilder::Line(kLimitAnd, 0, 1)});
    builder.Lines({{0, 0}, {2, 0}, {3, 0}, {5, 0}});
    return builder;
}

SheetLook Look(bool names, bool marks) {
    SheetLook look = SheetLookOf(SettingsDefault());
    look.names = names;
    look.marks = marks;
    return look;
}

TEST(SheetText, WritesWhatTheSampleHoldsUpToTheStop) {
    SurveyBuilder builder = Sheets();
    builder.Sample({{3}, {1}, {{2, u"自営/農業"_s}}, {1, 3}, {{1, u"2500"_s}}});
    builder.Sample({{1}, {}, {1}});
    const Survey& survey = builder.Get();
    struct Case {
        qint32 dno;
        int stopQ;
        int stopA;
        bool names;
        bool marks;
        QString text;
    };
    const Case cases[] = {
        {0, 5, 0, false, false, u"3-1-\r\n2/*自営/農業*/-\r\n13-1/2500/-\r\n"_s},
        {0, 5, 0, true, true, u"[年齢]3-[性別]1-¶\r\n[職業]2/*自営/農業*/-¶\r\n[趣味]13-[額{]1/2500/-¶\r\n"_s},
        {0, 3, 1, true, false, u"[年齢]3-[性別]1-\r\n[職業]2/*自営/農業*/-\r\n[趣味]1[趣味] "_s},
        {0, 2, 0, true, false, u"[年齢]3-[性別]1-\r\n[職業] "_s},
        {1, 5, 0, true, false, u"[年齢]1--\r\n[職業]1-\r\n--\r\n"_s},
        {1, 0, 0, true, true, u"[年齢] "_s},
    };
    for (const Case& one : cases)
        EXPECT_EQ(
            BuildAnswerSheet(survey, one.dno, one.stopQ, one.stopA, Look(one.names, one.marks), -1, QString()).Text,
            one.text);
    EXPECT_EQ(BuildAnswerSheet(survey, 1, 1, 0, Look(false, false), -1, u"2-\r\n"_s).Text, u"1-2-\r\n"_s);
    EXPECT_EQ(ErrorOf([&] { BuildAnswerSheet(survey, 0, 6, 0, Look(true, true), -1, QString()); }), kErrorSubscript);
}

TEST(SheetText, RtfComesInItsPieces) {
    SurveyBuilder builder = Sheets();
    builder.Sample({{3}, {1}, {{2, u"a\\é"_s}}, {2}, {{1, u"ｱ}1"_s}}});
    const Survey& survey = builder.Get();
    SheetLook look = Look(true, true);
    const QString head =
        u"{\\rtf1\\ansi{\\fonttbl}\\plain \\f1 {\\colortbl\\red0\\green0\\blue0;\\red0\\green96\\blue0;"
        u"\\red255\\green0\\blue0;\\red191\\green0\\blue191;\\red127\\green127\\blue127;}\\cf0 "_s;
    const QString end = u"\\cf4 \\'81\\'F7\\cf0 \\par "_s;
    const QString first =
        u"\\cf0 \\cf4 [\\'94\\'4E\\'97\\'EE]\\cf0 \\cf0 3\\cf4 -\\cf0 "
        u"\\cf0 \\cf4 [\\'90\\'AB\\'95\\'CA]\\cf0 \\cf0 1\\cf4 -\\cf0 "_s;
    const QString second =
        u"\\cf0 "_s + end + u"\\cf4 [\\'90\\'45\\'8B\\'C6]\\cf0 \\cf0 2\\cf1 /\\f2 a\\'5Cé\\f1 /\\cf0 \\cf4 -\\cf0 "_s;
    const QString third = u"\\cf3 "_s + end + u"\\cf4 [\\'8E\\'EF\\'96\\'A1]\\cf0 \\cf3 2\\cf4 -\\cf0 "_s;
    const QString fourth = u"\\cf0 \\cf4 [\\'8A\\'7A{]\\cf0 \\cf0 1\\cf1 /\\f2 \\'B1}1\\f1 /\\cf0 \\cf4 -\\cf0 "_s;
    const SheetText whole = BuildAnswerSheet(survey, 0, 5, 0, look, 1, u"¥\t"_s);
    EXPECT_EQ(SheetRtf(whole, look), head + first + second + third + fourth + u"\\cf0 "_s + end + u"¥\\'09\\par }"_s);
    EXPECT_EQ(whole.CaretOut, head.size() + first.size());

    look.font = {u"ＭＳ ゴシック"_s, 10.5F, true, true};
    look.font.ForeColor = 0x010203;
    look.colors[1] = -0x0000FF;
    look.marks = false;
    const SheetText stopped = BuildAnswerSheet(survey, 0, 1, 0, look, 1, QString());
    const QString rtf =
        u"{\\rtf1\\ansi{\\fonttbl{\\f1\\fcharset128 \\'82\\'6C\\'82\\'72 \\'83\\'53\\'83\\'56\\'83\\'62\\'83\\'4E;}"
        u"{\\f2\\fcharset128 \\'82\\'6C\\'82\\'72 \\'83\\'53\\'83\\'56\\'83\\'62\\'83\\'4E;}}\\plain \\f1 \\fs21 \\b "
        u"\\i "
        u"{\\colortbl\\red3\\green2\\blue1;\\red0\\green96\\blue0;\\red255\\green0\\blue0;\\red191\\green0\\blue191;"
        u"\\red127\\green127\\blue127;}\\cf0 \\cf0 \\cf4 [\\'94\\'4E\\'97\\'EE]\\cf0 \\cf0 3\\cf4 -\\cf0 \\cf0 "
        u"\\cf4 [\\'90\\'AB\\'95\\'CA]\\cf0  "_s;
    EXPECT_EQ(SheetRtf(stopped, look), rtf + u"\\par }"_s);
    EXPECT_EQ(stopped.CaretOut, rtf.size());
    look.font = {u"Arial"_s, 9};
    EXPECT_TRUE(
        SheetRtf(stopped, look)
            .startsWith(
                u"{\\rtf1\\ansi{\\fonttbl{\\f1 Arial;}{\\f2\\fcharset128 Arial;}}\\plain \\f1 \\fs18 {\\colortbl"_s));
}

TEST(SheetText, ColorsFollowWhatTheyStandFor) {
    SurveyBuilder builder = Sheets();
    builder.Sample({{3}, {1}, {{2, u"農業"_s}}, {2}});
    const SheetText sheet = BuildAnswerSheet(builder.Get(), 0, 4, 0, Look(true, true), -1, u"9"_s);
    QString shown;
    for (const SheetRun& run : SheetRuns(sheet))
        shown += sheet.Text.mid(run.start, run.length) + u'{' + QString::number(static_cast<int>(run.color)) + u'}';
    EXPECT_EQ(
        shown,
        u"[年齢]{4}3{0}-[性別]{4}1{0}-¶{4}\r\n{0}[職業]{4}2{0}/農業/{1}-¶{4}\r\n{0}[趣味]{4}2{3}-[額{]{4} 9{0}"_s);
}

}  // namespace
