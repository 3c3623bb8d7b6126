#include "position/castling_targets.h"

#include <gtest/gtest.h>

namespace orvelin {
namespace {

TEST(CastlingTargets, WingIsToldByTheSquaresAndRankByTheSide) {
    for (int const home_rank : {0, 56}) {
        for (int king = 0; king < 8; ++king) {
            for (int rook = 0; rook < 8; ++rook) {
                if (rook == king) {
                    continue;
                }
                const CastlingTargets targets =
                    castling_targets(Square(home_rank + king), Square(home_rank + rook), home_rank);
                EXPECT_EQ(targets.king.file(), rook > king ? 'g' : 'c') << king << rook;
                EXPECT_EQ(targets.rook.file(), rook > king ? 'f' : 'd') << king << rook;
                EXPECT_EQ(targets.king.rank_number(), home_rank / 8);
                EXPECT_EQ(targets.rook.rank_number(), home_rank / 8);
            }
        }
    }
}

TEST(CastlingTargets, WordTellsTheRankByItsKing) {
    const CastlingTargets white =
        castling_targets(Move(Square("e1"), Square("h1"), castling, white_king, no_piece));
    EXPECT_EQ(white.king, Square("g1"));
    EXPECT_EQ(white.rook, Square("f1"));
    const CastlingTargets black =
        castling_targets(Move(Square("b8"), Square("a8"), castling, black_king, no_piece));
    EXPECT_EQ(black.king, Square("c8"));
    EXPECT_EQ(black.rook, Square("d8"));
}

}  // namespace
}  // namespace orvelin
