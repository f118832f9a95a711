#include <gtest/gtest.h>

#include <QPainter>
#include <QXmlStreamReader>
#include <cmath>

#include "ui/chart/chart_axis.h"
#include "ui/chart/chart_files.h"
#include "ui/chart/chart_plot.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QFont kFont(u"IPAexGothic"_s, 10);

// Values 10, 20, ... times the factor, another one in each row and for each label.
ChartTable TableOf(int labels, int rows, double factor = 1) {
    ChartTable table;
    table.Title = u"お住まいの町に満足していますか"_s;
    table.IsPercent = true;
    for (int i = 0; i < labels; ++i)
        table.Labels << u"選択肢その%1"_s.arg(i + 1);
    for (int row = 0; row < rows; ++row) {
        ChartTable::Row values{u"条件の%1"_s.arg(row + 1), {}};
        for (int i = 0; i < labels; ++i)
            values.Values.push_back(factor * (10 + 12 * ((i + 2 * row) % 7) + row));
        table.Rows.push_back(values);
    }
    return table;
}

// The texts of a picture, in the order in which they are drawn.
QStringList TextsOf(const QByteArray& svg) {
    QXmlStreamReader reader(svg);
    QStringList texts;
    while (!reader.atEnd())
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == u"text")
            texts << reader.readElementText();
    EXPECT_FALSE(reader.hasError()) << qUtf8Printable(reader.errorString());
    return texts;
}

std::vector<ChartStyle> EveryStyle() {
    std::vector<ChartStyle> styles;
    for (int kind = 0; kind <= static_cast<int>(ChartKind::Step3d); ++kind)
        for (const bool stacked : {false, true})
            styles.push_back({static_cast<ChartKind>(kind), stacked});
    return styles;
}

int Pixels(const QImage& image, const QColor& color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == color;
    return count;
}

}  // namespace

TEST(ChartAxis, EndsAtARoundNumber) {
    struct Case {
        double highest;
        bool percent;
        int most;
        double step;
        int steps;
        const char16_t* last;
    };
    const Case cases[] = {
        {60, true, 8, 10, 6, u"60%"},
        {100.0000001, true, 5, 20, 5, u"100%"},
        {0.42, true, 5, 0.1, 5, u"0.5%"},
        {0, true, 5, 20, 5, u"100%"},
        {0, false, 5, 1, 1, u"1"},
        {3, false, 8, 1, 3, u"3"},
        {1234567, false, 5, 5e5, 3, u"1,500,000"},
        {101, false, 8, 20, 6, u"120"},
        {7, false, 0, 10, 1, u"10"},
    };
    for (const Case& wanted : cases) {
        const ChartAxis axis = RoundAxis(wanted.highest, wanted.percent, wanted.most);
        EXPECT_DOUBLE_EQ(axis.Step, wanted.step) << wanted.highest;
        EXPECT_EQ(axis.Steps, wanted.steps) << wanted.highest;
        EXPECT_EQ(axis.Text(axis.Steps, wanted.percent).toStdU16String(), wanted.last);
    }
}

TEST(Chart, EveryKindTellsEachLabelAndValue) {
    const ChartTable table = TableOf(4, 2);
    for (const ChartStyle style : EveryStyle()) {
        const QStringList texts = TextsOf(ChartSvg({table, style, kFont, {960, 640}}));
        const QString all = texts.join(QString());  // a label may have been broken into lines
        EXPECT_TRUE(texts.contains(table.Title));
        for (const QString& label : table.Labels)
            EXPECT_TRUE(all.contains(label)) << int(style.Kind) << style.Stacked << qUtf8Printable(label);
        for (const ChartTable::Row& row : table.Rows) {
            EXPECT_TRUE(all.contains(row.Name)) << int(style.Kind) << style.Stacked;
            for (const double value : row.Values)
                EXPECT_TRUE(texts.contains(ChartValueText(value, true)))
                    << int(style.Kind) << style.Stacked << ' ' << value;
        }
    }
}

