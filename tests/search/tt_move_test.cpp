#include "search/tt_move.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "position/chess_position.h"
#include "position/move.h"
#include "position/piece.h"
#include "position/square.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin {
namespace {

TTmove move_of(char const* from, char const* to, unsigned int code, bool check = false) {
    Move move(Square(std::string(from)), Square(std::string(to)), code, Piece(), Piece());
    move.check(check);
    return TTmove(move);
}

class TTmoveTest : public testing::Test {
 protected:
    ChessPosition& position(std::string const& fen) {
        position_.fen(fen);
        return position_;
    }

 private:
    ChessPosition position_{test::shared_tables()};
};

TEST(TTmove, ZeroWordIsNoMove) {
    TTmove const none;
    EXPECT_TRUE(none.nomove());
    EXPECT_EQ(none.id(), 0);
    EXPECT_EQ(none.from().id(), 64);
    EXPECT_EQ(none.to().id(), 64);
    EXPECT_EQ(none.code(), 0U);
    EXPECT_EQ(TTmove(Move()).id(), 0);
}

TEST(TTmove, KeepsTheLowSixteenBitsOfAMove) {
    Move move(Square("e7"), Square("d8"), promo_queen, white_pawn, black_rook);
    move.check(true);
    TTmove const stored(move);
    EXPECT_EQ(stored.id(), (1U << 15) | (2U << 12) | (52U << 6) | 59U);
    EXPECT_EQ(stored.from(), Square("e7"));
    EXPECT_EQ(stored.to(), Square("d8"));
    EXPECT_EQ(stored.code(), promo_queen);
    EXPECT_FALSE(stored.nomove());

    TTmove assigned(std::uint16_t{1});
    assigned = move;
    EXPECT_EQ(assigned, stored);
    assigned.clear();
    EXPECT_TRUE(assigned.nomove());
    EXPECT_TRUE(assigned != stored);
}

TEST(TTmove, SettersReplaceTheirField) {
    TTmove move(std::uint16_t{0xffff});
    move.from(12);
    EXPECT_EQ(move.from().id(), 12);
    EXPECT_EQ(move.to().id(), 63);
    move.to(28);
    EXPECT_EQ(move.id(), 0xf000U | (12U << 6) | 28U);
}

TEST(TTmove, SquareZeroIsASquareInAnyOtherWord) {
    TTmove const move(std::uint16_t{0x1000});
    EXPECT_EQ(move.from().id(), 0);
    EXPECT_EQ(move.to().id(), 0);
}

TEST_F(TTmoveTest, MakesTheWholeMove) {
    ChessPosition const& here = position("4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1");
    Move const move = move_of("e4", "d5", normal_move, true)(here);
    EXPECT_EQ(move.from(), Square("e4"));
    EXPECT_EQ(move.to(), Square("d5"));
    EXPECT_EQ(move.piece_id(), white_pawn);
    EXPECT_EQ(move.capture_id(), black_pawn);
    EXPECT_EQ(move.code(), normal_move);
    EXPECT_TRUE(move.check());
    EXPECT_EQ(move.xcode(), hashtable_move);
    EXPECT_FALSE(move_of("e4", "d5", normal_move)(here).check());
}

TEST_F(TTmoveTest, ZeroWordMakesTheEmptyMove) {
    Move const move = TTmove()(position("4k3/8/8/8/8/8/8/R3K3 w - - 0 1"));
    EXPECT_TRUE(move == Move());
    EXPECT_EQ(move.xcode(), 0);
}

TEST_F(TTmoveTest, CastlingCapturesNothing) {
    ChessPosition const& here = position(positions::white_short_castling);
    TTmove const castle = move_of("e1", "h1", castling);
    EXPECT_EQ(castle(here).piece_id(), white_king);
    EXPECT_EQ(castle(here).capture_id(), no_piece);
    // By design capture() tells what stands on the destination.
    EXPECT_EQ(castle.capture(here).id(), white_rook);
    EXPECT_EQ(castle.algebraic(here), "e1g1");
}

TEST_F(TTmoveTest, EnPassantCapturesThePawn) {
    ChessPosition const& white = position("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1");
    TTmove const up = move_of("e5", "d6", en_passant);
    EXPECT_EQ(up(white).capture_id(), black_pawn);
    EXPECT_EQ(up.capture(white).id(), black_pawn);
    ChessPosition const& black = position("4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1");
    TTmove const down = move_of("d4", "e3", en_passant);
    EXPECT_EQ(down(black).capture_id(), white_pawn);
    EXPECT_EQ(down.capture(black).id(), white_pawn);
}

TEST_F(TTmoveTest, EnPassantWithCheckIsMissedByCapture) {
    ChessPosition const& here = position("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1");
    TTmove const checking = move_of("e5", "d6", en_passant, true);
    EXPECT_EQ(checking(here).capture_id(), black_pawn);
    EXPECT_EQ(checking.capture(here).id(), no_piece);
}

TEST_F(TTmoveTest, PieceAndCaptureComeFromTheBoard) {
    ChessPosition const& here = position("4k3/8/8/3r4/4B3/8/8/4K3 w - - 0 1");
    TTmove const takes = move_of("e4", "d5", normal_move);
    EXPECT_EQ(takes.piece(here).id(), white_bishop);
    EXPECT_EQ(takes.capture(here).id(), black_rook);
    EXPECT_EQ(move_of("a1", "a2", normal_move).piece(here).id(), no_piece);
}

TEST_F(TTmoveTest, WordsWithoutCodeAndCheckHaveNoPiece) {
    ChessPosition const& here = position("4k3/8/8/3r4/4B3/8/8/4K3 w - - 0 1");
    TTmove const uncoded = move_of("e4", "d5", nullmove);
    EXPECT_EQ(uncoded.piece(here).id(), no_piece);
    EXPECT_EQ(uncoded.capture(here).id(), no_piece);
    EXPECT_EQ(uncoded(here).piece_id(), white_bishop);
    TTmove const with_check = move_of("e4", "d5", nullmove, true);
    EXPECT_EQ(with_check.piece(here).id(), white_bishop);
    EXPECT_EQ(TTmove().piece(here).id(), no_piece);
    EXPECT_EQ(TTmove().capture(here).id(), no_piece);
}

TEST_F(TTmoveTest, TextIsTheMoveInStandardNotation) {
    ChessPosition const& here = position("4k3/P7/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(move_of("a7", "a8", promo_knight).algebraic(here), "a7a8n");
    EXPECT_EQ(move_of("e1", "e2", normal_move, true).algebraic(here), "e1e2");
    EXPECT_EQ(TTmove().algebraic(here), "0000");
    EXPECT_EQ(move_of("e1", "e2", nullmove).algebraic(here), "0000");
    EXPECT_EQ(move_of("e1", "e2", nullmove, true).algebraic(here), "0000");
}

}  // namespace
}  // namespace orvelin
