#include "core/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "support/error_of.h"

using namespace quibra;
using namespace Qt::StringLiterals;

TEST(Numbers, NumberTextIsTheGeneralFormat) {
    const std::vector<std::pair<double, QString>> cases{
        {-0.0, u"0"_s},           {-12, u"-12"_s},
        {0.1 + 0.2, u"0.3"_s},    {1.0 / 3, u"0.333333333333333"_s},
        {1e15, u"1E+15"_s},       {999999999999999, u"999999999999999"_s},
        {0.0001, u"0.0001"_s},    {-1234567890123456, u"-1.23456789012346E+15"_s},
        {0.00001, u"1E-05"_s},    {0.000012345, u"1.2345E-05"_s},
        {1.5e100, u"1.5E+100"_s}, {5e-324, u"4.94065645841247E-324"_s},
    };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(NumberText(value), text);
}

TEST(Numbers, LeadingNumberReadsAsFarAsANumberGoes) {
    const std::vector<std::pair<QString, double>> cases{
        {u""_s, 0},          {u"abc"_s, 0},
        {u"-"_s, 0},         {u"."_s, 0},
        {u"-.E5"_s, 0},      {u"12人"_s, 12},
        {u"+7"_s, 7},        {u"-3.5kg"_s, -3.5},
        {u".5"_s, 0.5},      {u"5."_s, 5},
        {u"5.e2"_s, 500},    {u"1.2.3"_s, 1.2},
        {u" \t\n 8 9"_s, 8}, {u"\r8"_s, 0},
        {u"\u30008"_s, 0},   {u"１２"_s, 0},
        {u"1E3"_s, 1000},    {u"1d3"_s, 1000},
        {u"1D-3x"_s, 1e-3},  {u"1E"_s, 1},
        {u"1E+"_s, 1},       {u"1E+x"_s, 1},
        {u"2 E3"_s, 2},      {u"&H10"_s, 0},
        {u"0x10"_s, 0},      {u"--1"_s, 0},
        {u"inf"_s, 0},       {u"nan"_s, 0},
        {u"1E-400"_s, 0},    {u"1E-99999999999"_s, 0},
        {u"0E999"_s, 0},     {u"1,234"_s, 1},
        {u"1E308"_s, 1e308}, {u"4.9E-324"_s, 5e-324},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(LeadingNumber(text), value) << text.toStdString();
    EXPECT_EQ(LeadingNumber(QString(400, u'0') + u"7"_s), 7);
    for (const QString& text : {u"1E309"_s, u"-1E99999999999"_s, QString(400, u'9')})
        EXPECT_EQ(ErrorOf([&] { LeadingNumber(text); }), kErrorOverflow) << text.toStdString();
}

TEST(Numbers, FifteenDigitsComeBackFromTheirText) {
    std::mt19937_64 random(15);
    for (int i = 0; i < 20000; ++i) {
        const double value = std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 1900) - 1000);
        const double back = LeadingNumber(NumberText(value));
        ASSERT_LE(std::abs(back - value), value * 5.1e-15) << value;
        ASSERT_EQ(NumberText(back), NumberText(value));
    }
}

TEST(Numbers, RoundingIsHalfToEvenAndChecked) {
    const std::vector<std::pair<double, int>> cases{{0.5, 0},   {1.5, 2},  {2.5, 2},          {-0.5, 0},
                                                    {-1.5, -2}, {2.51, 3}, {32767.49, 32767}, {-32768.5, -32768}};
    for (const auto& [value, rounded] : cases) {
        EXPECT_EQ(RoundToInt16(value), rounded) << value;
        EXPECT_EQ(RoundToInt32(value), rounded) << value;
    }
    EXPECT_EQ(RoundToInt32(2147483647.4), 2147483647);
    EXPECT_EQ(RoundToInt32(-2147483648.5), std::numeric_limits<qint32>::min());
    for (const double value : {32767.5, -32768.51, 1e300, std::nan("")})
        EXPECT_EQ(ErrorOf([&] { RoundToInt16(value); }), kErrorOverflow) << value;
    EXPECT_EQ(ErrorOf([] { RoundToInt32(2147483647.5); }), kErrorOverflow);
    EXPECT_EQ(CheckedInt16(-32768), -32768);
    EXPECT_EQ(ErrorOf([] { CheckedInt16(32768); }), kErrorOverflow);
    EXPECT_EQ(ErrorOf([] { CheckedInt32(qint64{1} << 31); }), kErrorOverflow);
}
