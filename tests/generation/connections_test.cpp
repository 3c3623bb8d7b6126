#include "generation/connections.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

#include "generation/attacks.h"
#include "position/masks.h"

namespace orvelin::test {

namespace {

Connections const& built_connections() {
    static Connections const connections;
    return connections;
}

/// Walks from a towards b, one king's step at a time; empty when they share no line.
BitBoard between(int a, int b) {
    int const files = b % 8 - a % 8;
    int const ranks = b / 8 - a / 8;
    bool const on_line = files == 0 || ranks == 0 || std::abs(files) == std::abs(ranks);
    BitBoard squares;
    if (!on_line || a == b) {
        return squares;
    }
    int const step = std::clamp(files, -1, 1) + 8 * std::clamp(ranks, -1, 1);
    for (int s = a + step; s != b; s += step) {
        squares.set_square(Square(s));
    }
    return squares;
}

}  // namespace

TEST(Connections, LongDiagonal) {
    Square const a1("a1");
    Square const h8("h8");
    BitBoard const inner{Square("b2"), Square("c3"), Square("d4"),
                         Square("e5"), Square("f6"), Square("g7")};
    EXPECT_EQ(built_connections().line_segment(a1, h8), inner);
    EXPECT_EQ(built_connections().closed_line_segment(a1, h8), diagonal);
}

TEST(Connections, SquaresWithoutACommonLine) {
    EXPECT_FALSE(built_connections().line_segment(Square("a1"), Square("b3")));
    EXPECT_EQ(built_connections().closed_line_segment(Square("a1"), Square("b3")),
              (BitBoard{Square("a1"), Square("b3")}));
}

TEST(Connections, ASquareWithItself) {
    Square const e4("e4");
    EXPECT_FALSE(built_connections().line_segment(e4, e4));
    EXPECT_EQ(built_connections().closed_line_segment(e4, e4), BitBoard{e4});
}

TEST(Connections, AllSegmentsAreTheSquaresBetween) {
    for (int a = 0; a < 64; ++a) {
        for (int b = 0; b < 64; ++b) {
            BitBoard const line = between(a, b);
            ASSERT_EQ(built_connections().line_segment(Square(a), Square(b)), line)
                << a << ' ' << b;
            ASSERT_EQ(built_connections().closed_line_segment(Square(a), Square(b)),
                      (line | Square(a).bitboard() | Square(b).bitboard()))
                << a << ' ' << b;
        }
    }
}

TEST(Connections, SegmentsAreSymmetric) {
    for (int a = 0; a < 64; ++a) {
        for (int b = 0; b < 64; ++b) {
            ASSERT_EQ(built_connections().line_segment(Square(a), Square(b)),
                      built_connections().line_segment(Square(b), Square(a)));
            ASSERT_EQ(built_connections().closed_line_segment(Square(a), Square(b)),
                      built_connections().closed_line_segment(Square(b), Square(a)));
        }
    }
}

TEST(Connections, SliderMovesAreThoseOfAnEmptyBoard) {
    Attacks const attacks;
    EXPECT_EQ(attacks.rook(Square("a1"), BitBoard()),
              built_connections().rook_attacks(Square("a1")));
    EXPECT_EQ(attacks.queen(Square("d4"), BitBoard()),
              built_connections().queen_attacks(Square("d4")));
    for (int s = 0; s < 64; ++s) {
        Square const square(s);
        EXPECT_EQ(built_connections().rook_attacks(square), attacks.rook(square, BitBoard())) << s;
        EXPECT_EQ(built_connections().bishop_attacks(square), attacks.bishop(square, BitBoard()))
            << s;
        EXPECT_EQ(built_connections().queen_attacks(square), attacks.queen(square, BitBoard()))
            << s;
    }
}

TEST(Connections, NoSquareIsConnectedWithNothing) {
    Square const none;
    EXPECT_FALSE(built_connections().rook_attacks(none));
    EXPECT_FALSE(built_connections().bishop_attacks(none));
    EXPECT_FALSE(built_connections().queen_attacks(none));
    for (int s = 0; s <= 64; ++s) {
        EXPECT_FALSE(built_connections().line_segment(none, Square(s)));
        EXPECT_FALSE(built_connections().line_segment(Square(s), none));
        EXPECT_FALSE(built_connections().closed_line_segment(none, Square(s)));
        EXPECT_FALSE(built_connections().closed_line_segment(Square(s), none));
    }
}

}  // namespace orvelin::test
