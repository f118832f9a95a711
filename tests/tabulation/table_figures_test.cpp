#include "tabulation/table_figures.h"

#include <gtest/gtest.h>

#include "core/runtime_error.h"
#include "support/qt_printers.h"
#include "tabulation/result_grid.h"

using namespace Qt::StringLiterals;

namespace quibra {

TEST(TableFigures, SortingKeepsTheExchangeSortsTreatmentOfEqualFigures) {
    EXPECT_EQ(RowOrder({9, 1, 2}, false), (std::vector<int>{1, 2, 0}));
    EXPECT_EQ(RowOrder({9, 1, 2}, true), (std::vector<int>{0, 2, 1}));
    EXPECT_EQ(RowOrder({4, 4, 4, 4}, true), (std::vector<int>{1, 2, 3, 0}));
    // The swap of 1 and 3 carries 1 behind its equal 2.
    EXPECT_EQ(RowOrder({0, 5, 5, 7}, true), (std::vector<int>{3, 2, 1, 0}));
    EXPECT_EQ(RowOrder({6, 2, 2, 9, 2}, true), (std::vector<int>{3, 0, 1, 4, 2}));
    EXPECT_EQ(RowOrder({}, true), std::vector<int>());
}

TEST(TableFigures, PercentagesAreRoundedIn32BitFloats) {
    PercentColumn eighty(80);
    EXPECT_EQ(PercentText(eighty.Add(7)), u"8.8%"_s);
    PercentColumn thirds(3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(PercentText(thirds.Add(1)), u"33.3%"_s);
    EXPECT_EQ(PercentText(thirds.Sum()), u"99.9%"_s);
    PercentColumn several(6);
    for (const int figure : {4, 4, 4})
        several.Add(figure);
    EXPECT_EQ(PercentText(several.Sum()), u"200.1%"_s);
    PercentColumn nobody(0);
    EXPECT_EQ(PercentText(nobody.Add(0)), u"0.0%"_s);
    EXPECT_EQ(PercentText(nobody.Sum()), u"0.0%"_s);
    PercentColumn billion(2000000000);
    EXPECT_EQ(PercentText(billion.Add(1999999999)), u"100.0%"_s);
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
    EXPECT_EQ(ClipText(u"a\tb\rc\td"_s), u"a\tb\r\nc\td\r\n"_s);
    EXPECT_EQ(ClipText(u"ab"_s), u"ab\r\n"_s);
    EXPECT_EQ(ClipText(u"a"_s), QString());
    EXPECT_EQ(ClipText(u"ab\rc"_s), u"ab\r\n"_s);
    EXPECT_EQ(ClipText(u"ab\r"_s), u"ab\r\n"_s);
    EXPECT_EQ(ClipText(u"\r\rab"_s), u"\r\n\r\nab\r\n"_s);
    EXPECT_EQ(ClipText(QString()), QString());
}

}  // namespace quibra
