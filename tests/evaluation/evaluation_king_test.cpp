#include <array>
#include <cmath>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>

#include "support/fresh_evaluation.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

/// Knights, bishops, rooks, queens.
using by_type_t = std::array<float, 4>;

/// Four neighbouring terms of a position, from that of the knights on.
by_type_t terms_by_type(std::string const& fen, std::size_t knight_term) {
    FreshEvaluation at(fen);
    at.score();
    return {at.term(knight_term), at.term(knight_term + 1), at.term(knight_term + 2),
            at.term(knight_term + 3)};
}

TEST(EvaluationKing, KingsInTheFarCornersCancel) {
    EXPECT_EQ(term_of(positions::bare_kings_in_corners, term::king_activity), 0.0F);
}

TEST(EvaluationKing, KingInTheCentreWithoutPawnsIsWorthTwo) {
    // The other king stands on no counted ring: second from the edge.
    EXPECT_EQ(term_of("8/1k6/8/8/4K3/8/8/8 w - - 0 1", term::king_activity), 2.0F);
    EXPECT_EQ(term_of("8/1k6/8/8/8/2K5/8/8 w - - 0 1", term::king_activity), 1.0F);
    EXPECT_EQ(term_of("8/1k6/8/8/8/8/8/K7 w - - 0 1", term::king_activity), -1.0F);
    EXPECT_EQ(term_of("8/8/8/4k3/8/8/8/K7 w - - 0 1", term::king_activity), -3.0F);
}

TEST(EvaluationKing, NoWeakPawnsAndNothingAheadGiveMinusForty) {
    // White: -16 - 24. Black: two steps from the weak pawn h2, nothing ahead: -4 - 24.
    EXPECT_EQ(term_of("8/6pp/8/3pp3/3PP2k/8/7P/1K6 w - - 0 1", term::king_activity), -12.0F);
}

TEST(EvaluationKing, KingActivityCountsTheWayToTheSquaresAheadOfAPassedPawn) {
    // White: D(a1, weak h6) = 7 and D(a1, a5...) = 4; black: D(h8, a3) = 7, D(h8, h4...) = 4.
    EXPECT_EQ(term_of("7k/8/7p/8/8/P7/8/K7 w - - 0 1", term::king_activity), 0.0F);
    // White king on a4: D(weak h6) = 7, D(a5) = 1.
    EXPECT_EQ(term_of("7k/8/7p/8/K7/P7/8/8 w - - 0 1", term::king_activity), 9.0F);
}

TEST(EvaluationKing, KingActivityIsWeightedByThePhase) {
    FreshEvaluation evaluated("8/1k6/8/8/4K3/8/8/Q7 w - - 0 1");
    evaluated.score();
    EXPECT_EQ(evaluated.term(term::king_activity), 2.0F * evaluated.evaluation().eg_phase());
    EXPECT_LT(evaluated.evaluation().eg_phase(), 1.0F);
}

TEST(EvaluationKing, LoneQueenNextToTheKingIsNoAttack) {
    FreshEvaluation lone("7k/8/5Q2/8/8/8/8/K7 w - - 0 1");
    lone.score();
    EXPECT_EQ(lone.term(term::king_attack), 0.0F);
    EXPECT_EQ(lone.evaluation().king_safety(), 0);
    FreshEvaluation two("7k/8/5Q2/8/8/8/8/K5R1 w - - 0 1");
    two.score();
    EXPECT_EQ(two.term(term::king_attack), 120.0F);
    EXPECT_EQ(two.evaluation().king_safety(), 120);
}

TEST(EvaluationKing, KingAttackKeepsTheFraction) {
    // Three types: weight 192; the sum of attacked squares is not a multiple of 4/3.
    FreshEvaluation evaluated("7k/8/4NQ2/8/8/8/8/K5R1 w - - 0 1");
    evaluated.score();
    Mobility const& maps = evaluated.evaluation().mobility_maps();
    EXPECT_EQ(maps.attackweight_black_king(), 192);
    EXPECT_EQ(evaluated.term(term::king_attack), static_cast<float>(maps.king_safety() / 256.0));
}

TEST(EvaluationKing, RookBesideTheKingCountsInContactByPresence) {
    FreshEvaluation evaluated("7k/pp6/8/8/8/8/PP6/4Kr2 w - - 0 1");
    evaluated.score();
    // Six squares around the white king are on files without a black pawn, four around the other.
    EXPECT_EQ(evaluated.term(term::open_files_on_king), (4.0F - 6.0F) * 15.0F);
    EXPECT_EQ(evaluated.term(term::rook_king_contact), -1.0F);
    EXPECT_EQ(evaluated.term(term::rook_battlefield_contact), -1.0F);
    EXPECT_EQ(term_of("7k/pp6/8/8/8/8/PP2r3/4Kr2 w - - 0 1", term::rook_king_contact), -1.0F);
}

