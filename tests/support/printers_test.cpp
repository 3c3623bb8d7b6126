#include "support/printers.h"

#include <gtest/gtest.h>

#include "position/bit_board.h"
#include "position/masks.h"
#include "position/move.h"
#include "position/move_list.h"
#include "position/piece.h"
#include "position/square.h"

namespace orvelin {
namespace {

TEST(Printers, ShowASquareByItsName) {
    EXPECT_EQ(testing::PrintToString(Square("e4")), "e4");
    EXPECT_EQ(testing::PrintToString(Square()), "no_square");
    EXPECT_EQ(testing::PrintToString(Square(-3)), "id -3");
}

TEST(Printers, ShowAPieceByItsName) {
    EXPECT_EQ(testing::PrintToString(Piece(white_knight)), Piece(white_knight).name());
    EXPECT_EQ(testing::PrintToString(Piece(15)), "id 15");
}

TEST(Printers, ShowTheSquaresOfASet) {
    EXPECT_EQ(testing::PrintToString(BitBoard()), "{}");
    EXPECT_EQ(testing::PrintToString(rank1 & (a_file | h_file)), "{a1 h1}");
}

TEST(Printers, ShowAMoveWithWhatItsTextLacks) {
    Move move(Square("e7"), Square("d8"), promo_rook, white_pawn, black_queen);
    move.check(true);
    EXPECT_EQ(testing::PrintToString(move), "e7d8r [piece 1, capture 13, code 3, class 9, check]");
    EXPECT_EQ(testing::PrintToString(Move()), "0000 [piece 0, capture 0, code 0, class 0]");
}

TEST(Printers, ShowAListMoveByMove) {
    MoveList list;
    list.set_size(2);
    list[0] = Move(Square("e2"), Square("e4"), normal_move, white_pawn, no_piece);
    EXPECT_EQ(testing::PrintToString(list),
              "2 moves\n  e2e4 [piece 1, capture 0, code 1, class 9]"
              "\n  0000 [piece 0, capture 0, code 0, class 0]");
}

}  // namespace
}  // namespace orvelin