TEST(Chart, DrawsWhatHasNoPersonsOneLabelOrTooMuch) {
    ChartTable wild = TableOf(3, 2);
    wild.Rows[0].Values = {std::nan(""), -5};
    wild.Labels[1] = QString(80, u'長') + u"<&\n"_s;
    for (const ChartStyle style : EveryStyle()) {
        for (const QSizeF size : {QSizeF(960, 640), QSizeF(160, 100), QSizeF(3, 3)})
            for (const ChartTable& table : {TableOf(3, 2, 0), TableOf(1, 1), TableOf(255, 30), wild, ChartTable()})
                ChartImage({table, style, kFont, size}, 1);
        const QString none = TextsOf(ChartSvg({TableOf(3, 2, 0), style, kFont, {960, 640}})).join(u' ');
        EXPECT_TRUE(none.contains(style.Kind == ChartKind::Pie ? u"該当者なし"_s : u"100%"_s)) << qUtf8Printable(none);
        const QString many = TextsOf(ChartSvg({TableOf(255, 30), style, kFont, {960, 640}})).join(QString());
        EXPECT_TRUE(many.contains(style.Stacked || style.Kind == ChartKind::Pie ? u"「ほか」にまとめています"_s
                                                                                : u"ほか18個"_s))
            << int(style.Kind);
    }
    const ChartPlot largest = PlotByLabel(TableOf(7, 1), 12, 3);
    EXPECT_EQ(largest.Categories, QStringList({u"選択肢その5"_s, u"選択肢その6"_s, u"選択肢その7"_s}));
    const ChartPlot merged = PlotByRow(TableOf(7, 1), 3, 12);
    EXPECT_EQ(merged.Series.back().Name, u"ほか5項目"_s);
    EXPECT_DOUBLE_EQ(merged.Below(3, 0), 7 * 10 + 12 * 21);  // nothing is lost
}

TEST(Chart, BarsAreAsHighAsTheirValues) {
    ChartTable table = TableOf(2, 2);
    table.Rows[0].Values = {40, 40};
    table.Rows[1].Values = {10, 10};
    const QImage image = ChartImage({table, {ChartKind::Bar}, kFont, {600, 400}}, 2);
    const double large = Pixels(image, ChartColor(0, false)), small = Pixels(image, ChartColor(1, false));
    EXPECT_NEAR(large / small, 4, 0.4);  // the squares of the legend are there, too
    const QImage solid = ChartImage({table, {ChartKind::Bar3d}, kFont, {600, 400}}, 2);
    EXPECT_GT(Pixels(solid, ChartColor(0, false)), 3 * Pixels(solid, ChartColor(1, false)));
}

TEST(Chart, SolidsHideWhatIsBehindThem) {
    ChartTable table = TableOf(3, 2);
    table.Rows[0].Values = {100, 100, 100};
    table.Rows[1].Values = {10, 10, 10};
    const auto seen = [&](ChartKind kind) {
        const QImage image = ChartImage({table, {kind}, kFont, {600, 400}}, 1);
        return Pixels(image.copy(200, 40, 200, 260), ChartColor(1, false));
    };
    EXPECT_EQ(seen(ChartKind::Area3d), 0);
    EXPECT_EQ(seen(ChartKind::Step3d), 0);
    std::swap(table.Rows[0].Values, table.Rows[1].Values);
    EXPECT_GT(seen(ChartKind::Area3d), 5000);
}

TEST(Chart, ColorsDifferForAGreyPrinterAndForTheColorBlind) {
    // Lightness alone tells them apart: L* of CIE 1976.
    const auto grey = [](const QColor& color) {
        const auto linear = [](float part) { return std::pow(double(part), 2.2); };
        return 116 * std::cbrt(0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
                               0.0722 * linear(color.blueF())) -
               16;
    };
    for (const bool dark : {false, true})
        for (int i = 0; i < kPlainColors; ++i)
            for (int j = i + 1; j < kPlainColors; ++j)
                EXPECT_GT(std::abs(grey(ChartColor(i, dark)) - grey(ChartColor(j, dark))), 6) << dark << i << j;
}

TEST(Chart, GoesToPaperWithItsTexts) {
    const QByteArray pdf = ChartPdf({TableOf(4, 2), {ChartKind::Bar3d, true}, kFont, {960, 640}});
    EXPECT_TRUE(pdf.startsWith("%PDF-"));
    EXPECT_TRUE(pdf.contains("/MediaBox [0 0 720"));
    EXPECT_TRUE(QImage::fromData(ChartPng({TableOf(4, 2), {}, kFont, {96, 48}})).size() == QSize(192, 96));
}

}  // namespace quibra
