#include "generation/rook_mask.h"

#include <gtest/gtest.h>

namespace orvelin::test {

TEST(RookMask, CornerSeesTwelveSquares) {
    RookMask const masks;
    BitBoard const expected{Square("a2"), Square("a3"), Square("a4"), Square("a5"),
                            Square("a6"), Square("a7"), Square("b1"), Square("c1"),
                            Square("d1"), Square("e1"), Square("f1"), Square("g1")};
    EXPECT_EQ(masks.get_mask(Square("a1")), expected);
}

TEST(RookMask, CentreSeesTenSquares) {
    RookMask const masks;
    EXPECT_EQ(masks.get_mask(Square("d4")).popcount(), 10);
}

TEST(RookMask, HoldsRankAndFileWithoutTheirEndsAndTheSquare) {
    RookMask const masks;
    for (int s = 0; s < 64; ++s) {
        Square const square(s);
        for (int t = 0; t < 64; ++t) {
            Square const other(t);
            bool const same_rank =
                square.rank() == other.rank() && other.file() != 'a' && other.file() != 'h';
            bool const same_file =
                square.file() == other.file() && other.rank() != '1' && other.rank() != '8';
            bool const expected = s != t && (same_rank || same_file);
            EXPECT_EQ(bool(masks.get_mask(square) & other.bitboard()), expected) << s << ' ' << t;
        }
    }
}

TEST(RookMask, NoSquareHasAnEmptyMask) {
    RookMask const masks;
    EXPECT_FALSE(masks.get_mask(Square()));
}

}  // namespace orvelin::test
