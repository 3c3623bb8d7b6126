#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "endgame/egt4_pieces.h"
#include "support/lent_table.h"
#include "support/logic_error_text.h"
#include "support/positions.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

using moves_t = std::vector<Move>;

char letter(int piece_id) {
    constexpr std::string_view letters = "?PNBRQK??pnbrqk?";
    return letters.at(static_cast<std::size_t>(piece_id));
}

/// The moves as texts such as "Nb1c3" or "Nb1c3xr", one blank between them.
std::string text(moves_t const& moves) {
    std::string all;
    for (Move const& move : moves) {
        if (!all.empty()) {
            all += ' ';
        }
        all += letter(move.piece_id()) + move.from().name() + move.to().name();
        if (move.capture_id() != no_piece) {
            all += std::string("x") + letter(move.capture_id());
        }
    }
    return all;
}

std::string moves_of(Egt4Pieces& table, std::string const& fen) {
    // What stands in the list before is no move of this position.
    moves_t moves(3);
    table.fen(fen);
    table.generate_moves(moves);
    return text(moves);
}

std::string previous_moves_of(Egt4Pieces& table, std::string const& fen) {
    moves_t moves(3);
    table.fen(fen);
    table.generate_previous_moves(moves);
    return text(moves);
}

/// The text that a table of two ids throws with the side to move, 1 for White.
template <typename Generate>
std::string error_of(int piece1_id, int piece2_id, unsigned int side, Generate generate) {
    Egt4Pieces table(shared_attacks(), static_cast<piece_t>(piece1_id),
                     static_cast<piece_t>(piece2_id));
    // Kings and pieces on squares of their own.
    table.set_key(7U << 19 | 63U << 13 | 40U << 7 | 38U << 1 | side);
    moves_t moves;
    return logic_error_text([&] { generate(table, moves); });
}

std::string move_error(int piece1_id, int piece2_id, unsigned int side) {
    return error_of(piece1_id, piece2_id, side,
                    [](Egt4Pieces& table, moves_t& moves) { table.generate_moves(moves); });
}

std::string previous_move_error(int piece1_id, int piece2_id, unsigned int side) {
    return error_of(piece1_id, piece2_id, side, [](Egt4Pieces& table, moves_t& moves) {
        table.generate_previous_moves(moves);
    });
}

/// Piece ids, side to move and the end of the text that they give.
using fault_t = std::tuple<int, int, unsigned int, std::string>;

}  // namespace

class Egt4PiecesMoves : public testing::Test {
 protected:
    Egt4Pieces kbnk_{shared_attacks(), white_knight, white_bishop};
    Egt4Pieces kqkr_{shared_attacks(), white_queen, black_rook};
    Egt4Pieces krkn_{shared_attacks(), white_rook, black_knight};
};

TEST_F(Egt4PiecesMoves, WhiteMovesPiece1ThenPiece2ThenTheKingAscending) {
    EXPECT_EQ(moves_of(kbnk_, "7k/8/8/8/8/8/8/KN5B w"),
              "Nb1d2 Nb1a3 Nb1c3 "
              "Bh1g2 Bh1f3 Bh1e4 Bh1d5 Bh1c6 Bh1b7 Bh1a8 "
              "Ka1a2 Ka1b2");
}

TEST_F(Egt4PiecesMoves, BlackMovesPiece2ThenTheKingAscending) {
    EXPECT_EQ(moves_of(kqkr_, "r6k/8/8/8/8/8/Q7/K7 b"),
              "ra8a2xQ ra8a3 ra8a4 ra8a5 ra8a6 ra8a7 ra8b8 ra8c8 ra8d8 ra8e8 ra8f8 ra8g8 "
              "kh8g7 kh8h7 kh8g8");
}

