#include <gtest/gtest.h>

#include "position/masks.h"
#include "support/fresh_evaluation.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

float passers(std::string const& fen) {
    return term_of(fen, term::passed_pawns);
}

/// FEN of two kings and three pawns whose pawn key ends in fourteen zero bits, so that their
/// record takes the slot of the board without pawns.
std::string fen_with_the_slot_of_no_pawns() {
    auto const& pawn = shared_tables().hash_keys.pawn;
    for (std::size_t a = 8; a < 56; ++a) {
        for (std::size_t b = a + 1; b < 56; ++b) {
            for (std::size_t c = 8; c < 56; ++c) {
                if (c == a || c == b || ((pawn[1][a] ^ pawn[1][b] ^ pawn[9][c]) & 16383U) != 0) {
                    continue;
                }
                ChessPosition position(shared_tables());
                position.fen(positions::bare_kings_in_corners);
                position.set_piece_on(Square(static_cast<int>(a)), Piece(1));
                position.set_piece_on(Square(static_cast<int>(b)), Piece(1));
                position.set_piece_on(Square(static_cast<int>(c)), Piece(9));
                return position.fen();
            }
        }
    }
    return "";
}

std::string const bare_kings = "7k/8/8/8/8/8/8/4K3 w - - 0 1";

TEST(EvaluationPawns, BoardWithoutPawnsReadsTheEmptyRecord) {
    FreshEvaluation evaluated(bare_kings);
    evaluated.score();
    EXPECT_EQ(evaluated.evaluation().pawn_evals(), 0U);
    EXPECT_EQ(evaluated.term(term::open_files_on_king), 0.0F);
    evaluated.go_on("4k3/p7/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_NE(evaluated.term(term::rookpawn), 0.0F);
    evaluated.go_on(bare_kings);
    EXPECT_EQ(evaluated.evaluation().pawn_evals(), 2U);
    EXPECT_EQ(evaluated.evaluation().missed_pht_reads(), 1U);
    EXPECT_EQ(evaluated.term(term::rookpawn), 0.0F);
    EXPECT_EQ(evaluated.term(term::open_files_on_king), 0.0F);
}

TEST(EvaluationPawns, BoardWithoutPawnsGetsFullSetsOnceItsSlotWasTaken) {
    std::string const taker = fen_with_the_slot_of_no_pawns();
    ASSERT_FALSE(taker.empty());
    FreshEvaluation evaluated(taker);
    evaluated.score();
    evaluated.go_on(bare_kings);
    EXPECT_EQ(evaluated.evaluation().missed_pht_reads(), 2U);
    // Four squares around h8 minus six around e1.
    EXPECT_EQ(evaluated.term(term::open_files_on_king), -30.0F);
    evaluated.go_on("4k3/p7/8/8/8/8/8/4K3 w - - 0 1");
    evaluated.go_on(bare_kings);
    EXPECT_EQ(evaluated.evaluation().missed_pht_reads(), 3U);
    EXPECT_EQ(evaluated.term(term::open_files_on_king), -30.0F);
}

TEST(EvaluationPawns, UnchangedStructureIsNotLookedUpAgain) {
    FreshEvaluation evaluated("4k3/pp6/8/8/8/8/P1P5/4K3 w - - 0 1");
    evaluated.score();
    EXPECT_EQ(evaluated.evaluation().pawn_evals(), 1U);
    float const islands = evaluated.term(term::pawn_islands);
    evaluated.go_on("4k2n/pp6/8/8/8/8/P1P5/K7 b - - 0 1");
    EXPECT_EQ(evaluated.evaluation().pawn_evals(), 1U);
    EXPECT_EQ(evaluated.term(term::pawn_islands), islands);
    evaluated.go_on("4k3/pp6/8/8/8/8/PP6/4K3 w - - 0 1");
    EXPECT_EQ(evaluated.evaluation().pawn_evals(), 2U);
    evaluated.go_on("4k3/pp6/8/8/8/8/P1P5/4K3 w - - 0 1");
    EXPECT_EQ(evaluated.evaluation().pawn_evals(), 3U);
    EXPECT_EQ(evaluated.evaluation().missed_pht_reads(), 2U);
    EXPECT_EQ(evaluated.term(term::pawn_islands), islands);
}

TEST(EvaluationPawns, TermsOfTheRecordAreBlackMinusWhite) {
    FreshEvaluation evaluated("4k3/p1p4p/2p5/8/8/8/PPP5/4K3 w - - 0 1");
    evaluated.score();
    EXPECT_EQ(evaluated.term(term::rookpawn), 1.0F);
    EXPECT_EQ(evaluated.term(term::doubled_pawns), 1.0F);
    // Every black pawn stands alone; of White's, none does.
    EXPECT_EQ(evaluated.term(term::weak_pawns), 4.0F);
    EXPECT_EQ(evaluated.term(term::isolated_pawns), 4.0F);
    EXPECT_EQ(evaluated.term(term::pawn_islands), 2.0F);
}

TEST(EvaluationPawns, PassedPawnsOfBothSides) {
    FreshEvaluation evaluated("4k3/p7/8/8/8/8/7P/4K3 w - - 0 1");
    evaluated.score();
    EXPECT_EQ(evaluated.evaluation().passed_pawns(),
              Square("a7").bitboard() | Square("h2").bitboard());
}

TEST(EvaluationPawns, BlockedPawnsCountAnyPieceInFront) {
    EXPECT_EQ(term_of("4k3/8/4p3/4P3/8/8/8/4K3 w - - 0 1", term::blocked_pawns), 0.0F);
    EXPECT_EQ(term_of("4k3/4p3/4R3/8/8/8/8/4K3 w - - 0 1", term::blocked_pawns), 1.0F);
    EXPECT_EQ(term_of("4k3/8/8/8/8/4K3/4P3/8 w - - 0 1", term::blocked_pawns), -1.0F);
}

TEST(EvaluationPawns, BadBishopCountsPawnsOnTheColourOfALoneBishop) {
    // White's light bishop: a2 and e4 are light, b2 is dark.
    EXPECT_EQ(term_of("4k3/8/8/8/4P3/8/PP6/4KB2 w - - 0 1", term::bad_bishop), -2.0F);
    EXPECT_EQ(term_of("4k3/8/8/8/4P3/8/PP6/2B1K3 w - - 0 1", term::bad_bishop), -1.0F);
    EXPECT_EQ(term_of("4k3/8/8/8/4P3/8/PP6/2B1KB2 w - - 0 1", term::bad_bishop), 0.0F);
    EXPECT_EQ(term_of("2b1k3/1p6/p7/8/8/8/8/4K3 w - - 0 1", term::bad_bishop), 2.0F);
}

TEST(EvaluationPawns, PassedPawnNearHomeIsNeverCountedAlone) {
    // The race would give 50 if it were run.
    EXPECT_EQ(passers("7k/8/8/8/8/P7/8/K7 w - - 0 1"), 0.0F);
}

TEST(EvaluationPawns, RookOnTheStopSquareIsPenalisedOnlyAsAnAttacker) {
    EXPECT_EQ(passers("8/4r3/4P3/8/8/8/8/k6K w - - 0 1"), 100.0F);
    EXPECT_EQ(passers("8/4n3/4P3/8/8/8/8/k6K w - - 0 1"), 50.0F);
    // Defended by a second rook, the stop square is attacked.
    EXPECT_EQ(passers("8/r3r3/4P3/8/8/8/8/k6K w - - 0 1"), 50.0F);
}

TEST(EvaluationPawns, KingOnTheStopSquareBlocksIt) {
    // White rook e1 stands behind: 100 + 50 - 150 (king) - 50 (block) is raised to 0; on rank 7
    // 200 + 50 - 150 - 50 stays.
    EXPECT_EQ(passers("8/4k3/4P3/8/8/8/8/K3R3 w - - 0 1"), 0.0F);
    EXPECT_EQ(passers("4k3/4P3/8/8/8/8/8/K3R2n w - - 0 1"), 50.0F);
}

TEST(EvaluationPawns, StopSquareAttackedAndNotDefended) {
    EXPECT_EQ(passers("8/r7/4P3/8/8/8/8/k6K w - - 0 1"), 50.0F);
    EXPECT_EQ(passers("8/r7/4P3/8/1B6/8/8/k6K w - - 0 1"), 100.0F);
}

TEST(EvaluationPawns, KingInsideTheSquareOfThePawnGetsNoBonus) {
    // 50, and 35 for the king three steps away; one step further the full bonus and 15 less.
    EXPECT_EQ(passers("1k6/8/8/4P3/8/8/8/7K w - - 0 1"), 15.0F);
    EXPECT_EQ(passers("k7/8/8/4P3/8/8/8/7K w - - 0 1"), 235.0F);
    EXPECT_EQ(passers("1k6/8/8/4P3/8/8/8/7K b - - 0 1"), 15.0F);
}

TEST(EvaluationPawns, RaceBonusByRank) {
    EXPECT_EQ(passers("8/P7/8/8/8/8/8/K6k w - - 0 1"), 600.0F);
    EXPECT_EQ(passers("8/8/P7/8/8/8/8/K6k w - - 0 1"), 400.0F);
    EXPECT_EQ(passers("8/8/8/P7/8/8/8/K6k w - - 0 1"), 250.0F);
    EXPECT_EQ(passers("8/8/8/8/P7/8/8/K6k w - - 0 1"), 125.0F);
    // A second passed pawn on rank 3 of a file apart brings its 50 along.
    EXPECT_EQ(passers("8/8/8/8/P7/2P5/8/K6k w - - 0 1"), 175.0F);
}

TEST(EvaluationPawns, AnyBlackPieceCallsTheRaceOff) {
    EXPECT_EQ(passers("8/P7/8/8/8/8/8/K5nk w - - 0 1"), 200.0F);
}

TEST(EvaluationPawns, EnemyKingNearAPassedPawn) {
    // A black knight keeps the race out of it.
    EXPECT_EQ(passers("7n/P1k5/8/8/8/8/8/K7 w - - 0 1"), 125.0F);
    EXPECT_EQ(passers("7n/P2k4/8/8/8/8/8/K7 w - - 0 1"), 165.0F);
    EXPECT_EQ(passers("7n/P3k3/8/8/8/8/8/K7 w - - 0 1"), 185.0F);
    EXPECT_EQ(passers("7n/P4k2/8/8/8/8/8/K7 w - - 0 1"), 200.0F);
    // On b7 the king also attacks the stop square.
    EXPECT_EQ(passers("7n/Pk6/8/8/8/8/8/K7 w - - 0 1"), 0.0F);
}

TEST(EvaluationPawns, RooksBehindAPassedPawnCountOnceForEachSide) {
    // 25, 100 for the race and 35 less for the king three steps away.
    EXPECT_EQ(passers("8/8/8/8/4P3/8/8/K6k w - - 0 1"), 90.0F);
    EXPECT_EQ(passers("8/8/8/8/4P3/8/8/K3R2k w - - 0 1"), 140.0F);
    EXPECT_EQ(passers("8/8/8/8/4P3/8/4R3/K3R2k w - - 0 1"), 140.0F);
    EXPECT_EQ(passers("8/8/8/8/P7/8/8/r1K4k w - - 0 1"), 0.0F);
    EXPECT_EQ(passers("8/8/8/P7/8/P7/R7/r1K4k w - - 0 1"), 50.0F);
}

TEST(EvaluationPawns, BlackPassedPawnsMirrorWhiteOnes) {
    EXPECT_EQ(passers("7K/8/8/8/4p3/8/8/1k6 w - - 0 1"), -235.0F);
    EXPECT_EQ(passers("7k/8/8/8/4p3/8/8/1K6 w - - 0 1"), -15.0F);
    EXPECT_EQ(passers("7k/8/8/8/4p3/8/8/K7 w - - 0 1"), -235.0F);
    EXPECT_EQ(passers("K6k/8/8/8/8/4p3/4R3/8 w - - 0 1"), -100.0F);
    EXPECT_EQ(passers("K6k/8/8/8/8/4p3/4N3/8 w - - 0 1"), -50.0F);
}

}  // namespace

}  // namespace orvelin::test
