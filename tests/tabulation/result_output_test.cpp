#include <gtest/gtest.h>

#include <cctype>
#include <random>

#include "core/code_page.h"
#include "support/survey_bytes.h"
#include "tabulation/html_result.h"
#include "tabulation/sheet_rig.h"
#include "tabulation/total_json.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QString GoldenFolder(const char* name) {
    return QStringLiteral(QUIBRA_SOURCE_DIR "/tests/tabulation/golden/%1/").arg(QString::fromUtf8(name));
}

}  // namespace

// option.json is totalled, and written as expected.html.
TEST(GoldenHtml, EveryByteOfThePage) {
    SurveyBuilder builder = FruitSurvey();
    builder.Get().Title = u"果物 & <B>店</B> é 😀"_s;
    for (const auto& [folder, view, refQno] :
         {std::tuple{"cross-counts-and-percent", TotalView(), std::vector<int>()},
          {"sorted-percent-rough", TotalView{.percent = TotalView::PercentOnly, .sort = true}, {}},
          {"essays-with-references", TotalView(), {0, 1}}}) {
        SheetRig rig(builder.Get());
        rig.sheet.view = view;
        rig.sheet.RefQno = refQno;
        rig.sheet.DoTotal(ReadTotalOptionJson(FileBytes(GoldenFolder(folder) + u"option.json"_s), builder.Get()));
        const QByteArray page = WriteHtml(builder.Get(), rig.sheet);
        const QByteArray expected = FileBytes(GoldenFolder(folder) + u"expected.html"_s);
        EXPECT_EQ(DecodeCodePage(page), DecodeCodePage(expected));
        EXPECT_EQ(page, expected);
    }
}

TEST(TotalJson, TellsWhatTheTableShows) {
    SurveyBuilder builder = FruitSurvey();
    SheetRig rig(builder.Get());
    TotalOption option = TableOf(0, 0, 1);
    SetCrossPreLimit(option, builder.Get());
    option.LimitCount = 1;
    option.Limits(1, 0) = SurveyBuilder::Line(4, 0, 0);
    rig.sheet.view.sort = true;
    rig.sheet.DoTotal(option);
    EXPECT_EQ(QString::fromUtf8(WriteTotalJson(builder.Get(), rig.sheet)).remove(u'\n').remove(u' '),
              u"{\"FromQno\":0,\"ToQno\":0,\"Rank\":1,\"Rough\":false,\"ExLimitText\":\"除く無回答\","
              "\"LimitTexts\":[\"女\"],\"Blocks\":[{\"Qno\":0,\"Label\":\"どちらが好きですか(1位)\",\"Limits\":["
              "{\"Persons\":3,\"PercentSum\":\"100.0%\",\"Rows\":["
              "{\"Cno\":1,\"Text\":\"りんご\",\"Count\":3,\"Percent\":\"100.0%\"},"
              "{\"Cno\":2,\"Text\":\"みかん\",\"Count\":0,\"Percent\":\"0.0%\"},"
              "{\"Cno\":0,\"Text\":\"無回答\",\"Count\":0,\"Percent\":\"0.0%\"}]}]}]}"_s);

    TotalOption essays = TableOf(2, 2);
    essays.TotalKind = kEssayList;
    essays.CrossQno = 1;
    essays.CrossMode = kEssayFilled;
    essays.Limits(1, 0) = SurveyBuilder::Line(3, 0, 1);
    rig.sheet.RefQno = {1};
    rig.sheet.DoTotal(essays);
    EXPECT_EQ(QString::fromUtf8(WriteEssayJson(rig.sheet)).remove(u'\n').remove(u' '),
              u"{\"Rows\":[{\"Dno\":0,\"IDno\":1,\"Cno\":1,\"Choice\":\"回数\",\"Essay\":\"12\",\"Refs\":[\"男\"]},"
              "{\"Dno\":2,\"IDno\":3,\"Cno\":1,\"Choice\":\"回数\",\"Essay\":\"3.5\",\"Refs\":[\"女\"]}],"
              "\"Count\":2,\"Average\":7.75,\"NextDno\":-1}"_s);
}

TEST(TotalOptionJson, EveryFieldComesBack) {
    SurveyBuilder builder = FruitSurvey();
    TotalOption option;
    option.Nname = u"題「\"\\」\n"_s;
    option.TotalKind = kEssayList;
    option.FromQno = 2;
    option.ToQno = 1;
    option.Rank = 2;
    option.ExLimit[0].b = -32768;
    option.ExLimit[1] = {3, -1};
    for (int line = 1; line <= 15; ++line)
        option.Limits(line, 0) = {static_cast<qint16>(line), static_cast<qint16>(-line)};
    option.Limits(0, kMaxLimitColumns).b = 5;
    option.LimitCount = kMaxLimitColumns;
    option.CrossQno = 5;
    option.CrossMode = kEssayNoCondition;
    option.EssayText = u"文"_s;
    option.NumLow = -1e300;
    option.NumHigh = 0.1;
    option.CodeLow = u"a"_s;
    option.CodeHigh = u"b"_s;
    option.Rough = true;
    const QByteArray json = WriteTotalOptionJson(option);
    EXPECT_EQ(WriteTotalOptionJson(ReadTotalOptionJson(json, builder.Get())), json);
    for (const char* key : {"Nname", "ExLimit", "CodeHigh", "0.1", "-32768", "-1e+300", "true"})
        EXPECT_TRUE(json.contains(key)) << key;
    const TotalOption defaults = ReadTotalOptionJson("{\"FromQno\": 1}", builder.Get());
    EXPECT_EQ(defaults.ToQno, 1);
    EXPECT_EQ(WriteTotalOptionJson(defaults), WriteTotalOptionJson(TableOf(1, 1)));
}