TEST(EvaluationKing, OpenFileBesideTheBlackKingCountsThreeSquares) {
    EXPECT_EQ(term_of("8/8/8/1k6/8/8/PP2PPPP/4K3 w - - 0 1", term::open_files_on_king),
              // c4 c5 c6 minus d1 e1 f1 d2 e2 f2: black has no pawn at all.
              (3.0F - 6.0F) * 15.0F);
}

TEST(EvaluationKing, OpenFilesAreEmptyForABoardWithoutPawns) {
    EXPECT_EQ(term_of("7k/8/8/8/8/8/8/4K3 w - - 0 1", term::open_files_on_king), 0.0F);
}

TEST(EvaluationKing, ContactsAreCountedForEachType) {
    FreshEvaluation evaluated("6k1/5N2/3B4/6R1/8/2q5/1n6/K3b3 w - - 0 1");
    evaluated.score();
    EXPECT_EQ(evaluated.term(term::knight_king_contact), 0.0F);
    EXPECT_EQ(evaluated.term(term::bishop_king_contact), 0.0F);
    EXPECT_EQ(evaluated.term(term::rook_king_contact), 0.0F);
    EXPECT_EQ(evaluated.term(term::queen_king_contact), 0.0F);
    EXPECT_EQ(evaluated.term(term::knight_battlefield_contact), 0.0F);
    EXPECT_EQ(evaluated.term(term::rook_battlefield_contact), 1.0F);
    FreshEvaluation queen("6k1/6Q1/8/8/8/8/8/K7 w - - 0 1");
    queen.score();
    EXPECT_EQ(queen.term(term::queen_king_contact), 1.0F);
    EXPECT_EQ(queen.term(term::queen_battlefield_contact), 1.0F);
    FreshEvaluation bishop("6k1/8/8/8/8/8/1b6/K7 w - - 0 1");
    bishop.score();
    EXPECT_EQ(bishop.term(term::bishop_king_contact), -1.0F);
    EXPECT_EQ(bishop.term(term::bishop_battlefield_contact), -1.0F);
    FreshEvaluation knight("6k1/8/8/8/8/8/8/KN6 w - - 0 1");
    knight.score();
    EXPECT_EQ(knight.term(term::knight_king_contact), 0.0F);
}

TEST(EvaluationKing, BattlefieldAttacksCountSquaresWhiteMinusBlack) {
    FreshEvaluation evaluated("6k1/8/8/8/8/8/8/K4R2 w - - 0 1");
    evaluated.score();
    // f4 to f8 of the black battlefield, files f to h and ranks 4 to 8.
    EXPECT_EQ(evaluated.term(term::rook_battlefield_attack), 5.0F);
    EXPECT_EQ(evaluated.term(term::queen_battlefield_attack), 0.0F);
    EXPECT_EQ(term_of("k4r2/8/8/8/8/8/8/6K1 w - - 0 1", term::rook_battlefield_attack), -5.0F);
}

TEST(EvaluationKing, APieceBesideTheEnemyKingIsInBothContactsOfItsType) {
    struct Row {
        char const* white;
        char const* black;
        std::size_t type;
    };
    for (Row const row :
         {Row{"6k1/5N2/8/8/8/8/8/K7 w - - 0 1", "k7/8/8/8/8/8/5n2/6K1 w - - 0 1", 0},
          Row{"6k1/5B2/8/8/8/8/8/K7 w - - 0 1", "k7/8/8/8/8/8/5b2/6K1 w - - 0 1", 1},
          Row{"6k1/5R2/8/8/8/8/8/K7 w - - 0 1", "k7/8/8/8/8/8/5r2/6K1 w - - 0 1", 2},
          Row{"6k1/5Q2/8/8/8/8/8/K7 w - - 0 1", "k7/8/8/8/8/8/5q2/6K1 w - - 0 1", 3}}) {
        by_type_t white{};
        by_type_t black{};
        white[row.type] = 1.0F;
        black[row.type] = -1.0F;
        EXPECT_EQ(terms_by_type(row.white, term::knight_king_contact), white) << row.white;
        EXPECT_EQ(terms_by_type(row.white, term::knight_battlefield_contact), white) << row.white;
        EXPECT_EQ(terms_by_type(row.black, term::knight_king_contact), black) << row.black;
        EXPECT_EQ(terms_by_type(row.black, term::knight_battlefield_contact), black) << row.black;
    }
}