TEST_F(Egt4PiecesMoves, BlackPiece1MovesFirst) {
    Egt4Pieces table(shared_attacks(), black_knight, black_bishop);
    // The text tools take a black first piece for a white one; a key does not.
    table.set_key(0U << 19 | 63U << 13 | 7U << 7 | 56U << 1 | 0U);
    moves_t moves;
    table.generate_moves(moves);
    EXPECT_EQ(text(moves), "na8b6 na8c7 bh1g2 bh1f3 bh1e4 bh1d5 bh1c6 bh1b7 kh8g7 kh8h7 kh8g8");
}

TEST_F(Egt4PiecesMoves, WhiteCapturesPiece2) {
    EXPECT_EQ(moves_of(krkn_, "7k/8/8/8/8/8/n7/KR6 w"),
              "Rb1c1 Rb1d1 Rb1e1 Rb1f1 Rb1g1 Rb1h1 Rb1b2 Rb1b3 Rb1b4 Rb1b5 Rb1b6 Rb1b7 Rb1b8 "
              "Ka1a2xn Ka1b2");
}

TEST_F(Egt4PiecesMoves, BlackCapturesBothPieces) {
    EXPECT_EQ(moves_of(kbnk_, "K7/8/8/8/8/1N6/1Bk5/8 b"),
              "kc2b1 kc2c1 kc2d1 kc2b2xB kc2d2 kc2b3xN kc2c3 kc2d3");
}

TEST_F(Egt4PiecesMoves, WhiteDoesNotCaptureABlackPiece1) {
    // By design the first piece counts as White's.
    Egt4Pieces table(shared_attacks(), black_knight, black_bishop);
    table.set_key(0U << 19 | 63U << 13 | 8U << 7 | 1U << 1 | 1U);
    moves_t moves;
    table.generate_moves(moves);
    EXPECT_EQ(text(moves), "Ka1b1 Ka1a2xb Ka1b2");
}

TEST_F(Egt4PiecesMoves, CapturedPiecesDoNotMove) {
    EXPECT_EQ(moves_of(kqkr_, "7k/8/8/8/8/8/8/K7 w"), "Ka1b1 Ka1a2 Ka1b2");
    EXPECT_EQ(moves_of(kqkr_, "7k/8/8/8/8/8/8/K7 b"), "kh8g7 kh8h7 kh8g8");
}

TEST_F(Egt4PiecesMoves, KingsStepNextToEachOtherAndIntoAttacks) {
    EXPECT_EQ(moves_of(kqkr_, "8/8/8/8/8/k7/6Q1/K7 b"), "ka3a2 ka3b2 ka3b3 ka3a4 ka3b4");
}

TEST_F(Egt4PiecesMoves, MovesAreNormalWithoutCheckBit) {
    moves_t moves;
    kqkr_.fen("7k/8/8/8/8/8/r6Q/K7 w");
    kqkr_.generate_moves(moves);
    ASSERT_FALSE(moves.empty());
    for (Move const& move : moves) {
        EXPECT_EQ(move.code(), normal_move);
        EXPECT_EQ(move.xcode(), xnormal_move);
        EXPECT_FALSE(move.check());
    }
}

TEST_F(Egt4PiecesMoves, WhiteCameWithKingPiece1AndPiece2) {
    EXPECT_EQ(previous_moves_of(kbnk_, "7k/8/8/8/8/8/8/KN5B b"),
              "Ka2a1 Kb2a1 Nd2b1 Na3b1 Nc3b1 "
              "Bg2h1 Bf3h1 Be4h1 Bd5h1 Bc6h1 Bb7h1 Ba8h1");
}

TEST_F(Egt4PiecesMoves, BlackCameWithKingAndPiece2) {
    EXPECT_EQ(previous_moves_of(krkn_, "7k/8/8/8/8/n7/R7/K7 w"),
              "kg7h8 kh7h8 kg8h8 nb1a3 nc2a3 nc4a3 nb5a3");
}

