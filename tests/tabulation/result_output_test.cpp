#include <gtest/gtest.h>

#include <cctype>
#include <random>

#include "tabulation/html_result.h"
#include "tabulation/sheet_rig.h"

using namespace Qt::StringLiterals;

namespace quibra {

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

// Whatever is read can be totalled: damaged options are refused, or give some table.
TEST(TotalOptionJson, DamagedOptionsAreRefusedOrTotalled) {
    SurveyBuilder builder = FruitSurvey();
    std::mt19937 random(7);
    const auto pick = [&](qsizetype below) { return std::uniform_int_distribution<qsizetype>(0, below - 1)(random); };
    const QByteArray sources[] = {
        R"({"Nname":"果物と店","FromQno":0,"ToQno":2,)"
        R"("Limits":[{"Mask":0,"Lines":[[4,2]]},{"Mask":8,"Lines":[]},{"Lines":[[3,129]]}]})",
        R"({"TotalKind":2,"FromQno":2,"Rank":1,"CrossQno":5,"CrossMode":1,"Limits":[{"Lines":[[4,130]]},{}]})",
        R"({"FromQno":2,"Rank":1,"Rough":true,"Limits":[{},{},{"Lines":[[3,130],[1,128]]}],"LimitCount":2})"};
    int read = 0;
    for (int round = 0; round < 4000; ++round) {
        QByteArray json = sources[pick(3)];
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
            EXPECT_FALSE(WriteHtml(builder.Get(), rig.sheet.result, rig.sheet.view, rig.sheet.grid).isEmpty());
        } catch (const RuntimeError&) {
        }
    }
    EXPECT_GT(read, 300);
    EXPECT_LT(read, 3700);
}

}  // namespace quibra