TEST(EvaluationKing, BattlefieldAttacksOfEachTypeHaveASlotOfTheirOwn) {
    auto const attacks = [](char const* fen) {
        return terms_by_type(fen, term::knight_battlefield_attack);
    };
    // f7, g6 and g4
    EXPECT_EQ(attacks("6k1/8/8/4N3/8/8/8/K7 w - - 0 1"), (by_type_t{3.0F, 0.0F, 0.0F, 0.0F}));
    EXPECT_EQ(attacks("k7/8/8/8/4n3/8/8/6K1 w - - 0 1"), (by_type_t{-3.0F, 0.0F, 0.0F, 0.0F}));
    // f5, g6 and h7
    EXPECT_EQ(attacks("6k1/8/8/8/8/8/8/KB6 w - - 0 1"), (by_type_t{0.0F, 3.0F, 0.0F, 0.0F}));
    EXPECT_EQ(attacks("kb6/8/8/8/8/8/8/6K1 w - - 0 1"), (by_type_t{0.0F, -3.0F, 0.0F, 0.0F}));
    // f4 to f8
    EXPECT_EQ(attacks("6k1/8/8/8/8/8/8/K4R2 w - - 0 1"), (by_type_t{0.0F, 0.0F, 5.0F, 0.0F}));
    EXPECT_EQ(attacks("6k1/8/8/8/8/8/8/K4Q2 w - - 0 1"), (by_type_t{0.0F, 0.0F, 0.0F, 5.0F}));
    EXPECT_EQ(attacks("k4q2/8/8/8/8/8/8/6K1 w - - 0 1"), (by_type_t{0.0F, 0.0F, 0.0F, -5.0F}));
}

TEST(EvaluationKing, CastlingRightsOfBothSidesCancel) {
    EXPECT_EQ(term_of("r3k2r/8/8/8/8/8/8/R3K2R w Kkq - 0 1", term::castling_rights), 0.0F);
    EXPECT_EQ(term_of(positions::all_castlings, term::castling_rights), 0.0F);
    EXPECT_EQ(term_of("r3k2r/8/8/8/8/8/8/R3K2R w Q - 0 1", term::castling_rights), 20.0F);
    EXPECT_EQ(term_of("r3k2r/8/8/8/8/8/8/R3K2R w k - 0 1", term::castling_rights), -20.0F);
    EXPECT_EQ(term_of("r3k2r/8/8/8/8/8/8/R3K2R w - - 0 1", term::castling_rights), 0.0F);
}

TEST(EvaluationKing, PawnShieldIsZeroForAKingOnAFileWithoutOwnPawn) {
    EXPECT_EQ(term_of("4k3/7p/8/8/8/8/8/4K3 w - - 0 1", term::pawn_shield), 0.0F);
    EXPECT_EQ(term_of("k7/7p/8/8/8/8/3P1P2/4K3 w - - 0 1", term::pawn_shield), 0.0F);
}

TEST(EvaluationKing, PawnShieldReachesOneRankFurtherAhead) {
    // d2, e3 and f3 count, h2 and e4 don't.
    EXPECT_EQ(term_of("k7/7p/8/8/4P3/4PP2/3P3P/4K3 w - - 0 1", term::pawn_shield), 30.0F);
}

TEST(EvaluationKing, PawnShieldDifferenceIsSigned) {
    EXPECT_EQ(term_of("4k3/3ppp2/8/8/8/8/4P3/4K3 w - - 0 1", term::pawn_shield), -20.0F);
}

TEST(EvaluationKing, PawnStormCountsPawnsInTheEnemyBattlefield) {
    // White g4 and h5 are inside files f to h and ranks 4 to 8; black b5 inside files a, b.
    EXPECT_EQ(term_of("6k1/8/8/1p5P/3p2P1/8/8/K7 w - - 0 1", term::pawn_storm), 5.0F);
}

TEST(EvaluationKing, PinnedPiecesAreSplitByColour) {
    EXPECT_EQ(term_of("4k3/4n3/8/8/8/8/8/K3R3 w - - 0 1", term::pinned_pieces), 1.0F);
    EXPECT_EQ(term_of("4r1k1/8/8/8/8/4B3/8/4K3 w - - 0 1", term::pinned_pieces), -1.0F);
    EXPECT_EQ(term_of("4k3/4N3/8/8/8/8/8/K3R3 w - - 0 1", term::pinned_pieces), 0.0F);
}

TEST(EvaluationKing, OppositeBishopsNeedOneEachOnDifferentColours) {
    std::size_t const index = term::opposite_colored_bishops;
    EXPECT_EQ(term_of("r1b1k2r/8/8/8/8/8/8/R1B1K2R w - - 0 1", index), 1.0F);
    EXPECT_EQ(term_of("2b1k3/8/8/8/8/8/8/4KB2 w - - 0 1", index), 0.0F);
    EXPECT_EQ(term_of("4k3/8/8/8/8/8/8/2B1KB2 w - - 0 1", index), 0.0F);
    EXPECT_EQ(term_of("2b1kb2/8/8/8/8/8/8/2B1KB2 w - - 0 1", index), 0.0F);
    EXPECT_EQ(term_of("4k3/8/8/8/8/8/8/4KB2 w - - 0 1", index), 0.0F);
}

TEST(EvaluationKing, BoardsWithoutKingsAreHarmless) {
    FreshEvaluation evaluated("8/pp4Q1/8/8/8/8/5PP1/8 w - - 0 1");
    evaluated.score();
    EXPECT_EQ(evaluated.term(term::king_attack), 0.0F);
    EXPECT_EQ(evaluated.term(term::pawn_shield), 0.0F);
    EXPECT_TRUE(std::isfinite(evaluated.term(term::king_activity)));
}

}  // namespace

}  // namespace orvelin::test
