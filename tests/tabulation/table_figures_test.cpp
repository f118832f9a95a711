#include "tabulation/table_figures.h"

#include <gtest/gtest.h>

#include "core/runtime_error.h"
#include "support/qt_printers.h"
#include "tabulation/result_grid.h"

using namespace Qt::StringLiterals;

namespace quibra {

TEST(TableFigures, SortingKeepsTheExchangeSortsTreatmentOfEqualFigures) {
    EXPECT_EQ(RowOrder({9, 1, 2}, false), (std::vector<int>{1, 2, 0}));
    // In the fourth, the swap of 1 and 3 carries 1 behind its equal 2.
    const std::pair<std::vector<qint32>, std::vector<int>> cases[] = {{{9, 1, 2}, {0, 2, 1}},
                                                                      {{4, 4, 4, 4}, {1, 2, 3, 0}},
                                                                      {{6, 2, 2, 9, 2}, {3, 0, 1, 4, 2}},
                                                                      {{0, 5, 5, 7}, {3, 2, 1, 0}},
                                                                      {{}, {}}};
    for (const auto& [figures, order] : cases)
        EXPECT_EQ(RowOrder(figures, true), order);
}

TEST(TableFigures, PercentagesAreRoundedIn32BitFloats) {
    const std::tuple<qint32, std::vector<qint32>, QString, QString> cases[] = {
        {80, {7}, u"8.8%"_s, u"8.8%"_s},
        {3, {1, 1, 1}, u"33.3%"_s, u"99.9%"_s},
        {6, {4, 4, 4}, u"66.7%"_s, u"200.1%"_s},
        {0, {0}, u"0.0%"_s, u"0.0%"_s},
        {2000000000, {1999999999}, u"100.0%"_s, u"100.0%"_s},
    };
    for (const auto& [persons, figures, share, sum] : cases) {
        PercentColumn column(persons);
        for (const qint32 figure : figures)
            EXPECT_EQ(PercentText(column.Add(figure)), share);
        EXPECT_EQ(PercentText(column.Sum()), sum);
    }
}

TEST(ResultGrid, KeepsWhatStaysInsideAndRefusesWhatLiesOutside) {
    ResultGrid grid;
    grid.SetColumns(3);
    grid.SetRows(2);
    grid.SetText(2, 1, u"右下"_s);
    grid.AddRow(u"a\t\tc\td"_s);
    EXPECT_EQ(grid.Dump(0, 1, 2, 2), u"\t\t右下\ra\t\tc"_s);
    grid.SetColumns(2);
    grid.SetColumns(3);
    grid.SetRows(4);
    EXPECT_EQ(grid.Dump(0, 1, 2, 3), u"\t\t\ra\t\t\r\t\t"_s);
    for (const auto& [column, row] : {std::pair{3, 1}, {-1, 1}, {0, 4}, {0, -1}}) {
        EXPECT_THROW(grid.SetText(column, row, u"x"_s), RuntimeError);
        EXPECT_THROW(grid.Text(column, row), RuntimeError);
    }
    EXPECT_THROW(grid.SetColumnWidth(3, 1), RuntimeError);
    EXPECT_THROW(grid.SetRowHeight(4, 1), RuntimeError);
    grid.SetRows(0);
    EXPECT_EQ(grid.Rows(), 1);
}

TEST(ResultGrid, ClipTextEndsRowsWithCrLfAndLosesALastRowOfOneCharacter) {
    const std::pair<QString, QString> cases[] = {{u"a\tb\rc\td"_s, u"a\tb\r\nc\td\r\n"_s},
                                                 {u"ab"_s, u"ab\r\n"_s},
                                                 {u"a"_s, QString()},
                                                 {u"\r\rab"_s, u"\r\n\r\nab\r\n"_s},
                                                 {u"ab\rc"_s, u"ab\r\n"_s},
                                                 {u"ab\r"_s, u"ab\r\n"_s},
                                                 {QString(), QString()}};
    for (const auto& [dump, text] : cases)
        EXPECT_EQ(ClipText(dump), text);
}

}  // namespace quibra
