#include "generation/bishop_mask.h"

#include <gtest/gtest.h>

namespace orvelin::test {

TEST(BishopMask, CornerSeesItsDiagonalWithoutTheEnds) {
    BishopMask const masks;
    BitBoard const expected{Square("b2"), Square("c3"), Square("d4"),
                            Square("e5"), Square("f6"), Square("g7")};
    EXPECT_EQ(masks.get_mask(Square("a1")), expected);
    EXPECT_EQ(masks.get_mask(Square("h8")), expected);
}

TEST(BishopMask, CentreSeesNineSquares) {
    BishopMask const masks;
    EXPECT_EQ(masks.get_mask(Square("d4")).popcount(), 9);
}

TEST(BishopMask, HoldsBothDiagonalsWithoutTheBorderAndTheSquare) {
    BishopMask const masks;
    for (int s = 0; s < 64; ++s) {
        Square const square(s);
        for (int t = 0; t < 64; ++t) {
            Square const other(t);
            int const rise = other.rank() - square.rank();
            int const run = other.file() - square.file();
            bool const inside = other.file() > 'a' && other.file() < 'h' && other.rank() > '1' &&
                                other.rank() < '8';
            bool const expected = s != t && inside && (rise == run || rise == -run);
            EXPECT_EQ(bool(masks.get_mask(square) & other.bitboard()), expected) << s << ' ' << t;
        }
    }
}

TEST(BishopMask, NoSquareHasAnEmptyMask) {
    BishopMask const masks;
    EXPECT_FALSE(masks.get_mask(Square()));
}

}  // namespace orvelin::test
