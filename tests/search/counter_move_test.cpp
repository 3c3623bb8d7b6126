#include "search/counter_move.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "position/move.h"
#include "position/square.h"

namespace orvelin {
namespace {

Move const pawn_e4(Square("e2"), Square("e4"), normal_move, white_pawn, no_piece);
Move const pawn_e5(Square("e7"), Square("e5"), normal_move, black_pawn, no_piece);
Move const pawn_c5(Square("c7"), Square("c5"), normal_move, black_pawn, no_piece);
Move const king_h8(Square("g8"), Square("h8"), normal_move, black_king, no_piece);

class CounterMoveTest : public testing::Test {
 protected:
    // The table is too large for the stack.
    std::unique_ptr<CounterMove> const table_ = std::make_unique<CounterMove>();
};

TEST_F(CounterMoveTest, StartsAtZero) {
    EXPECT_EQ(table_->value(pawn_e4, pawn_e5), 0);
    EXPECT_EQ(table_->value(king_h8, king_h8), 0);
}

TEST_F(CounterMoveTest, CountsTheAnswerToTheEarlierMove) {
    table_->increment(pawn_e4, pawn_e5, 3);
    EXPECT_EQ(table_->value(pawn_e4, pawn_e5), 8);
    EXPECT_EQ(table_->value(pawn_e4, pawn_c5), 0);
    EXPECT_EQ(table_->value(pawn_e5, pawn_e4), 0);
    table_->decrement(pawn_e4, pawn_c5, 2);
    EXPECT_EQ(table_->value(pawn_e4, pawn_c5), -4);
    EXPECT_EQ(table_->value(pawn_e4, pawn_e5), 8);
}

TEST_F(CounterMoveTest, ReadsByPieceAndDestination) {
    table_->increment(pawn_e4, pawn_e5, 3);
    EXPECT_EQ(table_->value(white_pawn, Square("e4").id(), pawn_e5), 8);
    EXPECT_EQ(table_->value(white_pawn, Square("e3").id(), pawn_e5), 0);
    EXPECT_EQ(table_->value(white_queen, Square("e4").id(), pawn_e5), 0);
}

TEST_F(CounterMoveTest, OriginsDoNotCount) {
    table_->increment(pawn_e4, pawn_e5, 1);
    Move const single_step(Square("e3"), Square("e4"), normal_move, white_pawn, no_piece);
    EXPECT_EQ(table_->value(single_step, pawn_e5), 2);
}

TEST_F(CounterMoveTest, DepthCountsModulo64AndValuesWrapAround) {
    table_->increment(pawn_e4, pawn_e5, 65);
    EXPECT_EQ(table_->value(pawn_e4, pawn_e5), 2);
    table_->increment(pawn_e4, pawn_c5, 63);
    EXPECT_EQ(table_->value(pawn_e4, pawn_c5), std::numeric_limits<std::int64_t>::min());
    table_->decrement(pawn_e4, pawn_c5, 0);
    EXPECT_EQ(table_->value(pawn_e4, pawn_c5), std::numeric_limits<std::int64_t>::max());
    // A negative depth counts modulo 64 as well.
    table_->increment(pawn_e4, king_h8, -62);
    EXPECT_EQ(table_->value(pawn_e4, king_h8), 4);
}

TEST_F(CounterMoveTest, DivideBy8ShiftsArithmetically) {
    table_->increment(pawn_e4, pawn_e5, 4);
    table_->decrement(pawn_e4, pawn_c5, 0);
    table_->increment(king_h8, king_h8, 5);
    table_->divide_by_8();
    EXPECT_EQ(table_->value(pawn_e4, pawn_e5), 2);
    EXPECT_EQ(table_->value(pawn_e4, pawn_c5), -1);
    EXPECT_EQ(table_->value(king_h8, king_h8), 4);
}

TEST_F(CounterMoveTest, ClearZeroesAll) {
    table_->increment(pawn_e4, pawn_e5, 4);
    table_->increment(king_h8, king_h8, 5);
    table_->clear();
    EXPECT_EQ(table_->value(pawn_e4, pawn_e5), 0);
    EXPECT_EQ(table_->value(king_h8, king_h8), 0);
}

// What is aged and zeroed is found by marks.
TEST_F(CounterMoveTest, WhatIsWrittenBehindAClearIsAgedAndClearedAgain) {
    table_->increment(pawn_e4, pawn_e5, 4);
    table_->clear();
    table_->decrement(pawn_e4, pawn_e5, 6);
    table_->increment(pawn_e5, pawn_c5, 6);
    table_->divide_by_8();
    EXPECT_EQ(table_->value(pawn_e4, pawn_e5), -8);
    EXPECT_EQ(table_->value(pawn_e5, pawn_c5), 8);
    table_->divide_by_8();
    EXPECT_EQ(table_->value(pawn_e4, pawn_e5), -1);
    table_->clear();
    EXPECT_EQ(table_->value(pawn_e4, pawn_e5), 0);
    EXPECT_EQ(table_->value(pawn_e5, pawn_c5), 0);
}

// Whoever ranks answers by their values goes by the bits.
TEST_F(CounterMoveTest, AnswersAboveZeroHaveABit) {
    std::vector<Move> const moves{pawn_e4, pawn_e5, pawn_c5, king_h8};
    std::mt19937 random(17);
    auto const any_move = [&] { return moves[random() % moves.size()]; };
    int above_zero = 0;
    for (int i = 0; i < 20000; ++i) {
        Move const earlier = any_move();
        Move const answer = any_move();
        // Among them what is above 0 in its low 32 bits alone, and what is so as a whole alone.
        int const depth = static_cast<int>(random() % 40);
        if ((random() & 1) != 0) {
            table_->increment(earlier, answer, depth);
        } else {
            table_->decrement(earlier, answer, depth);
        }
        if (i % 50 == 0) {
            table_->divide_by_8();
        }
        if (i % 5000 == 0) {
            table_->clear();
        }
        for (Move const& other : moves) {
            std::size_t const index = HistoryTable::index(other);
            std::int64_t const value = table_->value(earlier, other);
            auto const low = static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
            CounterMove::answers_t const answers = table_->answers(earlier);
            ASSERT_EQ(answers.values[index], value);
            ASSERT_EQ(answers.is_above_zero(index), value > 0 || low > 0) << value;
            above_zero += value > 0 ? 1 : 0;
        }
    }
    EXPECT_GT(above_zero, 10000);
}

TEST_F(CounterMoveTest, NothingAnswersTheEmptyMove) {
    table_->increment(Move(), pawn_e5, 3);
    EXPECT_FALSE(table_->answers(Move()).is_above_zero(HistoryTable::index(pawn_e5)));
    EXPECT_FALSE(table_->answers(Move()).is_above_zero(15 * 64 + 63));
}

TEST_F(CounterMoveTest, EmptyMovesStayInside) {
    table_->increment(Move(), Move(), 2);
    table_->increment(king_h8, Move(), 3);
    EXPECT_EQ(table_->value(Move(), Move()), 4);
    EXPECT_EQ(table_->value(king_h8, Move()), 8);
    EXPECT_EQ(table_->value(no_piece, 64, Move()), 4);
}

// No piece has this id, but a promotion text that does not fit the position can lead to it.
TEST_F(CounterMoveTest, TheHighestFourBitIdStaysInside) {
    Move move(king_h8);
    move.piece_id(15);
    table_->increment(move, move, 3);
    table_->increment(pawn_e4, move, 4);
    EXPECT_EQ(table_->value(move, move), 8);
    EXPECT_EQ(table_->value(15, 63, move), 8);
    EXPECT_EQ(table_->value(pawn_e4, move), 16);
    EXPECT_EQ(table_->value(king_h8, king_h8), 0);
    table_->divide_by_8();
    EXPECT_EQ(table_->value(move, move), 1);
    table_->clear();
    EXPECT_EQ(table_->value(move, move), 0);
}

}  // namespace
}  // namespace orvelin