TEST_F(Egt4PiecesMoves, WhiteMayHaveTakenTheBlackPiece) {
    EXPECT_EQ(previous_moves_of(krkn_, "6Rk/8/8/8/8/8/8/K7 b"),
              "Kb1a1 Kb1a1xn Ka2a1 Ka2a1xn Kb2a1 Kb2a1xn "
              "Rg1g8 Rg1g8xn Rg2g8 Rg2g8xn Rg3g8 Rg3g8xn Rg4g8 Rg4g8xn Rg5g8 Rg5g8xn "
              "Rg6g8 Rg6g8xn Rg7g8 Rg7g8xn Ra8g8 Ra8g8xn Rb8g8 Rb8g8xn Rc8g8 Rc8g8xn "
              "Rd8g8 Rd8g8xn Re8g8 Re8g8xn Rf8g8 Rf8g8xn");
}

TEST_F(Egt4PiecesMoves, WhiteHasNotTakenAWhitePiece) {
    EXPECT_EQ(previous_moves_of(kbnk_, "7k/8/8/8/8/8/8/KN6 b"), "Ka2a1 Kb2a1 Nd2b1 Na3b1 Nc3b1");
    EXPECT_EQ(previous_moves_of(kbnk_, "7k/8/8/8/8/8/6B1/K7 b"),
              "Kb1a1 Ka2a1 Kb2a1 "
              "Bf1g2 Bh1g2 Bf3g2 Bh3g2 Be4g2 Bd5g2 Bc6g2 Bb7g2 Ba8g2");
}

TEST_F(Egt4PiecesMoves, BlackKingMayHaveTakenPiece1OrAWhitePiece2) {
    EXPECT_EQ(previous_moves_of(kbnk_, "7k/8/8/8/8/8/8/K7 w"),
              "kg7h8 kg7h8xN kg7h8xB kh7h8 kh7h8xN kh7h8xB kg8h8 kg8h8xN kg8h8xB");
    EXPECT_EQ(previous_moves_of(kbnk_, "7k/8/8/8/8/8/8/KN6 w"),
              "kg7h8 kg7h8xB kh7h8 kh7h8xB kg8h8 kg8h8xB");
}

TEST_F(Egt4PiecesMoves, BlackPiecesMayHaveTakenPiece1) {
    EXPECT_EQ(previous_moves_of(krkn_, "7k/8/8/8/8/8/8/K6n w"),
              "kg7h8 kg7h8xR kh7h8 kh7h8xR kg8h8 kg8h8xR "
              "nf2h1 nf2h1xR ng3h1 ng3h1xR");
    EXPECT_EQ(previous_moves_of(krkn_, "7k/8/8/8/8/8/8/K7 w"),
              "kg7h8 kg7h8xR kh7h8 kh7h8xR kg8h8 kg8h8xR")
        << "a captured black piece has taken nothing";
}

TEST_F(Egt4PiecesMoves, TakingBackAnUncaptureReturnsThePiece) {
    kbnk_.fen(positions::bare_kings_in_corners);
    moves_t moves;
    kbnk_.generate_previous_moves(moves);
    kbnk_.unmake_move(moves.at(2));
    EXPECT_EQ(kbnk_.fen(), "7B/6k1/8/8/8/8/8/K7 b - - 0 1");
}

TEST_F(Egt4PiecesMoves, EachMoveIsAPreviousMoveOfItsTargetAndBack) {
    using pair_t = std::pair<piece_t, piece_t>;
    for (auto const& [piece1, piece2] : std::initializer_list<pair_t>{
             {white_knight, white_bishop}, {white_queen, black_rook}, {white_rook, black_knight}}) {
        Egt4Pieces table(shared_attacks(), piece1, piece2);
        moves_t moves;
        moves_t previous;
        auto const holds = [](moves_t const& list, Move const& move) {
            return std::count(list.begin(), list.end(), move) == 1;
        };
        for (unsigned int key = 0; key < table.size(); key += short_tests ? 9973 : 997) {
            if (!Egt4Pieces::is_legal_key(key)) {
                continue;
            }
            table.set_key(key);
            std::string const start = table.fen();
            table.generate_moves(moves);
            for (Move const& move : moves) {
                // A captured king is no position.
                if (move.to().bitboard() & (table.white_king() | table.black_king())) {
                    continue;
                }
                table.make_move(move);
                table.generate_previous_moves(previous);
                table.unmake_move(move);
                ASSERT_TRUE(holds(previous, move)) << start << ' ' << text({move});
            }
            table.generate_previous_moves(previous);
            for (Move const& move : previous) {
                table.unmake_move(move);
                table.generate_moves(moves);
                table.make_move(move);
                ASSERT_TRUE(holds(moves, move)) << start << ' ' << text({move});
            }
            ASSERT_EQ(table.fen(), start);
        }
    }
}

