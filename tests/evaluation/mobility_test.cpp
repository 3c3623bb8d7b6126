#include "evaluation/mobility.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "position/chess_position.h"
#include "position/masks.h"
#include "support/positions.h"
#include "support/shared_tables.h"
#include "support/squares.h"

namespace orvelin::test {

namespace {

/// A position and its computed maps.
struct Maps {
    explicit Maps(std::string const& fen)
        : position(shared_tables()), mobility(shared_tables().attacks) {
        position.fen(fen);
        mobility.compute(position);
    }
    ChessPosition position;
    Mobility mobility;
};

std::vector<std::int32_t> table_part(std::size_t first, std::size_t size) {
    auto const begin = Mobility::mobility_table.begin() + static_cast<std::ptrdiff_t>(first);
    return {begin, begin + static_cast<std::ptrdiff_t>(size)};
}

TEST(Mobility, TableOfTheKnight) {
    EXPECT_EQ(table_part(0, 9), (std::vector<std::int32_t>{-68, -28, -12, 0, 12, 20, 28, 36, 44}));
}

TEST(Mobility, TableOfTheBishop) {
    EXPECT_EQ(table_part(9, 14), (std::vector<std::int32_t>{-64, -48, -36, -24, -16, -8, -4, 0, 8,
                                                            16, 24, 32, 36, 40}));
}

TEST(Mobility, TableOfTheRook) {
    EXPECT_EQ(table_part(23, 15), (std::vector<std::int32_t>{-40, -20, -12, -6, 0, 4, 8, 12, 16, 20,
                                                             24, 26, 30, 32, 34}));
}

TEST(Mobility, TableOfTheQueen) {
    EXPECT_EQ(Mobility::mobility_table.size(), 66U);
    EXPECT_EQ(table_part(38, 28), (std::vector<std::int32_t>{
                                      -22, -12, -8, -5, -2, 0,  4,  6,  8,  10, 11, 13, 14, 15,
                                      15,  17,  18, 19, 20, 22, 23, 24, 25, 26, 27, 28, 29, 30}));
}

TEST(Mobility, TableOfAttackWeights) {
    std::array<std::int32_t, 16> const expected{0,   0,   128, 192, 225, 241, 248, 253,
                                                256, 256, 256, 256, 256, 256, 256, 256};
    EXPECT_EQ(Mobility::attack_weights, expected);
}

TEST(Mobility, MapsAreEmptyBeforeTheFirstPosition) {
    Mobility const mobility(shared_tables().attacks);
    EXPECT_EQ(mobility.safe_mobility(), 0);
    EXPECT_FALSE(mobility.white_king_battlefield());
    EXPECT_FALSE(mobility.black_king_battlefield());
    EXPECT_FALSE(mobility.white_attacks());
    EXPECT_FALSE(mobility.black_attacks());
}

TEST(Mobility, KnightWithoutASafeSquareScoresTheLeast) {
    Maps const maps("4k3/8/8/8/p7/3p4/8/N3K3 w - - 0 1");
    EXPECT_EQ(maps.mobility.white_knight_attacks(), squares({"b3", "c2"}));
    EXPECT_EQ(maps.mobility.safe_knight_mobility(), -68);
    EXPECT_EQ(maps.mobility.safe_mobility(), -68);
}

TEST(Mobility, BlackCountsAgainstWhite) {
    Maps const maps("n3k3/8/3P4/P7/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(maps.mobility.safe_knight_mobility(), 68);
}

TEST(Mobility, RookSeesThroughAnOwnRookOnTheFile) {
    Maps const maps("5k2/8/8/8/8/8/R7/R6K w - - 0 1");
    // Fourteen squares each.
    EXPECT_EQ(maps.mobility.safe_rook_mobility(), 68);
}

TEST(Mobility, RookSeesThroughAnOwnQueenButNotThroughABishop) {
    Maps const queen("8/6k1/8/8/8/8/Q7/R6K w - - 0 1");
    EXPECT_TRUE(queen.mobility.white_rook_attacks() & squares({"a8"}));
    Maps const bishop("8/6k1/8/8/8/8/B7/R6K w - - 0 1");
    EXPECT_EQ(bishop.mobility.white_rook_attacks() & a_file, squares({"a2"}));
}

TEST(Mobility, BishopSeesThroughAnOwnQueen) {
    Maps const maps("4k3/8/8/8/8/8/1Q6/B3K3 w - - 0 1");
    EXPECT_EQ(maps.mobility.white_bishop_attacks(),
              squares({"b2", "c3", "d4", "e5", "f6", "g7", "h8"}));
}

TEST(Mobility, BishopDoesNotSeeThroughAnOwnRookOrTheEnemyQueen) {
    Maps const rook("4k3/8/8/8/8/8/1R6/B3K3 w - - 0 1");
    EXPECT_EQ(rook.mobility.white_bishop_attacks(), squares({"b2"}));
    Maps const queen("4k3/8/8/8/8/8/1q6/B3K3 w - - 0 1");
    EXPECT_EQ(queen.mobility.white_bishop_attacks(), squares({"b2"}));
}

TEST(Mobility, QueenWithThirteenAndWithFourteenSquaresScoresFifteen) {
    Maps const fourteen("7k/8/8/8/8/4K3/1P6/Q7 w - - 0 1");
    EXPECT_EQ(fourteen.mobility.white_queen_safe_squares().popcount(), 14);
    EXPECT_EQ(fourteen.mobility.safe_queen_mobility(), 15);
    Maps const thirteen("7k/1p6/8/8/8/4K3/1P6/Q7 w - - 0 1");
    EXPECT_EQ(thirteen.mobility.white_queen_safe_squares().popcount(), 13);
    EXPECT_EQ(thirteen.mobility.safe_queen_mobility(), 15);
}

TEST(Mobility, SafeSquaresOfARookExcludeThoseOfMinorPiecesOfTheSamePass) {
    Mobility mobility(shared_tables().attacks);
    ChessPosition position(shared_tables());
    position.fen("4k3/8/8/3b4/8/8/8/R6K w - - 0 1");
    mobility.compute(position);
    // Eleven squares: a2, a8 and h1 of the fourteen are covered by the bishop.
    EXPECT_EQ(mobility.safe_rook_mobility(), 26);
}

TEST(Mobility, QueenAvoidsSquaresThatRooksAttack) {
    Maps const maps("r3k3/8/8/8/8/8/8/1Q5K w - - 0 1");
    BitBoard const safe = maps.mobility.white_queen_safe_squares();
    EXPECT_FALSE(safe & a_file);
    EXPECT_FALSE(safe & squares({"b8"}));
    EXPECT_TRUE(safe & squares({"b7"}));

    Maps const black("1q5k/8/8/8/8/8/8/R3K3 w - - 0 1");
    BitBoard const black_safe = black.mobility.black_queen_safe_squares();
    EXPECT_FALSE(black_safe & a_file);
    EXPECT_FALSE(black_safe & squares({"b1"}));
    EXPECT_TRUE(black_safe & squares({"b2"}));
}

TEST(Mobility, PawnAttacksDoNotWrapAroundTheBoard) {
    Maps const maps("4k3/p6p/8/8/8/8/P6P/4K3 w - - 0 1");
    EXPECT_EQ(maps.mobility.white_pawn_attacks(), squares({"b3", "g3"}));
    EXPECT_EQ(maps.mobility.black_pawn_attacks(), squares({"b6", "g6"}));
}

TEST(Mobility, UnionsHoldTheKingButTheKingMapsStayEmpty) {
    Maps const maps(positions::bare_kings_in_corners);
    EXPECT_EQ(maps.mobility.white_attacks(), squares({"a2", "b1", "b2"}));
    EXPECT_EQ(maps.mobility.black_attacks(), squares({"g8", "g7", "h7"}));
    EXPECT_FALSE(maps.mobility.white_king_attacks());
    EXPECT_FALSE(maps.mobility.black_king_attacks());
}

TEST(Mobility, NeighbourhoodIsCutAtTheEdges) {
    Maps const maps(positions::bare_kings_in_corners);
    EXPECT_EQ(maps.mobility.white_king_neighbourhood(), squares({"a1", "a2", "b1", "b2"}));
    EXPECT_EQ(maps.mobility.black_king_neighbourhood(), squares({"g8", "g7", "h8", "h7"}));
}

TEST(Mobility, BattlefieldReachesFromBehindTheKingToFourRanksAhead) {
    Maps const maps("8/8/8/4k3/2K5/8/8/8 w - - 0 1");
    BitBoard const bcd_files = (a_file << 1) | (a_file << 2) | (a_file << 3);
    BitBoard const def_files = (a_file << 3) | (a_file << 4) | (a_file << 5);
    EXPECT_EQ(maps.mobility.white_king_battlefield(), bcd_files & ~(rank1 | rank2));
    EXPECT_EQ(maps.mobility.black_king_battlefield(), def_files & ~(rank7 | rank8));
}

TEST(Mobility, BattlefieldAttacksAreThePartInsideTheEnemyBattlefield) {
    Maps const maps("6k1/8/8/8/2n5/8/6Q1/R5K1 w - - 0 1");
    BitBoard const field = maps.mobility.black_king_battlefield();
    EXPECT_EQ(maps.mobility.white_queen_battlefield_attack(),
              maps.mobility.white_queen_attacks() & field);
    EXPECT_EQ(maps.mobility.white_rook_battlefield_attack(),
              maps.mobility.white_rook_attacks() & field);
    EXPECT_FALSE(maps.mobility.white_knight_battlefield_attack());
    EXPECT_FALSE(maps.mobility.white_bishop_battlefield_attack());
    EXPECT_FALSE(maps.mobility.black_knight_battlefield_attack());
    EXPECT_TRUE(maps.mobility.white_queen_battlefield_attack());
}

TEST(Mobility, SafeQueenChecksAreSafeSquaresOnALineToTheEnemyKing) {
    Maps const maps("7k/8/8/8/8/8/8/Q3K3 w - - 0 1");
    // The queen gives check already: the long diagonal, then a8, h1 is shut off by the king.
    EXPECT_EQ(maps.mobility.white_safe_queen_checks(),
              squares({"a8", "b2", "c3", "d4", "e5", "f6", "g7"}));
    EXPECT_EQ(maps.mobility.safe_queen_checks(), 7);
    Maps const black("q3k3/8/8/8/8/8/8/7K w - - 0 1");
    EXPECT_EQ(black.mobility.black_safe_queen_checks(),
              squares({"a1", "b7", "c6", "d5", "e4", "f3", "g2"}));
    EXPECT_EQ(black.mobility.safe_queen_checks(), -7);
}

TEST(Mobility, UndefendedPiecesCountPawnsAndKing) {
    Maps const maps("7k/8/8/p7/8/8/PP6/K7 w - - 0 1");
    // White: the king; black: the king and the pawn.
    EXPECT_EQ(maps.mobility.undefended_pieces(maps.position), 1);
}

TEST(Mobility, HangingPiecesAttackedAndNotDefended) {
    Maps const maps("r6k/8/8/8/N7/8/8/7K w - - 0 1");
    EXPECT_EQ(maps.mobility.hanging_pieces(maps.position), -1);
    Maps const defended("r6k/8/8/8/N7/1P6/8/7K w - - 0 1");
    EXPECT_EQ(defended.mobility.hanging_pieces(defended.position), 0);
}

TEST(Mobility, HangingPiecesAttackedByALesserPiece) {
    // Each white piece is defended by a pawn and attacked by one lesser piece.
    Maps const knight("7k/8/8/1p6/N7/1P6/8/7K w - - 0 1");
    EXPECT_EQ(knight.mobility.hanging_pieces(knight.position), -1);
    Maps const bishop("7k/8/p7/1p6/B7/1P6/8/7K w - - 0 1");
    EXPECT_EQ(bishop.mobility.hanging_pieces(bishop.position), -1);
    Maps const rook("7k/8/1n6/8/R7/1P6/8/7K w - - 0 1");
    EXPECT_EQ(rook.mobility.hanging_pieces(rook.position), -1);
    Maps const queen("r6k/8/8/8/Q7/1P6/8/7K w - - 0 1");
    // The rook on a8 hangs too, attacked by the queen.
    EXPECT_EQ(queen.mobility.hanging_pieces(queen.position), 0);
    Maps const rook_by_rook("r6k/1p6/p7/8/R7/1P6/8/7K w - - 0 1");
    EXPECT_EQ(rook_by_rook.mobility.hanging_pieces(rook_by_rook.position), 0);
}

TEST(Mobility, AttackOnAKingNeedsTwoAttackingTypes) {
    Maps const none(positions::bare_kings_in_corners);
    EXPECT_EQ(none.mobility.attackweight_black_king(), 0);
    EXPECT_EQ(none.mobility.attacks_on_black_king(), 0);
    Maps const queen("7k/8/5Q2/8/8/8/8/K7 w - - 0 1");
    EXPECT_EQ(queen.mobility.attackweight_black_king(), 0);
    EXPECT_GT(queen.mobility.attacks_on_black_king(), 0);
    EXPECT_EQ(queen.mobility.king_safety(), 0);
    Maps const two("7k/8/5Q2/8/8/8/8/K5R1 w - - 0 1");
    EXPECT_EQ(two.mobility.attackweight_black_king(), 128);
    // The queen reaches g7 and, through no one, h8; the rook reaches g7 and g8.
    EXPECT_EQ(two.mobility.attacks_on_black_king(), 2 * 80 + 2 * 40);
    EXPECT_EQ(two.mobility.king_safety(), 128 * 240);
}

TEST(Mobility, AttacksOnAKingAreValuedByType) {
    Maps const maps("k7/8/8/8/8/5n2/5pq1/r3b2K w - - 0 1");
    EXPECT_EQ(maps.mobility.attackweight_white_king(), 192);
    BitBoard const near = maps.mobility.white_king_neighbourhood();
    EXPECT_EQ((near & maps.mobility.black_pawn_attacks()).popcount(), 1);    // g1
    EXPECT_EQ((near & maps.mobility.black_knight_attacks()).popcount(), 2);  // g1 h2
    EXPECT_EQ((near & maps.mobility.black_queen_attacks()).popcount(), 3);   // g1 h1 h2
    EXPECT_FALSE(near & maps.mobility.black_bishop_attacks());
    EXPECT_FALSE(near & maps.mobility.black_rook_attacks());
    EXPECT_EQ(maps.mobility.attacks_on_white_king(), 10 + 2 * 20 + 3 * 80);
    // A rook that sees the first rank makes four types; with f2 free the bishop is the fifth.
    Maps const four("k7/8/8/8/3b4/5n2/5pq1/r6K w - - 0 1");
    EXPECT_EQ(four.mobility.attackweight_white_king(), 225);
    Maps const five("k7/8/8/8/3b4/5n2/6pq/r6K w - - 0 1");
    EXPECT_EQ(five.mobility.attackweight_white_king(), 241);
}

TEST(Mobility, EachStepByItselfGivesTheMapsOfTheWhole) {
    std::string const fen = positions::kiwipete;
    Maps maps(fen);
    Mobility steps(shared_tables().attacks);
    ChessPosition const& position = maps.position;
    steps.compute_white_king_neighbourhood(position);
    steps.compute_black_king_neighbourhood(position);
    steps.compute_white_pawn_attacks(position);
    steps.compute_black_pawn_attacks(position);
    steps.compute_white_knight_attacks(position);
    steps.compute_black_knight_attacks(position);
    steps.compute_white_bishop_attacks(position);
    steps.compute_black_bishop_attacks(position);
    steps.compute_white_rook_attacks(position);
    steps.compute_black_rook_attacks(position);
    steps.compute_white_queen_attacks(position);
    steps.compute_black_queen_attacks(position);
    steps.compute_white_safe_queen_checks(position);
    steps.compute_black_safe_queen_checks(position);
    steps.compute_white_king_attacks(position);
    steps.compute_black_king_attacks(position);
    EXPECT_EQ(steps.safe_mobility(), maps.mobility.safe_mobility());
    EXPECT_EQ(steps.safe_bishop_mobility(), maps.mobility.safe_bishop_mobility());
    EXPECT_EQ(steps.white_attacks(), maps.mobility.white_attacks());
    EXPECT_EQ(steps.black_attacks(), maps.mobility.black_attacks());
    EXPECT_EQ(steps.safe_queen_checks(), maps.mobility.safe_queen_checks());
    EXPECT_EQ(steps.king_safety(), maps.mobility.king_safety());
    // A second call of the same object starts afresh.
    maps.mobility.compute(position);
    EXPECT_EQ(steps.safe_mobility(), maps.mobility.safe_mobility());
    EXPECT_EQ(steps.white_queen_safe_squares(), maps.mobility.white_queen_safe_squares());
}

/// Of each side's queens, against the look-up from the first king of the enemy.
void expect_looked_up_queen_checks(std::string const& fen) {
    Maps const maps(fen);
    ChessPosition const& position = maps.position;
    Attacks const& attacks = shared_tables().attacks;
    auto const seen_from = [&](BitBoard const& kings) {
        return attacks.queen(kings.get_first_square(), position.pieces());
    };
    EXPECT_EQ(maps.mobility.white_safe_queen_checks(),
              maps.mobility.white_queen_safe_squares() & seen_from(position.black_king()))
        << fen;
    EXPECT_EQ(maps.mobility.black_safe_queen_checks(),
              maps.mobility.black_queen_safe_squares() & seen_from(position.white_king()))
        << fen;
}

TEST(Mobility, QueenChecksAreLookedUpWhereThePositionDoesNotKnowThem) {
    for (char const* const fen : {
             "3qk3/8/8/8/8/8/8/3QK3 w - - 0 1",
             "3qk3/8/8/8/8/8/8/3Q4 w - - 0 1",      // no white king
             "3q4/8/8/8/8/8/8/3QK3 w - - 0 1",      // no black king
             "k2q3k/8/8/8/8/8/8/3QK3 w - - 0 1",    // two black kings
             "3qk3/8/8/8/8/8/8/K2Q3K b - - 0 1",    // two white kings
             "3q4/8/8/3k4/8/8/8/1Q1K2K1 w - - 0 1"  // and a black one in between
         }) {
        expect_looked_up_queen_checks(fen);
    }
}

TEST(Mobility, QueenChecksAreLookedUpOnABoardThatWasChangedByHand) {
    ChessPosition position(shared_tables());
    position.fen("k7/8/8/8/8/8/8/Q3K3 w - - 0 1");
    position.set_piece_on(Square(48), Piece(black_pawn));
    Mobility maps(shared_tables().attacks);
    maps.compute(position);
    BitBoard const seen =
        shared_tables().attacks.queen(position.black_king().get_first_square(), position.pieces());
    EXPECT_EQ(maps.white_safe_queen_checks(), maps.white_queen_safe_squares() & seen);
    // The pawn now stands between: what the position knew before is something else.
    EXPECT_NE(position.white_queencheck_squares(), seen);
}

TEST(Mobility, BoardWithoutKingsIsHarmless) {
    Maps const maps("8/8/2q5/8/8/5R2/8/8 w - - 0 1");
    EXPECT_FALSE(maps.mobility.white_king_neighbourhood());
    EXPECT_FALSE(maps.mobility.black_king_battlefield());
    EXPECT_EQ(maps.mobility.safe_queen_checks(), 0);
    EXPECT_EQ(maps.mobility.king_safety(), 0);
}

}  // namespace

}  // namespace orvelin::test
