#include "position/masks.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace orvelin {
namespace {

/// The squares named in a text such as "e4 d5".
BitBoard set_of(std::string const& squares) {
    BitBoard board;
    std::istringstream stream(squares);
    for (std::string name; stream >> name;) {
        board |= Square(name).bitboard();
    }
    return board;
}

/// The squares for which a rule on file and rank, both from 0, holds.
template <typename Rule>
BitBoard set_where(Rule rule) {
    BitBoard board;
    for (int id = 0; id < 64; ++id) {
        if (rule(id % 8, id / 8)) {
            board |= Square(id).bitboard();
        }
    }
    return board;
}

/// The squares of one file range and one rank range, counted from 0, ends included.
BitBoard block(int first_file, int last_file, int first_rank, int last_rank) {
    return set_where([=](int file, int rank) {
        return file >= first_file && file <= last_file && rank >= first_rank && rank <= last_rank;
    });
}

/// Distance of a square from the edge of the board.
int ring(int file, int rank) {
    return std::min(std::min(file, 7 - file), std::min(rank, 7 - rank));
}

TEST(Masks, Files) {
    const std::vector<BitBoard> files{a_file, b_file, c_file, d_file,
                                      e_file, f_file, g_file, h_file};
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(files[static_cast<std::size_t>(i)], block(i, i, 0, 7));
    }
    EXPECT_EQ(not_a_file, block(1, 7, 0, 7));
    EXPECT_EQ(not_h_file, block(0, 6, 0, 7));
    EXPECT_EQ(ab_file, block(0, 1, 0, 7));
    EXPECT_EQ(gh_file, block(6, 7, 0, 7));
    EXPECT_EQ(not_ab_file, block(2, 7, 0, 7));
    EXPECT_EQ(not_gh_file, block(0, 5, 0, 7));
    EXPECT_EQ(kings_half, block(4, 7, 0, 7));
}

TEST(Masks, Ranks) {
    const std::vector<BitBoard> ranks{rank1, rank2, rank3, rank4, rank5, rank6, rank7, rank8};
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(ranks[static_cast<std::size_t>(i)], block(0, 7, i, i));
    }
}

TEST(Masks, CentreAndDiagonals) {
    EXPECT_EQ(centre, set_of("d4 e4 d5 e5"));
    EXPECT_EQ(bigcentre, block(2, 5, 2, 5));
    EXPECT_EQ(diagonal, set_of("a1 b2 c3 d4 e5 f6 g7 h8"));
    EXPECT_EQ(antidiagonal, set_of("h1 g2 f3 e4 d5 c6 b7 a8"));
    EXPECT_EQ(diagonals, set_where([](int f, int r) { return f == r || f + r == 7; }));
}

TEST(Masks, Borders) {
    EXPECT_EQ(hborder, set_where([](int, int r) { return r == 0 || r == 7; }));
    EXPECT_EQ(vborder, set_where([](int f, int) { return f == 0 || f == 7; }));
    EXPECT_EQ(border, set_where([](int f, int r) { return ring(f, r) == 0; }));
    EXPECT_EQ(border_minus1, set_where([](int f, int r) { return ring(f, r) == 1; }));
    EXPECT_EQ(border_minus2, set_of("c3 d3 e3 f3 c4 f4 c5 f5 c6 d6 e6 f6"));
    EXPECT_EQ(border.popcount(), 28);
    EXPECT_EQ(border_minus1.popcount(), 20);
}

TEST(Masks, CornersAndColours) {
    EXPECT_EQ(white_corner, set_of("a8 h1"));
    EXPECT_EQ(black_corner, set_of("a1 h8"));
    EXPECT_EQ(corner, set_of("a1 a8 h1 h8"));
    EXPECT_EQ(white_squares, set_where([](int f, int r) { return (f + r) % 2 == 1; }));
    EXPECT_EQ(black_squares, set_where([](int f, int r) { return (f + r) % 2 == 0; }));
}

TEST(Masks, CastlingAndShieldSquares) {
    EXPECT_EQ(castlesquares, set_of("a1 b1 c1 g1 h1 a2 b2 g2 h2 a7 b7 g7 h7 a8 b8 c8 g8 h8"));
    EXPECT_EQ(f1g1, set_of("f1 g1"));
    EXPECT_EQ(f8g8, set_of("f8 g8"));
    EXPECT_EQ(b1c1d1, set_of("b1 c1 d1"));
    EXPECT_EQ(b8c8d8, set_of("b8 c8 d8"));
    EXPECT_EQ(g1h1h2, set_of("g1 h1 h2"));
    EXPECT_EQ(g8h8h7, set_of("g8 h8 h7"));
    EXPECT_EQ(a1b1c1a2, set_of("a1 b1 c1 a2"));
    EXPECT_EQ(a8b8c8a7, set_of("a8 b8 c8 a7"));
    EXPECT_EQ(a1b1c1, set_of("a1 b1 c1"));
    EXPECT_EQ(a8b8c8, set_of("a8 b8 c8"));
    EXPECT_EQ(g1h1, set_of("g1 h1"));
    EXPECT_EQ(g8h8, set_of("g8 h8"));
}

TEST(Masks, OtherNamedSquares) {
    EXPECT_EQ(d3e3, set_of("d3 e3"));
    EXPECT_EQ(d6e6, set_of("d6 e6"));
    EXPECT_EQ(a1b2c3d4, set_of("a1 b2 c3 d4"));
    EXPECT_EQ(c2f2b3g3b6g6c7f7, set_of("c2 f2 b3 g3 b6 g6 c7 f7"));
    EXPECT_EQ(a1_g1, block(0, 6, 0, 0));
    EXPECT_EQ(a8_g8, block(0, 6, 7, 7));
    EXPECT_EQ(b1_h1, block(1, 7, 0, 0));
    EXPECT_EQ(b8_h8, block(1, 7, 7, 7));
    EXPECT_EQ(to_ull(a2_a4_c4), 0x07030100U);
    EXPECT_EQ(a2_a4_c4, set_of("a2 a3 b3 a4 b4 c4"));
}

TEST(Masks, SpaceAndBattlefields) {
    EXPECT_EQ(white_space, block(2, 5, 0, 3));
    EXPECT_EQ(black_space, block(2, 5, 4, 7));
    EXPECT_EQ(white_kingside_battlefield, block(4, 7, 0, 4));
    EXPECT_EQ(black_kingside_battlefield, block(4, 7, 3, 7));
    EXPECT_EQ(white_queenside_battlefield, block(0, 3, 0, 4));
    EXPECT_EQ(black_queenside_battlefield, block(0, 3, 3, 7));
    EXPECT_EQ(white_centre_battlefield, block(2, 5, 0, 4));
    EXPECT_EQ(black_centre_battlefield, block(2, 5, 3, 7));
}

}  // namespace
}  // namespace orvelin
