#include "support/position_argument.h"

#include <gtest/gtest.h>
#include <string>

#include "position/chess_position.h"
#include "support/chess960_positions.h"
#include "support/position_record.h"
#include "support/positions.h"
#include "support/shared_tables.h"
#include "support/test_config.h"
#include "support/tool_main.h"

namespace orvelin::test {

namespace {

/// The message for a FEN; empty when it is taken.
std::string fault(std::string const& fen) {
    ChessPosition position(shared_tables());
    try {
        tools::set_position(position, fen);
    } catch (tools::UsageError const& error) {
        return error.what();
    }
    return "";
}

/// The FEN that a position reads as.
std::string read_back(std::string const& fen) {
    ChessPosition position(shared_tables());
    tools::set_position(position, fen);
    return position.fen();
}

}  // namespace

TEST(PositionArgument, TakesTheStartPosition) {
    EXPECT_EQ(read_back(tools::start_fen), tools::start_fen);
}

TEST(PositionArgument, TakesThePositionsOfGamesAndEndings) {
    std::size_t taken = 0;
    for (char const* file_name : {"positions.txt", "endings.txt"}) {
        for (PositionRecord const& record : read_position_records(file_name)) {
            EXPECT_EQ(fault(record.fen()), "") << record.fen();
            ++taken;
            if (short_tests && taken % 200 == 0) {
                break;
            }
        }
    }
    EXPECT_GE(taken, 200U);
}

TEST(PositionArgument, TakesChess960Positions) {
    for (std::string const& fen : random_chess960_fens(shared_tables(), short_tests ? 20 : 200)) {
        EXPECT_EQ(read_back(fen), fen);
    }
}

TEST(PositionArgument, FillsInTheFieldsThatAreMissing) {
    EXPECT_EQ(read_back("4k3/8/8/8/8/8/8/4K3 w"), positions::bare_kings);
    EXPECT_EQ(read_back("4k3/8/8/8/8/8/8/4K2R w K"), positions::white_short_castling);
    EXPECT_EQ(read_back("4k3/8/8/8/4Pp2/8/8/4K3 b - e3"), "4k3/8/8/8/4Pp2/8/8/4K3 b - e3 0 1");
    EXPECT_EQ(read_back("4k3/8/8/8/8/8/8/4K3 w - - 7"), "4k3/8/8/8/8/8/8/4K3 w - - 7 1");
}

TEST(PositionArgument, TakesAnyBlanksBetweenTheFields) {
    EXPECT_EQ(read_back("  4k3/8/8/8/8/8/8/4K3\tb  -\n- 12 34 "),
              "4k3/8/8/8/8/8/8/4K3 b - - 12 34");
}

TEST(PositionArgument, RefusesAWrongNumberOfFields) {
    EXPECT_EQ(fault(""), "bad FEN: the placement and the side to move are needed, in quotes");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K3"),
              "bad FEN: the placement and the side to move are needed, in quotes");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K3 w - - 0 1 e2e4"),
              "bad FEN: something stands behind the move number: e2e4");
}

TEST(PositionArgument, RefusesABadPlacement) {
    EXPECT_EQ(fault("4x3/8/8/8/8/8/8/4K3 w - - 0 1"), "bad FEN: 'x' is no piece");
    EXPECT_EQ(fault("4k4/8/8/8/8/8/8/4K3 w - - 0 1"),
              "bad FEN: the rank \"4k4\" is not 8 squares long");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K2 w - - 0 1"),
              "bad FEN: the rank \"4K2\" is not 8 squares long");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/4K3 w - - 0 1"), "bad FEN: the placement has 7 ranks, not 8");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K3/8 w - - 0 1"),
              "bad FEN: the placement has 9 ranks, not 8");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K3/ w - - 0 1"),
              "bad FEN: the rank \"\" is not 8 squares long");
}

TEST(PositionArgument, RefusesABadSideToMove) {
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K3 W - - 0 1"), "bad FEN: the side to move is not w or b: W");
}

TEST(PositionArgument, RefusesCastlingRightsThatCannotBe) {
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K2R w Kx - 0 1"),
              "bad FEN: these are no castling rights: Kx");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K2R w H- - 0 1"),
              "bad FEN: these are no castling rights: H-");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K3 w A - 0 1"),
              "bad FEN: there is no king or no rook to castle with at a1");
    EXPECT_EQ(fault("r7/4k3/8/8/8/8/8/4K3 b a - 0 1"),
              "bad FEN: there is no king or no rook to castle with at a8");
    EXPECT_EQ(fault("4k2R/8/8/8/8/8/8/4K3 b h - 0 1"),
              "bad FEN: there is no king or no rook to castle with at h8");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K3 w K - 0 1"),
              "bad FEN: there is no king or no rook to castle with at b1");
}

