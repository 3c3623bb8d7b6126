#include "evaluation/piece_square_tables.h"

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "position/chess_position.h"
#include "position/move.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin {
namespace {

using test::shared_tables;
using sums_t = std::array<PieceSquareTables::pair_t, 15>;

sums_t sums_of(PieceSquareTables const& tables) {
    sums_t sums;
    for (int id = 0; id < 15; ++id) {
        sums[static_cast<std::size_t>(id)] = tables.score(id);
    }
    return sums;
}

ChessPosition position_of(std::string const& fen) {
    ChessPosition position(shared_tables());
    position.fen(fen);
    return position;
}

Move move_of(char const* from, char const* to, move_t code, int piece, int capture) {
    return {Square(std::string(from)), Square(std::string(to)), static_cast<unsigned int>(code),
            Piece(piece), Piece(capture)};
}

struct table_case_t {
    char const* fen;
    Move move;
};

// One move of every kind for both sides, Chess960 castling among them.
std::vector<table_case_t> all_kinds() {
    return {
        {"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", move_of("e2", "e4", normal_move, 1, 0)},
        {"4k3/8/8/3p4/4N3/8/8/4K3 b - - 0 1", move_of("d5", "e4", normal_move, 9, 2)},
        {"3rk3/2P5/8/8/8/8/8/4K3 w - - 0 1", move_of("c7", "d8", promo_queen, 1, 12)},
        {"4k3/2P5/8/8/8/8/8/4K3 w - - 0 1", move_of("c7", "c8", promo_rook, 1, 0)},
        {"4k3/8/8/8/8/8/2p5/3BK3 b - - 0 1", move_of("c2", "d1", promo_bishop, 9, 3)},
        {"4k3/8/8/8/8/8/2p5/4K3 b - - 0 1", move_of("c2", "c1", promo_knight, 9, 0)},
        {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", move_of("e5", "d6", en_passant, 1, 9)},
        {"4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1", move_of("d4", "e3", en_passant, 9, 1)},
        {positions::white_castlings, move_of("e1", "h1", castling, 6, 0)},
        {positions::white_castlings, move_of("e1", "a1", castling, 6, 0)},
        {"r3k2r/8/8/8/8/8/8/4K3 b kq - 0 1", move_of("e8", "h8", castling, 14, 0)},
        {"r3k2r/8/8/8/8/8/8/4K3 b kq - 0 1", move_of("e8", "a8", castling, 14, 0)},
        // King and rook change places, or one of them stays where it is.
        {"4k3/8/8/8/8/8/8/5KR1 w G - 0 1", move_of("f1", "g1", castling, 6, 0)},
        {"4k3/8/8/8/8/8/8/2RK4 w C - 0 1", move_of("d1", "c1", castling, 6, 0)},
        {"rk6/8/8/8/8/8/8/4K3 b a - 0 1", move_of("b8", "a8", castling, 14, 0)},
        {"5rk1/8/8/8/8/8/8/4K3 b f - 0 1", move_of("g8", "f8", castling, 14, 0)},
    };
}

TEST(PieceSquareTablesTest, AFreshObjectHasZeroSumsAndNoPosition) {
    PieceSquareTables const tables;
    EXPECT_EQ(sums_of(tables), sums_t{});
    EXPECT_EQ(tables.get_score(), PieceSquareTables::pair_t(0.0F, 0.0F));
    EXPECT_TRUE(tables.verify_score());
}

TEST(PieceSquareTablesTest, StartPositionCancelsForEveryType) {
    ChessPosition position(shared_tables());
    position.newgame();
    PieceSquareTables tables;
    tables.init(position);
    PieceSquareTables::pair_t const zero{0.0F, 0.0F};
    EXPECT_EQ(tables.get_pawn_score(), zero);
    EXPECT_EQ(tables.get_knight_score(), zero);
    EXPECT_EQ(tables.get_bishop_score(), zero);
    EXPECT_EQ(tables.get_rook_score(), zero);
    EXPECT_EQ(tables.get_queen_score(), zero);
    EXPECT_EQ(tables.get_king_score(), zero);
    EXPECT_NE(tables.score(2).first, 0.0F);
}

TEST(PieceSquareTablesTest, InitAddsTheSquaresInAscendingOrder) {
    ChessPosition const position = position_of("4k3/3q4/2q5/8/1Q6/8/Q6Q/4K3 w - - 0 1");
    PieceSquareTables tables;
    tables.init(position);
    float first = 0.0F;
    float second = 0.0F;
    for (int const square : {8, 15, 25}) {
        first += tables.middle_game(5, square);
        second += tables.end_game(5, square);
    }
    EXPECT_EQ(tables.score(5), PieceSquareTables::pair_t(first, second));
    EXPECT_EQ(tables.score(13).first, tables.middle_game(13, 42) + tables.middle_game(13, 51));
    EXPECT_EQ(tables.get_queen_score().first, tables.score(5).first + tables.score(13).first);
}

TEST(PieceSquareTablesTest, InitDropsWhatWasThere) {
    ChessPosition const one = position_of("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    ChessPosition const other = position_of("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    PieceSquareTables used;
    used.init(one);
    used.make_move(move_of("e2", "e4", normal_move, 1, 0));
    used.init(other);
    PieceSquareTables fresh;
    fresh.init(other);
    EXPECT_EQ(sums_of(used), sums_of(fresh));
}

TEST(PieceSquareTablesTest, EveryKindOfMoveGivesTheSumsOfTheNewBoard) {
    for (table_case_t const& kind : all_kinds()) {
        ChessPosition position = position_of(kind.fen);
        PieceSquareTables tables;
        tables.init(position);
        position.make_move(kind.move);
        tables.make_move(kind.move);
        EXPECT_TRUE(tables.verify_score()) << kind.fen;
    }
}

TEST(PieceSquareTablesTest, UnmakingComesBackWithinTheTolerance) {
    for (table_case_t const& kind : all_kinds()) {
        ChessPosition const position = position_of(kind.fen);
        PieceSquareTables tables;
        tables.init(position);
        tables.make_move(kind.move);
        tables.unmake_move(kind.move);
        EXPECT_TRUE(tables.verify_score()) << kind.fen;
    }
}

TEST(PieceSquareTablesTest, ANonCaptureLeavesTheSumOfNoPieceAtZero) {
    for (table_case_t const& kind : all_kinds()) {
        ChessPosition const position = position_of(kind.fen);
        PieceSquareTables tables;
        tables.init(position);
        tables.make_move(kind.move);
        EXPECT_EQ(tables.score(0), PieceSquareTables::pair_t(0.0F, 0.0F));
        tables.unmake_move(kind.move);
        EXPECT_EQ(tables.score(0), PieceSquareTables::pair_t(0.0F, 0.0F));
    }
}

TEST(PieceSquareTablesTest, CastlingWithTheRookBesideTheKingsTarget) {
    ChessPosition position = position_of("4k3/8/8/8/8/8/8/4KR2 w F - 0 1");
    PieceSquareTables tables;
    tables.init(position);
    Move const move = move_of("e1", "f1", castling, 6, 0);
    position.make_move(move);
    tables.make_move(move);
    EXPECT_EQ(position.get_piece_id_from(Square(std::string("g1"))), 6);
    EXPECT_TRUE(tables.verify_score());
    EXPECT_NEAR(tables.score(4).first, tables.middle_game(4, 5), 1e-4);
    EXPECT_NEAR(tables.score(6).second, tables.end_game(6, 6), 1e-4);
}

TEST(PieceSquareTablesTest, TheNullMoveChangesNothing) {
    ChessPosition position(shared_tables());
    position.newgame();
    PieceSquareTables tables;
    tables.init(position);
    sums_t const before = sums_of(tables);
    tables.make_move(Move());
    EXPECT_EQ(sums_of(tables), before);
    tables.unmake_move(Move());
    EXPECT_EQ(sums_of(tables), before);
    // The code alone decides, whatever else the word holds.
    tables.make_move(move_of("e2", "e4", nullmove, 1, 9));
    EXPECT_EQ(sums_of(tables), before);
    tables.unmake_move(move_of("e2", "e4", nullmove, 1, 9));
    EXPECT_EQ(sums_of(tables), before);
}

// The order of the additions is behaviour: other orders round differently.
TEST(PieceSquareTablesTest, MakingAddsTheTargetBeforeItTakesTheOrigin) {
    ChessPosition const position = position_of("4k3/8/8/8/8/8/8/RNBQKBNR w - - 0 1");
    PieceSquareTables tables;
    int origins_differing = 0;
    for (int from = 0; from < 64; ++from) {
        for (int to = 0; to < 64; ++to) {
            if (from == to) {
                continue;
            }
            tables.init(position);
            float const start = tables.score(4).first;
            float const in = tables.middle_game(4, to);
            float const out = tables.middle_game(4, from);
            Move const move{Square(from), Square(to), static_cast<unsigned int>(normal_move),
                            Piece(4), Piece(0)};
            tables.make_move(move);
            float made = start + in;
            made -= out;
            EXPECT_EQ(tables.score(4).first, made);
            tables.unmake_move(move);
            float unmade = made - in;
            unmade += out;
            EXPECT_EQ(tables.score(4).first, unmade);
            float other = start - out;
            other += in;
            if (other != made) {
                ++origins_differing;
            }
        }
    }
    EXPECT_GT(origins_differing, 0);
}

TEST(PieceSquareTablesTest, CastlingTakesTheOriginBeforeItAddsTheTarget) {
    ChessPosition const position = position_of(positions::white_castlings);
    PieceSquareTables tables;
    tables.init(position);
    float const king = tables.score(6).second;
    float const rook = tables.score(4).first;
    tables.make_move(move_of("e1", "h1", castling, 6, 0));
    float king_made = king - tables.end_game(6, 4);
    king_made += tables.end_game(6, 6);
    float rook_made = rook - tables.middle_game(4, 7);
    rook_made += tables.middle_game(4, 5);
    EXPECT_EQ(tables.score(6).second, king_made);
    EXPECT_EQ(tables.score(4).first, rook_made);
    tables.unmake_move(move_of("e1", "h1", castling, 6, 0));
    float king_unmade = king_made + tables.end_game(6, 4);
    king_unmade -= tables.end_game(6, 6);
    float rook_unmade = rook_made + tables.middle_game(4, 7);
    rook_unmade -= tables.middle_game(4, 5);
    EXPECT_EQ(tables.score(6).second, king_unmade);
    EXPECT_EQ(tables.score(4).first, rook_unmade);
}

TEST(PieceSquareTablesTest, APromotionThatDoesNotMoveUpIsBlacks) {
    ChessPosition const position = position_of(positions::bare_kings);
    PieceSquareTables tables;
    tables.init(position);
    tables.make_move(move_of("c7", "c8", promo_queen, 1, 0));
    EXPECT_EQ(tables.score(5).first, tables.middle_game(5, 58));
    EXPECT_EQ(tables.score(13).first, 0.0F);
    tables.init(position);
    tables.make_move(move_of("c2", "c1", promo_queen, 9, 0));
    EXPECT_EQ(tables.score(5).first, 0.0F);
    EXPECT_EQ(tables.score(13).first, tables.middle_game(13, 2));
}

TEST(PieceSquareTablesTest, TotalIsTheSumOverAllPieces) {
    ChessPosition const position = position_of("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    PieceSquareTables tables;
    tables.init(position);
    EXPECT_NEAR(tables.get_score().first, tables.middle_game(1, 12), 1e-5);
    EXPECT_NEAR(tables.get_score().second, tables.end_game(1, 12), 1e-5);
}

TEST(PieceSquareTablesTest, VerifyReportsTheFirstDifferenceInTheMiddleGame) {
    ChessPosition const position = position_of("4k3/8/8/8/8/8/8/1N2K3 w - - 0 1");
    PieceSquareTables tables;
    tables.init(position);
    tables.make_move(move_of("b1", "c3", normal_move, 2, 0));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(tables.verify_score());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "verify correct score[2].first -11.2156 != incremental score[2].first 9.759\n");
}

TEST(PieceSquareTablesTest, VerifyReportsTheFirstDifferenceInTheEndGame) {
    ChessPosition const position = position_of("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    PieceSquareTables tables;
    tables.init(position);
    // Ranks 2 and 3 of the a file have the same middle-game value.
    tables.make_move(move_of("a2", "a3", normal_move, 1, 0));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(tables.verify_score());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "verify correct score[1].second -27.77 != incremental score[1].second -16.662\n");
}

TEST(PieceSquareTablesTest, VerifyLetsSmallDriftPass) {
    ChessPosition const position = position_of("4k3/8/8/8/8/8/8/1N2K3 w - - 0 1");
    PieceSquareTables tables;
    tables.init(position);
    for (int i = 0; i < 1000; ++i) {
        tables.make_move(move_of("b1", "c3", normal_move, 2, 0));
        tables.unmake_move(move_of("b1", "c3", normal_move, 2, 0));
    }
    EXPECT_TRUE(tables.verify_score());
}

// Four steps of a bishop whose middle-game values add up to 0.0001; the end game is left as it was.
void drift_in_the_middle_game(PieceSquareTables& tables) {
    tables.make_move(move_of("c7", "a8", normal_move, 3, 0));
    tables.make_move(move_of("b6", "b3", normal_move, 3, 0));
}

// The same the other way round.
void drift_in_the_end_game(PieceSquareTables& tables) {
    tables.make_move(move_of("c7", "a8", normal_move, 3, 0));
    tables.make_move(move_of("c7", "b6", normal_move, 3, 0));
}

TEST(PieceSquareTablesTest, VerifyToleratesAHundredthInEachHalf) {
    ChessPosition const position = position_of(positions::bare_kings);
    for (auto const drift : {drift_in_the_middle_game, drift_in_the_end_game}) {
        PieceSquareTables tables;
        tables.init(position);
        for (int i = 0; i < 97; ++i) {
            drift(tables);
        }
        testing::internal::CaptureStderr();
        EXPECT_TRUE(tables.verify_score());
        for (int i = 97; i < 103; ++i) {
            drift(tables);
        }
        EXPECT_FALSE(tables.verify_score());
        EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    }
}

// Where a king never castles from, in a word made by hand.
TEST(PieceSquareTablesTest, CastlingFromAnyRankButTheFirstIsBlacks) {
    ChessPosition const position = position_of(positions::bare_kings);
    for (char const* from : {"e2", "e4", "e7", "e8"}) {
        PieceSquareTables tables;
        tables.init(position);
        PieceSquareTables::pair_t const white_king = tables.score(6);
        float const black_king = tables.score(14).second;
        tables.make_move(move_of(from, "h8", castling, 6, 0));
        EXPECT_EQ(tables.score(6), white_king) << from;
        EXPECT_EQ(tables.score(4).first, 0.0F) << from;
        EXPECT_NEAR(tables.score(12).first, tables.middle_game(12, 61) - tables.middle_game(12, 63),
                    1e-4)
            << from;
        int const origin = Square(std::string(from)).id();
        EXPECT_NEAR(tables.score(14).second,
                    black_king - tables.end_game(14, origin) + tables.end_game(14, 62), 1e-4)
            << from;
    }
}

}  // namespace
}  // namespace orvelin
