#include "ui/flex_grid.h"

#include <gtest/gtest.h>

#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// A grid of `rows` and `columns`, column widths 1500 twips, texts where a test sets them.
class FlexGridTest : public testing::Test {
  protected:
    void Show(int rows, int columns) {
        model.setRowCount(rows);
        model.setColumnCount(columns);
        for (int column = 0; column < columns; ++column)
            model.setHeaderData(column, Qt::Horizontal, 1500, kTwipsRole);
        grid.resize(500, 300);
        grid.setModel(&model);
        grid.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&grid));
    }
    void SetText(int row, int column, const QString& text) { model.setData(model.index(row, column), text); }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&grid, key, modifiers); }
    int BaseHeight() { return grid.verticalHeader()->defaultSectionSize(); }

    QStandardItemModel model;
    FlexGrid grid;
};

const QString kLong = u"バスの本数が少なくて困っています。"_s;

}  // namespace

TEST_F(FlexGridTest, KeysMoveAndSelectLikeASpreadsheet) {
    Show(50, 6);
    for (int row = 1; row < 10; ++row)
        for (int column = 0; column < 4; ++column)
            if (row != 5) SetText(row, column, u"a"_s);
    constexpr auto kCtrl = Qt::ControlModifier;
    constexpr auto kShift = Qt::ShiftModifier;
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        CellRange selection;
        int row, column;  // the current cell
    } steps[] = {
        {Qt::Key_Down, {}, {0, 2, 0, 2}, 2, 0},
        {Qt::Key_Right, {}, {1, 2, 1, 2}, 2, 1},
        {Qt::Key_Right, kShift, {1, 2, 2, 2}, 2, 2},
        {Qt::Key_Down, kShift, {1, 2, 2, 3}, 3, 2},
        {Qt::Key_Up, kShift | kCtrl, {1, 1, 2, 2}, 1, 2},
        {Qt::Key_Up, {}, {2, 1, 2, 1}, 1, 2},
        {Qt::Key_Down, kCtrl, {2, 4, 2, 4}, 4, 2},  // the end of a run
        {Qt::Key_Down, kCtrl, {2, 6, 2, 6}, 6, 2},  // over the gap
        {Qt::Key_Right, kCtrl, {3, 6, 3, 6}, 6, 3},
        {Qt::Key_Right, kCtrl, {5, 6, 5, 6}, 6, 5},
        {Qt::Key_Home, {}, {0, 6, 0, 6}, 6, 0},
        {Qt::Key_Left, {}, {0, 6, 0, 6}, 6, 0},
        {Qt::Key_End, {}, {5, 6, 5, 6}, 6, 5},
        {Qt::Key_Home, kCtrl | kShift, {0, 1, 5, 6}, 1, 0},
        {Qt::Key_End, kCtrl, {5, 49, 5, 49}, 49, 5},
        {Qt::Key_PageDown, {}, {5, 49, 5, 49}, 49, 5},
        {Qt::Key_Home, kCtrl, {0, 1, 0, 1}, 1, 0},
        {Qt::Key_PageUp, kShift, {0, 1, 0, 1}, 1, 0},
        {Qt::Key_A, kCtrl, {0, 1, 5, 49}, 1, 0},
    };
    grid.Select({0, 0, 0, 0});
    EXPECT_EQ(grid.Selection(), (CellRange{0, 1, 0, 1})) << "the fixed row is out of reach";
    for (const auto& step : steps) {
        Press(step.key, step.modifiers);
        SCOPED_TRACE(&step - steps);
        EXPECT_EQ(grid.Selection(), step.selection);
        EXPECT_EQ(std::pair(grid.currentIndex().row(), grid.currentIndex().column()), std::pair(step.row, step.column));
        EXPECT_TRUE(grid.viewport()->rect().contains(grid.visualRect(grid.currentIndex()).topLeft()));
    }
    Press(Qt::Key_PageDown);
    EXPECT_GT(grid.currentIndex().row(), 8);
    grid.Select({4, 30, 99, 99});
    EXPECT_EQ(grid.Selection(), (CellRange{4, 30, 5, 49}));
    EXPECT_EQ(grid.currentIndex(), model.index(30, 4));
}

TEST_F(FlexGridTest, MouseAndKeysAskForCopiesAndMenus) {
    Show(9, 3);
    QSignalSpy copies(&grid, &FlexGrid::CopyRequested);
    QSignalSpy menus(&grid, &FlexGrid::MenuRequested);
    QSignalSpy moves(&grid, &FlexGrid::CurrentCellChanged);
    const QPoint cell = grid.visualRect(model.index(3, 1)).center();
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, cell);
    EXPECT_EQ(grid.currentIndex(), model.index(3, 1));
    EXPECT_EQ(moves.size(), 1);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copies.size(), 1);
    EXPECT_EQ(menus.size(), 0);
    QTest::mouseClick(grid.viewport(), Qt::RightButton, {}, cell);
    EXPECT_EQ(menus.takeFirst()[0].toPoint(), grid.viewport()->mapToGlobal(cell));
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(&grid, &key);
    EXPECT_EQ(menus.size(), 1);
}

