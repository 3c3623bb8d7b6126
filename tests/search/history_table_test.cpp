#include "search/history_table.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>

#include "position/move.h"
#include "position/square.h"

namespace orvelin {
namespace {

Move const knight_f3(Square("g1"), Square("f3"), normal_move, white_knight, no_piece);
Move const knight_c3(Square("b1"), Square("c3"), normal_move, white_knight, no_piece);
Move const king_h8(Square("g8"), Square("h8"), normal_move, black_king, no_piece);

TEST(HistoryTable, StartsAtZero) {
    HistoryTable const table;
    EXPECT_EQ(table.value(knight_f3), 0);
    EXPECT_EQ(table.value(king_h8), 0);
    EXPECT_EQ(table.value(Move()), 0);
}

TEST(HistoryTable, CountsByPieceAndDestinationOnly) {
    HistoryTable table;
    table.increment(knight_f3, 4);
    Move const from_elsewhere(Square("d2"), Square("f3"), normal_move, white_knight, no_piece);
    Move const other_piece(Square("d1"), Square("f3"), normal_move, white_queen, no_piece);
    EXPECT_EQ(table.value(from_elsewhere), 16);
    EXPECT_EQ(table.value(other_piece), 0);
    EXPECT_EQ(table.value(knight_c3), 0);
}

TEST(HistoryTable, AddsAndSubtractsPowersOfTwo) {
    HistoryTable table;
    table.increment(knight_f3, 5);
    table.increment(knight_f3, 0);
    EXPECT_EQ(table.value(knight_f3), 33);
    table.decrement(knight_f3, 6);
    EXPECT_EQ(table.value(knight_f3), -31);
}

TEST(HistoryTable, DepthCountsModulo64) {
    HistoryTable table;
    table.increment(knight_f3, 64);
    EXPECT_EQ(table.value(knight_f3), 1);
    table.decrement(knight_c3, 67);
    EXPECT_EQ(table.value(knight_c3), -8);
}

TEST(HistoryTable, WrapsAround) {
    HistoryTable table;
    table.increment(knight_f3, 63);
    EXPECT_EQ(table.value(knight_f3), std::numeric_limits<std::int64_t>::min());
    table.decrement(knight_f3, 0);
    EXPECT_EQ(table.value(knight_f3), std::numeric_limits<std::int64_t>::max());
    table.increment(knight_f3, 0);
    table.increment(knight_f3, 63);
    EXPECT_EQ(table.value(knight_f3), 0);
}

TEST(HistoryTable, DivideBy8ShiftsArithmetically) {
    HistoryTable table;
    table.increment(knight_f3, 6);
    table.decrement(knight_c3, 0);
    table.decrement(king_h8, 4);
    table.divide_by_8();
    EXPECT_EQ(table.value(knight_f3), 8);
    EXPECT_EQ(table.value(knight_c3), -1);
    EXPECT_EQ(table.value(king_h8), -2);
}

TEST(HistoryTable, ClearZeroesAll) {
    HistoryTable table;
    table.increment(knight_f3, 6);
    table.increment(king_h8, 6);
    table.clear();
    EXPECT_EQ(table.value(knight_f3), 0);
    EXPECT_EQ(table.value(king_h8), 0);
}

TEST(HistoryTable, EmptyMoveStaysInside) {
    HistoryTable table;
    table.increment(Move(), 3);
    EXPECT_EQ(table.value(Move()), 8);
    EXPECT_EQ(table.value(king_h8), 0);
}

// No piece has this id, but a promotion text that does not fit the position can lead to it.
TEST(HistoryTable, TheHighestFourBitIdStaysInside) {
    HistoryTable table;
    Move move(king_h8);
    move.piece_id(15);
    table.increment(move, 3);
    EXPECT_EQ(table.value(move), 8);
    EXPECT_EQ(table.value(king_h8), 0);
    table.divide_by_8();
    EXPECT_EQ(table.value(move), 1);
    table.clear();
    EXPECT_EQ(table.value(move), 0);
}

}  // namespace
}  // namespace orvelin
