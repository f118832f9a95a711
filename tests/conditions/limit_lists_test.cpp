#include "conditions/limit_lists.h"

#include <gtest/gtest.h>

#include "support/error_of.h"

using namespace quibra;

namespace {

using Column = std::array<LimitLine, 16>;

// `count` lines whose `b` counts on from `first`, behind a header whose `a` is a depth.
Column ColumnOf(int count, qint16 mask, qint16 first) {
    Column column{{{1, mask}}};
    for (int i = 1; i <= count; ++i)
        column[static_cast<size_t>(i)] = {3, first++};
    return column;
}

}  // namespace

TEST(LimitLists, JoiningAddsMasksAndCopiesLinesUpToTheClosingOne) {
    LimitList list(LimitList::kMaxBound);
    for (int i = 0; i <= list.Bound(); ++i)
        list[i] = {7, static_cast<qint16>(-i)};
    int pos = 0;
    ClearLimit(list, pos);
    EXPECT_EQ(pos, 1);
    EXPECT_EQ(list.LineCount(), 0);
    EXPECT_TRUE((list[48] == LimitLine{0, -48})) << "b of a cleared line stays";
    Column target = ColumnOf(15, 8, 0);
    ClearLimitColumn(target, pos);
    for (const auto& [count, mask, first] : {std::tuple{2, 1, 10}, {15, 2, 20}, {0, 4, 30}}) {
        const Column column = ColumnOf(count, static_cast<qint16>(mask), static_cast<qint16>(first));
        AppendLimit(list, pos, column);
        if (count == 15) continue;
        int columnPos = count == 2 ? 1 : 3;
        AppendLimitColumn(target, columnPos, column);
        EXPECT_EQ(columnPos, 3);
    }
    EXPECT_EQ(pos, 18);
    EXPECT_EQ(list.LineCount(), 17);
    EXPECT_TRUE((list[0] == LimitLine{7, 7})) << "the depth of a column is no part of the list";
    EXPECT_TRUE(list[2].b == 11 && list[3].b == 20 && list[17].b == 34);
    EXPECT_TRUE((target[0] == LimitLine{1, 5} && target[2] == LimitLine{3, 11} && target[3] == LimitLine{0, 2}));
}

TEST(LimitLists, JoiningBeyondTheBoundIsASubscriptError) {
    const Column full = ColumnOf(15, 0, 0);
    Column target = full;
    LimitList list;
    int pos = 1;
    AppendLimit(list, pos, full);
    EXPECT_EQ(list.LineCount(), 15);
    EXPECT_EQ(ErrorOf([&] { AppendLimit(list, pos, full); }), kErrorSubscript);
    EXPECT_EQ(ErrorOf([&] { AppendLimitColumn(target, pos, full); }), kErrorSubscript);
    EXPECT_EQ(ErrorOf([&] { LimitList tooLong(49); }), kErrorSubscript);
}