TEST_F(FlexGridTest, ColumnsKeepTheWidthsTheyAreDraggedToAndRowsFollow) {
    Show(9, 3);
    SetText(2, 0, kLong);
    SetText(2, 1, u"a"_s);
    SetText(3, 0, kLong);  // flows over the empty cells behind it
    model.setHeaderData(4, Qt::Vertical, 900, kTwipsRole);
    grid.RefreshSizes(true);
    EXPECT_EQ(grid.columnWidth(0), 100);
    EXPECT_GT(grid.rowHeight(2), 2 * grid.fontMetrics().lineSpacing());
    EXPECT_EQ(grid.rowHeight(3), BaseHeight());
    EXPECT_EQ(grid.rowHeight(4), 60);
    EXPECT_TRUE(grid.isRowHidden(0));
    model.setHeaderData(1, Qt::Horizontal, 150, kTwipsRole);
    model.setHeaderData(1, Qt::Horizontal, true, kFigureRole);
    grid.RefreshSizes(true);
    EXPECT_GT(grid.columnWidth(1), grid.fontMetrics().horizontalAdvance(u"100.0%"_s)) << "figures are not cut off";
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, kTwipsRole).toInt(), 150);
    QWidget* strip = grid.horizontalHeader()->viewport();
    QTest::mousePress(strip, Qt::LeftButton, {}, QPoint(99, 3));
    QTest::mouseMove(strip, QPoint(399, 3));
    QTest::mouseRelease(strip, Qt::LeftButton, {}, QPoint(399, 3));
    EXPECT_EQ(model.headerData(0, Qt::Horizontal, kTwipsRole).toInt(), 400 * 15);
    QTRY_COMPARE(grid.rowHeight(2), BaseHeight());

    // Column 0 stays while the others scroll, as long as it leaves them room.
    QTest::mousePress(strip, Qt::LeftButton, {}, QPoint(399, 3));
    QTest::mouseMove(strip, QPoint(149, 3));
    QTest::mouseRelease(strip, Qt::LeftButton, {}, QPoint(149, 3));
    for (int column = 1; column < 3; ++column)
        grid.setColumnWidth(column, 300);
    grid.horizontalScrollBar()->setValue(120);
    EXPECT_EQ(grid.visualRect(model.index(2, 0)).left(), 0);
    EXPECT_EQ(grid.indexAt(QPoint(10, grid.visualRect(model.index(2, 0)).center().y())), model.index(2, 0));
    grid.Select({1, 2, 1, 2});
    grid.scrollTo(model.index(2, 1));
    EXPECT_GE(grid.visualRect(model.index(2, 1)).left(), grid.columnWidth(0)) << "not below the column that stays";
}

// Of a long list what is in sight has its height at once, the rest soon; what a person looks at does not move by that.
TEST_F(FlexGridTest, LongListsGrowWhileTheyAreRead) {
    constexpr int kRows = 10'000;
    model.setRowCount(kRows);
    model.setColumnCount(2);
    model.blockSignals(true);
    for (int row = 1; row < kRows; ++row)
        for (int column = 0; column < 2; ++column)
            SetText(row, column, kLong.repeated(1 + row % 3));
    model.blockSignals(false);
    Show(kRows, 2);
    EXPECT_GT(grid.rowHeight(1), 2 * BaseHeight());
    EXPECT_EQ(grid.rowHeight(kRows / 2), BaseHeight()) << "measured at once: the list is too short for this test";
    Press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_GT(grid.rowHeight(kRows - 1), 2 * BaseHeight());
    EXPECT_TRUE(grid.viewport()->rect().contains(grid.visualRect(grid.currentIndex())));
    grid.verticalScrollBar()->setValue(grid.verticalScrollBar()->maximum() / 2);
    const int top = grid.rowAt(0);
    const int edge = grid.rowViewportPosition(top);
    const auto measured = [&] {
        for (int row = 1; row < kRows; ++row)
            if (grid.rowHeight(row) <= 2 * BaseHeight()) return false;
        return true;
    };
    EXPECT_TRUE(QTest::qWaitFor(measured, 60'000));
    EXPECT_EQ(std::pair(grid.rowAt(0), grid.rowViewportPosition(top)), std::pair(top, edge));
    grid.RefreshSizes(false);
    EXPECT_EQ(grid.rowHeight(1), BaseHeight());
}

TEST_F(FlexGridTest, ShowsTheLargestTable) {
    Show(2000, 512);
    SetText(1999, 511, u"end"_s);
    Press(Qt::Key_Down, Qt::ControlModifier);
    Press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(grid.CurrentText(), u"end"_s);
    EXPECT_TRUE(grid.viewport()->rect().contains(grid.visualRect(grid.currentIndex())));
    EXPECT_EQ(grid.visualRect(model.index(1999, 0)).left(), 0);
}

}  // namespace quibra
