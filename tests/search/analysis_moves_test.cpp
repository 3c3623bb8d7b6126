#include <array>
#include <string>

#include "search/tt_move.h"
#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

using AnalysisMoves = AnalysisFixture;

/// Positions with castling on both sides, en passant, promotions, captures, checks and a start
/// array of Chess960.
std::array<char const*, 6> const positions = {
    positions::kiwipete,
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b KQkq - 3 7",
    positions::promotions,
    "r2q1rk1/pP1p2pp/Q4n2/bbp1p3/Np6/1B3NBn/pPPP1PPP/R3K2R b KQ - 0 1",
    "8/8/8/1Ppp3r/1K3p1k/8/4P1P1/1R6 w - c6 0 3",
    "nqbrknbr/pppppppp/8/8/8/8/PPPPPPPP/NQBRKNBR w HDhd - 0 1"};

void expect_same_sums(PieceSquareTables const& before, PieceSquareTables const& after,
                      std::string const& text) {
    for (int id = 0; id < 15; ++id) {
        EXPECT_NEAR(after.score(id).first, before.score(id).first, 0.001) << text << ' ' << id;
        EXPECT_NEAR(after.score(id).second, before.score(id).second, 0.001) << text << ' ' << id;
    }
}

PieceSquareTables const& sums_of(Analysis& analysis) {
    return analysis.evaluation().piece_square_tables();
}

}  // namespace

TEST_F(AnalysisMoves, MakeAndUnmakeRestoreEverything) {
    for (char const* const fen : positions) {
        set(fen);
        probe_.ply(7);
        ChessPosition const before = position_;
        PieceSquareTables const sums = sums_of(analysis_);
        for (Move const& candidate : moves()) {
            std::string const text = std::string(fen) + ' ' + candidate.algebraic(true);
            analysis_.make_move(candidate);
            EXPECT_NE(position_, before) << text;
            EXPECT_EQ(analysis_.ply(), 8) << text;
            EXPECT_TRUE(sums_of(analysis_).verify_score()) << text;
            analysis_.unmake_move(candidate);
            EXPECT_EQ(position_, before) << text;
            EXPECT_EQ(position_.get_hash(), before.get_hash()) << text;
            EXPECT_EQ(position_.get_pawnhash(), before.get_pawnhash()) << text;
            EXPECT_EQ(position_.materialindex().index(), before.materialindex().index()) << text;
            EXPECT_EQ(position_.history().size(), before.history().size()) << text;
            EXPECT_EQ(position_.check(), before.check()) << text;
            EXPECT_EQ(analysis_.ply(), 7) << text;
            expect_same_sums(sums, sums_of(analysis_), text);
        }
    }
}

TEST_F(AnalysisMoves, OnlyMateAttacksAreCounted) {
    set(positions[0]);
    for (int xcode = hashtable_move; xcode <= losing_capture; ++xcode) {
        Move candidate = move("e1h1");
        candidate.xcode(static_cast<xmove_t>(xcode));
        probe_.mate_attack_count(3);
        analysis_.make_move(candidate);
        EXPECT_EQ(analysis_.mate_attack_count(), xcode == mate_attack ? 4 : 3);
        analysis_.unmake_move(candidate);
        EXPECT_EQ(analysis_.mate_attack_count(), 3);
    }
}

TEST_F(AnalysisMoves, UnmakeReadsTheClassOfItsArgument) {
    set(positions[0]);
    Move candidate = move("e1h1");
    analysis_.make_move(candidate);
    candidate.xcode(mate_attack);
    analysis_.unmake_move(candidate);
    EXPECT_EQ(analysis_.mate_attack_count(), -1);
}

TEST_F(AnalysisMoves, UnmakeTakesBackTheMoveOfThePosition) {
    set(positions::white_castlings);
    ChessPosition const before = position_;
    analysis_.make_move(move("e1h1"));
    // Another word than the one made: the board follows the state stack, not the argument.
    analysis_.unmake_move(Move(Square("a1"), Square("a2"), normal_move, white_rook, no_piece));
    EXPECT_EQ(position_, before);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(sums_of(analysis_).verify_score());
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
}

