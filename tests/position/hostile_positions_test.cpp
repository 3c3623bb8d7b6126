// Positions that no game reaches. The reader takes them as they are written, and nothing that is
// asked of them may leave the bounds of an object; the sanitizers watch over that.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "generation/generator_fixture.h"
#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/move.h"
#include "position/move_list.h"
#include "position/square.h"
#include "support/logic_error_text.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

class HostilePosition : public GeneratorFixture {
 protected:
    /// The text of the position that is read.
    std::string read(std::string const& fen) {
        position_.fen(fen);
        return position_.fen();
    }

    texts_t sorted_moves(std::string const& fen) {
        texts_t list = texts(moves(fen));
        std::sort(list.begin(), list.end());
        return list;
    }

    /// The position is as it was after a move that is made and unmade.
    bool comes_back(std::string const& fen, std::string const& move) {
        position_.fen(fen);
        std::string const before = position_.fen();
        position_.make_move(position_.convert_to_move(move));
        position_.unmake_move();
        return position_.fen() == before;
    }
};

}  // namespace

TEST_F(HostilePosition, WithoutKingsAllOtherPiecesMoveAndNothingIsCheck) {
    std::string const fen = "8/7r/8/8/8/8/P7/8 w - - 0 1";
    EXPECT_EQ(sorted_moves(fen), (texts_t{"a2a3", "a2a4"}));
    EXPECT_FALSE(position_.check());
    EXPECT_EQ(position_.white_kingsfield(), Square());
    EXPECT_EQ(position_.black_kingsfield(), Square());
    EXPECT_TRUE(comes_back(fen, "a2a4"));
}

TEST_F(HostilePosition, RightsWithoutKingsCastleNobody) {
    for (std::string const& move : texts(moves("r6r/8/8/8/8/8/8/R6R w KQkq - 0 1"))) {
        EXPECT_TRUE(move.starts_with("a1") || move.starts_with("h1")) << move;
    }
}

TEST_F(HostilePosition, AnEmptyBoardHasNoMoves) {
    EXPECT_TRUE(moves(positions::empty_board).empty());
    EXPECT_TRUE(moves("8/8/8/8/8/8/8/8 b KQkq e3 0 1").empty());
}

TEST_F(HostilePosition, SeveralKingsAllMove) {
    texts_t const list = sorted_moves("4k3/8/8/8/8/8/8/K6K w - - 0 1");
    EXPECT_EQ(list, (texts_t{"a1a2", "a1b1", "a1b2", "h1g1", "h1g2", "h1h2"}));
}

TEST_F(HostilePosition, AKingMayStandInCheckWhileTheOtherSideMoves) {
    // The king himself is not taken.
    EXPECT_EQ(moves_from("4k3/8/8/8/8/8/8/4R1K1 w - - 0 1", "e1").back(), "e1e7");
    EXPECT_FALSE(position_.check());
}

TEST_F(HostilePosition, APawnOnItsOwnFirstRankStepsOnce) {
    EXPECT_EQ(moves_from("4k3/8/8/8/8/8/8/P3K3 w - - 0 1", "a1"), texts_t{"a1a2"});
    EXPECT_EQ(moves_from("p3k3/8/8/8/8/8/8/4K3 b - - 0 1", "a8"), texts_t{"a8a7"});
}

TEST_F(HostilePosition, APawnOnItsLastRankStaysThere) {
    EXPECT_EQ(moves_from("P3k3/8/8/8/8/8/8/4K3 w - - 0 1", "a8"), texts_t{});
    EXPECT_EQ(moves_from("4k3/8/8/8/8/8/8/p3K3 b - - 0 1", "a1"), texts_t{});
}

TEST_F(HostilePosition, AListHoldsTheFirst256Moves) {
    // Queens all around an empty field, which reach it from everywhere: more moves than fit.
    std::string const fen = "QQQQQQQQ/Q6Q/Q6Q/Q6Q/Q6Q/Q6Q/Q6Q/kQQQQQQK w - - 0 1";
    EXPECT_EQ(moves(fen).size(), static_cast<std::size_t>(MoveList::capacity));
    int reached = 0;
    movetable_t table;
    generator_.create_movetable(position_, table);
    for (std::uint64_t const targets : table) {
        reached += (BitBoard(targets) & ~position_.pieces()).popcount();
    }
    EXPECT_GT(reached, MoveList::capacity);
}

TEST_F(HostilePosition, SixtyQueensAreReadAndWritten) {
    std::string const fen =
        "QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQ2Kk w - - 0 1";
    EXPECT_EQ(read(fen), fen);
    EXPECT_EQ(position_.white_queen().popcount(), 60);
    EXPECT_LE(moves(fen).size(), static_cast<std::size_t>(MoveList::capacity));
}

TEST_F(HostilePosition, WhatIsBehindTheLastFileGoesOnInTheRankAbove) {
    // And every rank below begins as many files further right.
    EXPECT_EQ(read("4k3/8/8/8/8/8/NNNNNNNNN/4K3 w - - 0 1"),
              "4k3/8/8/8/8/N7/NNNNNNNN/5K2 w - - 0 1");
}

TEST_F(HostilePosition, ARankThatIsTooShortMovesTheNextOneLeftAndDown) {
    EXPECT_EQ(read("rnb/8/8/8/4k3/8/8/4K3 w - - 0 1"), "rnb5/8/8/8/8/7k/8/8 w - - 0 1");
}

