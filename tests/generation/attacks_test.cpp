#include "generation/attacks.h"

#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

namespace orvelin::test {

namespace {

Attacks const& built_attacks() {
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
    EXPECT_EQ(built_attacks().knight(Square("a1")), (BitBoard{Square("b3"), Square("c2")}));
}

TEST(Attacks, KingInTheCornerHasThreeMoves) {
    EXPECT_EQ(built_attacks().king(Square("h8")),
              (BitBoard{Square("g8"), Square("g7"), Square("h7")}));
}

TEST(Attacks, KnightTableHoldsAllKnightMoves) {
    for (int s = 0; s < 64; ++s) {
        for (int t = 0; t < 64; ++t) {
            int const product = file_distance(s, t) * rank_distance(s, t);
            EXPECT_EQ(bool(built_attacks().knight(Square(s)) & Square(t).bitboard()), product == 2)
                << s << ' ' << t;
        }
    }
}

TEST(Attacks, KingTableHoldsAllNeighbours) {
    for (int s = 0; s < 64; ++s) {
        for (int t = 0; t < 64; ++t) {
            bool const neighbours = s != t && file_distance(s, t) < 2 && rank_distance(s, t) < 2;
            EXPECT_EQ(bool(built_attacks().king(Square(s)) & Square(t).bitboard()), neighbours)
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
        ASSERT_EQ(built_attacks().rook(square, occupied), rook);
        ASSERT_EQ(built_attacks().bishop(square, occupied), bishop);
        ASSERT_EQ(built_attacks().queen(square, occupied), rook | bishop);
    }
}

TEST(Attacks, OneSquareBoardsAskForTheirSquare) {
    BitBoard const occupied(0x00240018C3000081);
    for (int s = 0; s < 64; ++s) {
        Square const square(s);
        BitBoard const& board = square.bitboard();
        EXPECT_EQ(built_attacks().knight(board), built_attacks().knight(square));
        EXPECT_EQ(built_attacks().king(board), built_attacks().king(square));
        EXPECT_EQ(built_attacks().bishop(board, occupied),
                  built_attacks().bishop(square, occupied));
        EXPECT_EQ(built_attacks().rook(board, occupied), built_attacks().rook(square, occupied));
        EXPECT_EQ(built_attacks().queen(board, occupied), built_attacks().queen(square, occupied));
    }
}

TEST(Attacks, NoSquareAttacksNothing) {
    BitBoard const occupied(0x00240018C3000081);
    EXPECT_FALSE(built_attacks().knight(Square()));
    EXPECT_FALSE(built_attacks().king(Square()));
    EXPECT_FALSE(built_attacks().bishop(Square(), occupied));
    EXPECT_FALSE(built_attacks().rook(Square(), occupied));
    EXPECT_FALSE(built_attacks().queen(Square(), occupied));
    EXPECT_FALSE(built_attacks().knight(BitBoard()));
    EXPECT_FALSE(built_attacks().king(BitBoard()));
    EXPECT_FALSE(built_attacks().bishop(BitBoard(), occupied));
    EXPECT_FALSE(built_attacks().rook(BitBoard(), occupied));
    EXPECT_FALSE(built_attacks().queen(BitBoard(), occupied));
}

}  // namespace orvelin::test
