#include <array>
#include <stdexcept>

#include "position/board_position.h"
#include "support/analysis_fixture.h"
#include "support/position_record.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

using Exchange = AnalysisFixture;

/// Gives away the private side to move of the board, so that a corrupt one can be made.
template <int BoardPosition::*Member>
struct SideAccess {
    friend int BoardPosition::*side_member() { return Member; }
};
int BoardPosition::*side_member();
template struct SideAccess<&BoardPosition::stm_>;

/// The text of the std::logic_error that the function throws.
template <typename Function>
std::string failure_of(Function function) {
    try {
        function();
    } catch (std::logic_error const& error) {
        return error.what();
    }
    return "nothing thrown";
}

/// The exchange played out on the board itself, which see(Move) spares itself for plain moves.
int played_out(Analysis& analysis, ChessPosition& position, Move const& move) {
    position.force_move(move);
    int const replies = analysis.see(move.to());
    position.undo_forced_move(move);
    return move.capture().abs_value() - replies;
}

}  // namespace

TEST_F(Exchange, PlainMovesGiveWhatPlayingThemOutGives) {
    int compared = 0;
    for (PositionRecord const& record : read_position_records("positions.txt")) {
        std::string const& fen = record.fen();
        set(fen);
        for (Move const& candidate : moves()) {
            if (candidate.code() != normal_move) {
                continue;
            }
            ASSERT_EQ(analysis_.see(candidate), played_out(analysis_, position_, candidate))
                << fen << ' ' << candidate.algebraic(true);
            ++compared;
        }
    }
    EXPECT_GT(compared, 10000);
}

TEST_F(Exchange, CapturedManGivesItsValue) {
    struct row_t {
        char letter;
        int value;
    };
    for (row_t const& row :
         {row_t{'p', 100}, row_t{'n', 300}, row_t{'b', 300}, row_t{'r', 500}, row_t{'q', 900}}) {
        set(std::string("7k/8/8/3") + row.letter + "4/8/8/8/K2R4 w - - 0 1");
        EXPECT_EQ(analysis_.see(move("d1d5")), row.value) << row.letter;
    }
    set("7k/8/8/3K4/8/8/8/k2R4 w - - 0 1");
    Move const nothing(Square("d1"), Square("d2"), normal_move, white_rook, no_piece);
    EXPECT_EQ(analysis_.see(nothing), 0);
    Move const takes_king(Square("d1"), Square("a1"), normal_move, white_rook, black_king);
    EXPECT_EQ(analysis_.see(takes_king), 4000);
}

TEST_F(Exchange, CapturedWhiteManGivesItsValue) {
    struct row_t {
        char letter;
        int value;
    };
    for (row_t const& row :
         {row_t{'P', 100}, row_t{'N', 300}, row_t{'B', 300}, row_t{'R', 500}, row_t{'Q', 900}}) {
        set(std::string("3r3k/8/8/3") + row.letter + "4/8/8/8/K7 b - - 0 1");
        EXPECT_EQ(analysis_.see(move("d8d5")), row.value) << row.letter;
    }
}

