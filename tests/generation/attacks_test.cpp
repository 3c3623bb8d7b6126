#include "generation/attacks.h"

#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

namespace orvelin::test {

namespace {

Attacks const& built() {
    static Attacks const attacks;
    return attacks;
}

int file_distance(int a, int b) {
    return std::abs(a % 8 - b % 8);
}
int rank_distance(int a, int b) {
    return std::abs(a / 8 - b / 8);
}

}  // namespace

TEST(Attacks, KnightInTheCornerHasTwoMoves) {
    EXPECT_EQ(built().knight(Square("a1")), (BitBoard{Square("b3"), Square("c2")}));
}

TEST(Attacks, KingInTheCornerHasThreeMoves) {
    EXPECT_EQ(built().king(Square("h8")), (BitBoard{Square("g8"), Square("g7"), Square("h7")}));
}

TEST(Attacks, KnightTableHoldsAllKnightMoves) {
    for (int s = 0; s < 64; ++s) {
        for (int t = 0; t < 64; ++t) {
            int const product = file_distance(s, t) * rank_distance(s, t);
            EXPECT_EQ(bool(built().knight(Square(s)) & Square(t).bitboard()), product == 2)
                << s << ' ' << t;
        }
    }
}

TEST(Attacks, KingTableHoldsAllNeighbours) {
    for (int s = 0; s < 64; ++s) {
        for (int t = 0; t < 64; ++t) {
            bool const neighbours = s != t && file_distance(s, t) < 2 && rank_distance(s, t) < 2;
            EXPECT_EQ(bool(built().king(Square(s)) & Square(t).bitboard()), neighbours)
                << s << ' ' << t;
        }
    }
}

TEST(Attacks, SlidersStopAtTheFirstMan) {
    std::mt19937_64 random(2);
    for (int i = 0; i < 5000; ++i) {
        Square const square(static_cast<int>(random() % 64));
        BitBoard const occupied(random() & random());
        BitBoard const rook = MagicMoves::rook_moves(square, occupied);
        BitBoard const bishop = MagicMoves::bishop_moves(square, occupied);
        ASSERT_EQ(built().rook(square, occupied), rook);
        ASSERT_EQ(built().bishop(square, occupied), bishop);
        ASSERT_EQ(built().queen(square, occupied), rook | bishop);
    }
}

TEST(Attacks, OneSquareBoardsAskForTheirSquare) {
    BitBoard const occupied(0x00240018C3000081);
    for (int s = 0; s < 64; ++s) {
        Square const square(s);
        BitBoard const& board = square.bitboard();
        EXPECT_EQ(built().knight(board), built().knight(square));
        EXPECT_EQ(built().king(board), built().king(square));
        EXPECT_EQ(built().bishop(board, occupied), built().bishop(square, occupied));
        EXPECT_EQ(built().rook(board, occupied), built().rook(square, occupied));
        EXPECT_EQ(built().queen(board, occupied), built().queen(square, occupied));
    }
}

TEST(Attacks, NoSquareAttacksNothing) {
    BitBoard const occupied(0x00240018C3000081);
    EXPECT_FALSE(built().knight(Square()));
    EXPECT_FALSE(built().king(Square()));
    EXPECT_FALSE(built().bishop(Square(), occupied));
    EXPECT_FALSE(built().rook(Square(), occupied));
    EXPECT_FALSE(built().queen(Square(), occupied));
    EXPECT_FALSE(built().knight(BitBoard()));
    EXPECT_FALSE(built().king(BitBoard()));
    EXPECT_FALSE(built().bishop(BitBoard(), occupied));
    EXPECT_FALSE(built().rook(BitBoard(), occupied));
    EXPECT_FALSE(built().queen(BitBoard(), occupied));
}

}  // namespace orvelin::test