TEST(TotalOptionJson, RefusalNamesTheKey) {
    SurveyBuilder builder = FruitSurvey();
    const QByteArray longLines = "[" + QByteArray("[3,1],").repeated(15) + "[3,1]]";
    const QByteArray manyColumns = "[" + QByteArray("{},").repeated(kMaxLimitColumns + 1) + "{}]";
    const std::tuple<QByteArray, int, QString> cases[] = {
        {"{\"FromQno\":3}", kErrorSubscript, u"FromQno"_s},
        {"{\"FromQno\":-1}", kErrorSubscript, u"FromQno"_s},
        {"{\"FromQno\":18446744073709551615}", kErrorSubscript, u"FromQno"_s},
        {"{\"FromQno\":1.5}", kErrorTypeMismatch, u"FromQno"_s},
        {"{\"FromQno\":2,\"ToQno\":1}", kErrorSubscript, u"ToQno"_s},
        {"{\"TotalKind\":3}", kErrorSubscript, u"TotalKind"_s},
        {"{\"Rank\":\"1\"}", kErrorTypeMismatch, u"Rank"_s},
        {"{\"CrossMode\":3}", kErrorSubscript, u"CrossMode"_s},
        {"{\"TotalKind\":2,\"CrossQno\":4}", kErrorSubscript, u"CrossQno"_s},
        {"{\"NumLow\":\"0\"}", kErrorTypeMismatch, u"NumLow"_s},
        {"{\"Rough\":1}", kErrorTypeMismatch, u"Rough"_s},
        {"{\"Nname\":null}", kErrorTypeMismatch, u"Nname"_s},
        {"{\"LimitCount\":2}", kErrorSubscript, u"LimitCount"_s},
        {"{\"LimitCount\":1,\"Limits\":[{},{},{}]}", kErrorSubscript, u"LimitCount"_s},
        {"{\"Limits\":[{}]}", kErrorSubscript, u"Limits"_s},
        {"{\"Limits\":{}}", kErrorTypeMismatch, u"Limits"_s},
        {"{\"Limits\":" + manyColumns + "}", kErrorSubscript, u"Limits"_s},
        {"{\"Limits\":[{},{\"Lines\":[[3]]}]}", kErrorTypeMismatch, u"Limits[1].Lines[0]"_s},
        {"{\"Limits\":[{},{\"Lines\":[[3,32768]]}]}", kErrorSubscript, u"Limits[1].Lines[0]"_s},
        {"{\"ExLimit\":{\"Lines\":" + longLines + "}}", kErrorSubscript, u"ExLimit.Lines"_s},
        {"{\"ExLimit\":{\"Line\":[]}}", kErrorTypeMismatch, u"ExLimit.Line"_s},
        {"{\"FromQNo\":1}", kErrorTypeMismatch, u"FromQNo"_s},
        {"[]", kErrorTypeMismatch, u"TotalOption"_s},
        {"{\"NumLow\":1e999}", kErrorTypeMismatch, u"1e999"_s},
        {"{", kErrorTypeMismatch, QString()},
    };
    for (const auto& [json, number, key] : cases) {
        try {
            ReadTotalOptionJson(json, builder.Get());
            ADD_FAILURE() << json.constData();
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.Number(), number) << json.constData();
            EXPECT_TRUE(error.Text().contains(key)) << json.constData() << ' ' << error.what();
        }
    }
}

// Whatever is read can be totalled: damaged options are refused, or give some table.
TEST(TotalOptionJson, DamagedOptionsAreRefusedOrTotalled) {
    SurveyBuilder builder = FruitSurvey();
    std::mt19937 random(7);
    const auto pick = [&](qsizetype below) { return std::uniform_int_distribution<qsizetype>(0, below - 1)(random); };
    std::vector<QByteArray> sources;
    for (const char* folder : {"cross-counts-and-percent", "sorted-percent-rough", "essays-with-references"})
        sources.push_back(FileBytes(GoldenFolder(folder) + u"option.json"_s));
    int read = 0;
    for (int round = 0; round < 4000; ++round) {
        QByteArray json = sources[static_cast<size_t>(pick(3))];
        // Every other time only figures change, so that many files stay readable.
        const QByteArray letters = round % 2 ? "0123456789" : "0123456789-,:[]{}\"eLQ ";
        for (qsizetype changes = pick(3); changes >= 0; --changes) {
            qsizetype place = pick(json.size());
            while (round % 2 && !std::isdigit(json[place]))
                place = (place + 1) % json.size();
            json[place] = letters[pick(letters.size())];
        }
        try {
            const TotalOption option = ReadTotalOptionJson(json, builder.Get());
            ++read;
            SheetRig rig(builder.Get());
            rig.sheet.DoTotal(option);
            EXPECT_FALSE(WriteHtml(builder.Get(), rig.sheet).isEmpty());
        } catch (const RuntimeError&) {
        }
    }
    EXPECT_GT(read, 300);
    EXPECT_LT(read, 3700);
}

}  // namespace quibra
