#include "conditions/limit_lists.h"

#include <gtest/gtest.h>

#include "support/error_of.h"

using namespace quibra;

namespace {

constexpr int kColumns = 3;

using Table = BoundedTable<LimitLine, 16, kColumns>;

// Column k holds `counts[k]` lines, behind a header whose mask is bit k and whose `a` is a depth.
Table TableOf(std::array<int, kColumns> counts) {
    Table table;
    for (int k = 0; k < kColumns; ++k) {
        table(0, k) = {static_cast<qint16>(k + 1), static_cast<qint16>(1 << k)};
        for (int i = 1; i <= counts[k]; ++i)
            table(i, k) = {3, static_cast<qint16>(k * 128 + i)};
    }
    return table;
}

}  // namespace

TEST(LimitLists, JoiningAddsMasksAndCopiesLinesUpToTheClosingOne) {
    const Table table = TableOf({2, 15, 0});
    LimitList list(LimitList::kMaxBound);
    for (int i = 1; i <= list.Bound(); ++i)
        list[i] = {static_cast<qint16>(i), static_cast<qint16>(-i)};
    list[0] = {7, 7};
    int pos = 0;
    ClearLimit(list, pos);
    EXPECT_EQ(pos, 1);
    EXPECT_EQ(list.LineCount(), 0);
    EXPECT_TRUE((list[0] == LimitLine{7, 0}));
    EXPECT_TRUE((list[48] == LimitLine{0, -48})) << "b of a cleared line stays";

    for (int k = 0; k < kColumns; ++k)
        AppendLimit(list, pos, table.Column(k));
    EXPECT_EQ(pos, 18);
    EXPECT_TRUE((list[0] == LimitLine{7, 7})) << "the depth of a column is no part of the list";
    EXPECT_EQ(list.LineCount(), 17);
    EXPECT_TRUE(list[2] == table(2, 0));
    EXPECT_TRUE(list[3] == table(1, 1));
    EXPECT_TRUE(list[17] == table(15, 1));

    Table target;
    ClearLimitColumn(target.Column(1), pos);
    AppendLimitColumn(target.Column(1), pos, table.Column(0));
    AppendLimitColumn(target.Column(1), pos, table.Column(2));
    EXPECT_EQ(pos, 3);
    EXPECT_TRUE((target(0, 1) == LimitLine{0, 5}));
    EXPECT_TRUE(target(2, 1) == table(2, 0));
    EXPECT_EQ(target(3, 1).a, 0);
    EXPECT_EQ(target(1, 2).a, 0);
}

TEST(LimitLists, JoiningBeyondTheBoundIsASubscriptError) {
    const Table table = TableOf({8, 7, 1});
    LimitList list;
    Table target;
    int pos = 1;
    AppendLimit(list, pos, table.Column(0));
    AppendLimit(list, pos, table.Column(1));
    EXPECT_EQ(list.LineCount(), 15);
    EXPECT_EQ(ErrorOf([&] { AppendLimit(list, pos, table.Column(2)); }), kErrorSubscript);
    pos = 16;
    EXPECT_EQ(ErrorOf([&] { AppendLimitColumn(target.Column(0), pos, table.Column(2)); }), kErrorSubscript);
    EXPECT_EQ(target(1, 1).a, 0) << "the next column is untouched";
    EXPECT_EQ(ErrorOf([&] { LimitList tooLong(49); }), kErrorSubscript);
}