TEST_F(Egt4PiecesMoves, RefusesImpossiblePiecesByTheirPlace) {
    for (auto const& [piece1, piece2, side, end] : std::initializer_list<fault_t>{
             {no_piece, black_rook, 1, "no_piece_id(1) error"},
             {white_rook, no_piece, 1, "no_piece_id(2) error"},
             {white_pawn, black_rook, 1, "pawns(1) not supported yet"},
             {white_rook, white_pawn, 1, "pawns(2) not supported yet"},
             {black_pawn, black_rook, 0, "pawns(3) not supported yet"},
             {white_rook, black_pawn, 0, "pawns(4) not supported yet"},
             {white_king, black_rook, 1, "piece1==white_king"},
             {black_king, black_rook, 0, "piece1==black_king"},
             {white_rook, white_king, 1, "piece2==white_king"},
             {white_rook, black_king, 0, "piece2==black_king"},
             {white_pawn, white_king, 1, "pawns(1) not supported yet"}}) {
        EXPECT_EQ(move_error(piece1, piece2, side), "Egt4Pieces::generate_moves   " + end);
    }
}

TEST_F(Egt4PiecesMoves, RefusesAPieceOnlyWhenItsSideMoves) {
    EXPECT_EQ(move_error(white_pawn, black_rook, 0), "no exception");
    EXPECT_EQ(move_error(no_piece, black_rook, 0), "no exception");
    EXPECT_EQ(move_error(white_rook, black_king, 1), "no exception");
    EXPECT_EQ(previous_move_error(white_rook, black_king, 0), "no exception");
    EXPECT_EQ(previous_move_error(white_pawn, black_rook, 1), "no exception");
}

TEST_F(Egt4PiecesMoves, RefusesImpossiblePiecesOfPreviousMovesByTheirPlace) {
    for (auto const& [piece1, piece2, side, end] : std::initializer_list<fault_t>{
             {no_piece, black_rook, 0, "no_piece_id(1) not supported yet"},
             {white_rook, no_piece, 0, "no_piece_id(1) not supported yet"},
             {white_pawn, black_rook, 0, "pawns(1) not supported yet"},
             {white_rook, white_pawn, 0, "pawns(2) not supported yet"},
             {black_pawn, black_rook, 0, "pawns(3) not supported yet"},
             {white_rook, black_pawn, 1, "pawns(4) not supported yet"},
             {white_king, black_rook, 0, "piece1==white_king"},
             {black_king, black_rook, 0, "piece1==black_king"},
             {white_rook, white_king, 0, "piece2==white_king"},
             {white_rook, black_king, 1, "piece2==black_king"}}) {
        EXPECT_EQ(previous_move_error(piece1, piece2, side),
                  "Egt4Pieces::generate_previous_moves   " + end);
    }
}

TEST_F(Egt4PiecesMoves, IdsThatAreNoPieceDoNotMove) {
    for (int const id : {7, 8, 15}) {
        Egt4Pieces table(shared_attacks(), static_cast<piece_t>(id), static_cast<piece_t>(id));
        for (unsigned int const side : {0U, 1U}) {
            table.set_key(63U << 13 | 40U << 7 | 38U << 1 | side);
            moves_t moves;
            table.generate_moves(moves);
            EXPECT_EQ(moves.size(), 3U) << id;
            table.generate_previous_moves(moves);
            EXPECT_EQ(moves.size(), 3U) << id;
        }
    }
}

}  // namespace orvelin::test