TEST_F(Exchange, PawnTakesQueenThatAPawnDefends) {
    set("7k/8/2p5/3q4/4P3/8/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("e4d5")), 900 - 100);
}

TEST_F(Exchange, QueenTakesPawnThatAPawnDefends) {
    set("7k/8/2p5/3p4/4Q3/8/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("e4d5")), 100 - 900);
}

TEST_F(Exchange, QuietMoveIsNeverAboveZero) {
    set("7k/8/2p5/8/4Q3/8/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("e4d5")), -900);
    EXPECT_EQ(analysis_.see(move("e4e3")), 0);
    // The opponent may also leave a piece alone whose capture would cost more.
    set("7k/3q4/8/8/4P3/1R6/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("b3d3")), -500);
    set("7k/3q4/8/8/2P1P3/1R6/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("b3b5")), 0);
    set("7k/8/3q4/8/2P5/1R6/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("c4c5")), -100);
    set("7k/8/3q4/8/1PP5/1R6/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("c4c5")), 0);
}

TEST_F(Exchange, PromotionGainByCode) {
    set("8/P6k/8/8/8/8/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("a7a8q")), 800);
    EXPECT_EQ(analysis_.see(move("a7a8r")), 400);
    EXPECT_EQ(analysis_.see(move("a7a8b")), 200);
    EXPECT_EQ(analysis_.see(move("a7a8n")), 200);
    set("k7/8/8/8/8/8/p6K/1N6 b - - 0 1");
    EXPECT_EQ(analysis_.see(move("a2a1q")), 800);
    EXPECT_EQ(analysis_.see(move("a2b1q")), 300 + 800);
}

TEST_F(Exchange, PromotedManCanBeRetakenAtItsFullValue) {
    set("7r/P6k/8/8/8/8/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("a7a8q")), 800 - 900);
    EXPECT_EQ(analysis_.see(move("a7a8r")), 400 - 500);
    EXPECT_EQ(analysis_.see(move("a7a8n")), 200 - 300);
}

TEST_F(Exchange, SlidersBehindTheCaptorsCount) {
    // Rook, rook behind it, against one rook: the pawn is won.
    set("3r3k/8/8/3p4/8/8/3R4/K2R4 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("d2d5")), 100);
    // Without the second rook it costs the exchange.
    set("3r3k/8/8/3p4/8/8/3R4/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("d2d5")), 100 - 500);
    // A bishop behind a pawn.
    set("7k/8/2p5/3p4/4P3/5B2/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("e4d5")), 100);
}

TEST_F(Exchange, KingDoesNotRetakeIntoADefendedSquare) {
    set("8/8/3k4/3p4/8/8/3R4/K2R4 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("d2d5")), 100);
    set("8/8/3k4/3p4/8/8/3R4/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("d2d5")), 100 - 500);
}

TEST_F(Exchange, KingOnTheSquareIsTakenFor32000) {
    set("8/8/8/3k4/8/8/8/K2R4 w - - 0 1");
    EXPECT_EQ(analysis_.see(Square("d5")), 32000);
    // The first move of an exchange has no choice: the king that steps in is lost.
    set("8/8/8/4k3/8/8/8/K2R4 b - - 0 1");
    Move const step(Square("e5"), Square("d5"), normal_move, black_king, no_piece);
    EXPECT_EQ(analysis_.see(step), -32000);
}

TEST_F(Exchange, PawnThatRetakesOnTheLastRankStaysAPawn) {
    set("7k/8/8/8/8/8/p5K1/1n1R4 w - - 0 1");
    // Retaking rook for knight: 300 - 500. With a queen it would be 300 - 500 - 800.
    EXPECT_EQ(analysis_.see(move("d1b1")), 300 - 500);
    // The rook behind takes the pawn back at 100.
    set("7k/8/8/8/8/8/p5K1/1n1RR3 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("d1b1")), 300 - 500 + 100);
}

TEST_F(Exchange, PinsAreNotLookedAt) {
    // The knight that defends is pinned and counts nevertheless.
    set("7k/8/5n2/3p4/3R4/2B5/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(move("d4d5")), 100 - 500);
}

TEST_F(Exchange, EnPassantWinsAPawn) {
    set("7k/8/8/3pP3/8/8/8/K7 w - d6 0 1");
    EXPECT_EQ(analysis_.see(move("e5d6")), 100);
}

TEST_F(Exchange, SquareWithoutAttackerGivesNothing) {
    set("7k/8/8/3q4/8/8/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(Square("d5")), 0);
}

TEST_F(Exchange, SquareGivesTheBestOfCapturingAndNot) {
    set("7k/8/2p5/3p4/4Q3/8/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(Square("d5")), 0);
    set("7k/8/2p5/3q4/4Q3/8/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(Square("d5")), 0);
    set("7k/8/2p5/3q4/4P3/8/8/K7 w - - 0 1");
    EXPECT_EQ(analysis_.see(Square("d5")), 800);
    set("7k/8/2p5/3q4/4P3/8/8/K7 b - - 0 1");
    EXPECT_EQ(analysis_.see(Square("e4")), 100);
}

TEST_F(Exchange, BoardComesBack) {
    set(positions::kiwipete);
    ChessPosition const before = position_;
    for (Move const& candidate : moves()) {
        analysis_.see(candidate);
        EXPECT_EQ(position_, before) << candidate.dump();
        EXPECT_TRUE(position_.board().consistent()) << candidate.dump();
        EXPECT_EQ(position_.pieces().popcount(), 32);
    }
}

TEST_F(Exchange, CorruptSideToMoveFails) {
    set(positions::bare_kings_in_corners);
    BoardPosition& board = const_cast<BoardPosition&>(position_.board());
    for (int const side : {2, -1}) {
        board.*side_member() = side;
        EXPECT_EQ(failure_of([&] { analysis_.see(Square("a2")); }),
                  "Analysis::see   side to move is corrupt");
    }
    board.*side_member() = 1;
}

TEST_F(Exchange, CapturedIdWithoutATypeFails) {
    set("7k/8/8/8/8/8/8/K2R4 w - - 0 1");
    for (int const id : {7, 15}) {
        Move broken = move("d1d5");
        broken.capture_id(id);
        EXPECT_EQ(failure_of([&] { analysis_.see(broken); }), "Piece::abs_value out of range:");
    }
    position_.set_piece_on(Square("d5"), Piece(7));
    EXPECT_EQ(failure_of([&] { analysis_.see(Square("d5")); }), "Piece::abs_value out of range:");
}

// An illegal move whose word names no captured piece leaves that piece in its set and nowhere
// else. It is the weakest attacker of the exchange for ever, so that it would never end.
TEST_F(Exchange, PieceThatTheSquaresDoNotHoldEndsTheExchange) {
    set("3r3k/8/8/8/8/8/3P4/K6R w - - 0 1");
    position_.make_move(Move(Square("h1"), Square("d8"), normal_move, white_rook, no_piece));
    position_.make_move(move("h8h7"));
    position_.make_move(Move(Square("d8"), Square("e8"), normal_move, white_rook, no_piece));
    ASSERT_EQ(position_.black_weakest_attacker(Square("d2")), Square("d8"));
    ASSERT_EQ(position_.get_piece_from(Square("d8")), Piece());
    EXPECT_EQ(analysis_.see(Square("d2")), 0);
}

}  // namespace orvelin::test