TEST_F(AnalysisMoves, NullMoveChangesTheSideAndNotTheSums) {
    set(positions[0]);
    PieceSquareTables const sums = sums_of(analysis_);
    ChessPosition const before = position_;
    probe_.mate_attack_count(2);
    analysis_.make_nullmove();
    EXPECT_EQ(position_.stm(), 0);
    EXPECT_EQ(analysis_.ply(), 1);
    EXPECT_EQ(position_.last_move(), Move());
    EXPECT_NE(position_.get_hash(), before.get_hash());
    for (int id = 0; id < 15; ++id) {
        EXPECT_EQ(sums_of(analysis_).score(id), sums.score(id));
    }
    EXPECT_EQ(analysis_.mate_attack_count(), 2);
    analysis_.unmake_nullmove();
    EXPECT_EQ(position_, before);
    EXPECT_EQ(position_.get_hash(), before.get_hash());
    EXPECT_EQ(analysis_.ply(), 0);
    for (int id = 0; id < 15; ++id) {
        EXPECT_EQ(sums_of(analysis_).score(id), sums.score(id));
    }
}

TEST_F(AnalysisMoves, ScreenAcceptsARookThatMovesLikeAKnight) {
    set("7k/8/8/8/8/8/8/K2R4 w - - 0 1");
    TTmove odd(Move(Square("d1"), Square("e3"), normal_move, white_rook, no_piece));
    EXPECT_TRUE(analysis_.is_legal(odd));
    // Nor are path, own piece on the destination and the own king's safety looked at.
    TTmove onto_own(Move(Square("d1"), Square("a1"), normal_move, white_rook, no_piece));
    EXPECT_TRUE(analysis_.is_legal(onto_own));
    TTmove beyond(Move(Square("a1"), Square("h7"), normal_move, white_king, no_piece));
    EXPECT_TRUE(analysis_.is_legal(beyond));
}

TEST_F(AnalysisMoves, ScreenRefusesWhatCannotBeAMove) {
    set("7k/8/8/3n4/8/8/8/K2R4 w - - 0 1");
    TTmove none;
    EXPECT_FALSE(analysis_.is_legal(none));
    TTmove equal_squares(Move(Square("d1"), Square("d1"), normal_move, white_rook, no_piece));
    EXPECT_FALSE(analysis_.is_legal(equal_squares));
    TTmove from_empty(Move(Square("e4"), Square("e5"), normal_move, white_pawn, no_piece));
    EXPECT_FALSE(analysis_.is_legal(from_empty));
    TTmove from_enemy(Move(Square("d5"), Square("e3"), normal_move, black_knight, no_piece));
    EXPECT_FALSE(analysis_.is_legal(from_enemy));
    TTmove takes_king(Move(Square("d1"), Square("h8"), normal_move, white_rook, black_king));
    EXPECT_FALSE(analysis_.is_legal(takes_king));
    TTmove takes_knight(move("d1d5"));
    EXPECT_TRUE(analysis_.is_legal(takes_knight));
}

TEST_F(AnalysisMoves, ScreenHoldsForBlackToo) {
    set("7k/8/8/3n4/8/8/8/K2R4 b - - 0 1");
    TTmove own(move("d5e3"));
    EXPECT_TRUE(analysis_.is_legal(own));
    TTmove enemy(Move(Square("d1"), Square("d2"), normal_move, white_rook, no_piece));
    EXPECT_FALSE(analysis_.is_legal(enemy));
    TTmove takes_king(Move(Square("d5"), Square("a1"), normal_move, black_knight, white_king));
    EXPECT_FALSE(analysis_.is_legal(takes_king));
}

TEST_F(AnalysisMoves, DumpLineTellsCounterAndMoves) {
    set("7k/8/8/8/8/8/8/K2R4 w - - 0 1");
    std::string const start = analysis_.dump_line();
    std::uint64_t const counter = position_.get_make_move_counter();
    EXPECT_EQ(start, "(" + std::to_string(counter) + ") " + position_.history_str() + "\n");
    analysis_.make_move(move("d1d2"));
    analysis_.make_move(move("h8g8"));
    EXPECT_EQ(analysis_.dump_line(),
              "(" + std::to_string(counter + 2) + ") " + position_.history_str() + "\n");
    EXPECT_NE(analysis_.dump_line().find("d1d2 h8g8"), std::string::npos);
}

TEST_F(AnalysisMoves, StaticEvalForwards) {
    set(positions[2]);
    int const value = analysis_.static_eval();
    EXPECT_EQ(value, analysis_.evaluation().static_eval());
    EXPECT_EQ(position_.stm() == 1 ? static_cast<int>(analysis_.evaluation().score())
                                   : -static_cast<int>(analysis_.evaluation().score()),
              value);
}

}  // namespace orvelin::test