TEST(PositionArgument, RefusesAnEnPassantSquareThatCannotBe) {
    std::string const no_square = "bad FEN: this is no en passant square for the side to move: ";
    EXPECT_EQ(fault("4k3/8/8/8/4P3/8/8/4K3 w - e3 0 1"), no_square + "e3");
    EXPECT_EQ(fault("4k3/8/8/8/4P3/8/8/4K3 b - e4 0 1"), no_square + "e4");
    EXPECT_EQ(fault("4k3/8/8/8/4P3/8/8/4K3 b - i3 0 1"), no_square + "i3");
    EXPECT_EQ(fault("4k3/8/8/8/4P3/8/8/4K3 b - e 0 1"), no_square + "e");
    std::string const no_pawn = "bad FEN: no pawn has just passed ";
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K3 b - e3 0 1"), no_pawn + "e3");
    EXPECT_EQ(fault("4k3/8/8/8/4P3/4N3/8/4K3 b - e3 0 1"), no_pawn + "e3");
    EXPECT_EQ(fault("4k3/8/8/8/4P3/8/4P3/4K3 b - e3 0 1"), no_pawn + "e3");
    EXPECT_EQ(fault("4k3/8/8/4P3/8/8/8/4K3 w - e6 0 1"), no_pawn + "e6");
    EXPECT_EQ(fault("4k3/8/8/4p3/8/8/8/4K3 w - e6 0 1"), "");
}

TEST(PositionArgument, RefusesNumbersThatAreNone) {
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K3 w - - -1 1"),
              "bad FEN: the half-move clock is not a number up to 9999: -1");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K3 w - - 10000 1"),
              "bad FEN: the half-move clock is not a number up to 9999: 10000");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K3 w - - 0 one"),
              "bad FEN: the move number is not a number up to 9999: one");
}

TEST(PositionArgument, RefusesAnyOtherNumberOfKingsThanOneASide) {
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/8 w - - 0 1"), "bad FEN: White has not exactly one king");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4KK2 w - - 0 1"), "bad FEN: White has not exactly one king");
    EXPECT_EQ(fault("8/8/8/8/8/8/8/4K3 w - - 0 1"), "bad FEN: Black has not exactly one king");
    EXPECT_EQ(fault("k6k/8/8/8/8/8/8/4K3 w - - 0 1"), "bad FEN: Black has not exactly one king");
}

TEST(PositionArgument, RefusesPawnsOnTheOuterRanks) {
    EXPECT_EQ(fault("4k2P/8/8/8/8/8/8/4K3 w - - 0 1"),
              "bad FEN: a pawn stands on the first or the last rank");
    EXPECT_EQ(fault("4k3/8/8/8/8/8/8/4K2p w - - 0 1"),
              "bad FEN: a pawn stands on the first or the last rank");
}

TEST(PositionArgument, RefusesMoreMenThanPromotionsCanGive) {
    EXPECT_EQ(fault("7k/8/8/QQQQ4/QQQQQ3/8/8/4K3 b - - 0 1"), "");
    EXPECT_EQ(fault("7k/8/8/QQQQ4/QQQQQQ2/8/8/4K3 b - - 0 1"),
              "bad FEN: White has more pieces than promotions can give");
    EXPECT_EQ(fault("4k3/pppppppp/nnn5/8/8/8/8/4K3 w - - 0 1"),
              "bad FEN: Black has more pieces than promotions can give");
}

TEST(PositionArgument, RefusesACheckAgainstTheSideThatHasMoved) {
    EXPECT_EQ(fault("4k3/4R3/8/8/8/8/8/4K3 w - - 0 1"),
              "bad FEN: the side that is not to move is in check");
    EXPECT_EQ(fault("4k3/4r3/8/8/8/8/8/4K3 b - - 0 1"),
              "bad FEN: the side that is not to move is in check");
    EXPECT_EQ(fault("8/8/8/8/8/8/4k3/4K3 b - - 0 1"),
              "bad FEN: the side that is not to move is in check");
    EXPECT_EQ(fault("4k3/4r3/8/8/8/8/8/4K3 w - - 0 1"), "");
}

}  // namespace orvelin::test