TEST_F(HostilePosition, PiecesBesideTheBoardAreIgnored) {
    EXPECT_EQ(read("4k2qrr/8/8/8/8/8/8/4K3 w - - 0 1"), "4k2q/8/8/8/8/8/8/6K1 w - - 0 1");
    EXPECT_EQ(read("4k3/8/8/8/8/8/8/4K3/QQQ/qqq w - - 0 1"), positions::bare_kings);
}

TEST_F(HostilePosition, OfTwoPiecesOnOneSquareTheLaterOneIsSeen) {
    std::string const fen = "k7/pppppppprr/8/8/8/8/8/K7 w - - 0 1";
    EXPECT_EQ(read(fen), "rr6/pppppppp/8/8/8/8/8/2K5 w - - 0 1");
    EXPECT_TRUE(position_.board().corrupt(0));
    // The king beneath is still the one that can be in check.
    EXPECT_TRUE(position_.black_king() & Square("a8").bitboard());
    EXPECT_FALSE(moves(fen).empty());
}

TEST_F(HostilePosition, ARightNeedsNoRook) {
    std::string const fen = "4k3/8/8/8/8/8/8/4K3 w KQ - 0 1";
    EXPECT_EQ(read(fen), "4k3/8/8/8/8/8/8/4K3 w BG - 0 1");
    EXPECT_TRUE(generates(fen, "e1b1"));
    EXPECT_TRUE(generates(fen, "e1g1"));
    // The rook that was not there castles all the same, and is there when the move is unmade.
    Move const castling_move = find(fen, "e1b1");
    position_.make_move(castling_move);
    EXPECT_EQ(position_.fen(), "4k3/8/8/8/8/8/8/2KR4 b - - 1 1");
    position_.unmake_move();
    EXPECT_EQ(position_.fen(), "4k3/8/8/8/8/8/8/1R2K3 w BG - 0 1");
}

TEST_F(HostilePosition, AKingOffHisFirstRankCastlesToTheSameFileWithEitherRook) {
    std::string const fen = "4k3/8/8/8/4K3/8/8/R6R w KQ - 0 1";
    EXPECT_TRUE(generates(fen, "e4a1"));
    position_.make_move(find(fen, "e4h1"));
    EXPECT_EQ(position_.fen(), "4k3/8/8/8/8/8/8/R1KR4 b - - 1 1");
    position_.unmake_move();
    EXPECT_EQ(position_.fen(), fen);

    std::string const black = "r6r/8/8/4k3/8/8/8/4K3 b kq - 0 1";
    EXPECT_TRUE(generates(black, "e5h8"));
    position_.make_move(find(black, "e5a8"));
    EXPECT_EQ(position_.fen(), "5rkr/8/8/8/8/8/8/4K3 w - - 1 2");
}

TEST_F(HostilePosition, RightsTakeTheOutermostRook) {
    std::string const placement = "4k3/8/8/8/8/8/8/1RR1KR2 w ";
    EXPECT_EQ(read(placement + "K - 0 1"), placement + "F - 0 1");
    EXPECT_EQ(read(placement + "Q - 0 1"), placement + "B - 0 1");
}

TEST_F(HostilePosition, AnEnPassantSquareNeedsNoPawn) {
    std::string const fen = "4k3/8/8/4P3/8/8/8/4K3 w - d6 0 1";
    Move const capture = find(fen, "e5d6");
    EXPECT_EQ(capture.code(), en_passant);
    position_.make_move(capture);
    EXPECT_EQ(position_.fen(), "4k3/8/3P4/8/8/8/8/4K3 b - - 0 1");
    // The pawn that was not there is there when the move is unmade.
    position_.unmake_move();
    EXPECT_EQ(position_.fen(), "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1");
}

TEST_F(HostilePosition, AnEnPassantSquareLiesOnTheThirdOrTheSixthRank) {
    std::string const placement = "4k3/8/8/8/8/8/8/4K3 w - ";
    for (char const* const field : {"d6", "d6d", "d1", "d9", "d"}) {
        EXPECT_EQ(read(placement + field + " 0 1"), placement + "d6 0 1") << field;
    }
    EXPECT_EQ(read(placement + "d3 0 1"), placement + "d3 0 1");
    for (char const* const field : {"-", "i3", "D3", "3"}) {
        EXPECT_EQ(read(placement + field + " 0 1"), placement + "- 0 1") << field;
    }
}

TEST_F(HostilePosition, MissingFieldsAreBlackWithoutRights) {
    EXPECT_EQ(read("4k3/8/8/8/8/8/8/4K3"), "4k3/8/8/8/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(read(""), "8/8/8/8/8/8/8/8 b - - 0 1");
    EXPECT_EQ(read("4k3/8/8/8/8/8/8/4K3 W ? ? ? ?"), "4k3/8/8/8/8/8/8/4K3 b - - 0 1");
}

TEST_F(HostilePosition, NumbersThatDoNotFitAreReadAsTheirDefaultOrTheLargest) {
    std::string const placement = "4k3/8/8/8/8/8/8/4K3 w - - ";
    EXPECT_EQ(read(placement + "99999999999 99999999999"), placement + "0 1");
    EXPECT_EQ(read(placement + "70000 2147483647"), placement + "65535 2147483647");
    EXPECT_EQ(read(placement + "-5 -7"), placement + "65531 -7");
}

TEST_F(HostilePosition, ACharacterThatIsNoPieceIsRefused) {
    std::string const text = "4k3/8/8/9/8/8/8/4K3 w - - 0 1";
    EXPECT_EQ(logic_error_text([&] { position_.fen(text); }),
              "ChessPosition::fen(" + text + ") \nunkown piece 0x39");
}

}  // namespace orvelin::test
