#include "search/lmr_table.h"

#include <cmath>
#include <gtest/gtest.h>

namespace orvelin::test {

namespace {

/// The rule of the table, by the power instead of the logarithm: the entry is the largest n with
/// row ^ ln(column / 2) >= e ^ n, but at least 1.
int reduction(int depth, unsigned int column) {
    if (depth == 0 || column == 0) {
        return 1;
    }
    long double const exponent = std::log(static_cast<long double>(column) / 2.0L);
    long double const power = std::pow(static_cast<long double>(depth), exponent);
    int n = 0;
    while (std::exp(static_cast<long double>(n + 1)) <= power) {
        ++n;
    }
    return n > 1 ? n : 1;
}

}  // namespace

TEST(LmrTable, EveryEntryFollowsTheRule) {
    LmrTable const table;
    for (int depth = 0; depth <= 101; ++depth) {
        for (unsigned int column = 0; column < 256; ++column) {
            ASSERT_EQ(table.value(depth, column), reduction(depth, column))
                << depth << ' ' << column;
        }
    }
}

TEST(LmrTable, HoldsTheKnownEntries) {
    constexpr unsigned int columns[6] = {4, 6, 8, 16, 32, 64};
    constexpr int rows[7] = {2, 3, 4, 8, 16, 32, 64};
    constexpr int entries[7][6] = {{1, 1, 1, 1, 1, 2},  {1, 1, 1, 2, 3, 3}, {1, 1, 1, 2, 3, 4},
                                   {1, 2, 2, 4, 5, 7},  {1, 3, 3, 5, 7, 9}, {2, 3, 4, 7, 9, 12},
                                   {2, 4, 5, 8, 11, 14}};
    LmrTable const table;
    for (int r = 0; r < 7; ++r) {
        for (int c = 0; c < 6; ++c) {
            EXPECT_EQ(table.value(rows[r], columns[c]), entries[r][c])
                << rows[r] << ' ' << columns[c];
        }
    }
}

TEST(LmrTable, SmallestEntryIsOneAndLargestIsTwentyTwo) {
    LmrTable const table;
    for (unsigned int column = 0; column < 256; ++column) {
        EXPECT_EQ(table.value(0, column), 1);
    }
    for (int depth = 0; depth <= 101; ++depth) {
        EXPECT_EQ(table.value(depth, 0), 1);
    }
    EXPECT_EQ(table.value(101, 255), 22);
}

TEST(LmrTable, ShallowDepthsDoNotReduceEarlyMovesFurther) {
    LmrTable const table;
    for (int depth = 1; depth <= 7; ++depth) {
        for (unsigned int column = 0; column <= 5; ++column) {
            EXPECT_EQ(table.value(depth, column), 1) << depth << ' ' << column;
        }
    }
    EXPECT_EQ(table.value(8, 6), 2);
}

TEST(LmrTable, RowTwoTurnsToTwoAtColumnThirtySix) {
    LmrTable const table;
    for (unsigned int column = 0; column <= 35; ++column) {
        EXPECT_EQ(table.value(2, column), 1);
    }
    for (unsigned int column = 36; column < 256; ++column) {
        EXPECT_GE(table.value(2, column), 2);
    }
    EXPECT_EQ(table.value(2, 36), 2);
}

TEST(LmrTable, PvValueIsOneLess) {
    LmrTable const table;
    for (int depth = 0; depth <= 101; ++depth) {
        for (unsigned int column = 0; column < 256; ++column) {
            ASSERT_EQ(table.pv_value(depth, column), table.value(depth, column) - 1);
        }
    }
}

TEST(LmrTable, PvValueAtDepthOneIsZeroForAllColumns) {
    LmrTable const table;
    for (unsigned int column = 0; column < 256; ++column) {
        EXPECT_EQ(table.pv_value(1, column), 0);
    }
}

TEST(LmrTable, DepthBeyondTheTableReadsItsLastRow) {
    LmrTable const table;
    for (int const depth : {102, 103, 150, 1000}) {
        for (unsigned int column = 0; column < 256; ++column) {
            ASSERT_EQ(table.value(depth, column), table.value(101, column));
            ASSERT_EQ(table.pv_value(depth, column), table.pv_value(101, column));
        }
    }
}

}  // namespace orvelin::test
