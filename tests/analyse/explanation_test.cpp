#include "analyse/explanation.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "analyse/result_text.h"
#include "analyse/term_scores.h"
#include "play/position_reader.h"
#include "position/chess_position.h"
#include "support/data_file.h"
#include "support/positions.h"
#include "support/shared_tables.h"
#include "support/test_config.h"

namespace orvelin::analyse::test {

namespace {

using orvelin::test::shared_tables;
using orvelin::test::short_tests;

std::string const black_to_move = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1";

TEST(ExplanationTest, ADifferenceIsInPawnsOfThePhaseFromTheSideToMove) {
    Leaf best;
    Leaf played;
    best.terms[term::material] = 250.148F;
    played.terms[term::material] = -250.148F;
    auto const white = explain(positions::start, best, played);
    EXPECT_NEAR(white.pawn, 250.148, 1e-3);
    EXPECT_NEAR(white.change, -2, 1e-5);
    GroupChange const& material = white.groups[0];
    EXPECT_EQ(material.group, term_group::material);
    ASSERT_EQ(material.terms.size(), 1U);
    EXPECT_EQ(material.terms[0].index, term::material);
    EXPECT_NEAR(material.terms[0].best, 1, 1e-5);
    EXPECT_NEAR(material.terms[0].played, -1, 1e-5);
    EXPECT_NEAR(material.terms[0].change, -2, 1e-5);
    EXPECT_NEAR(explain(black_to_move, best, played).change, 2, 1e-5);
    EXPECT_NEAR(explain(positions::bare_kings, best, played).change, -2 * 250.148 / 205.895, 1e-5);
}

TEST(ExplanationTest, TheLargestComesFirst) {
    Leaf best;
    Leaf played;
    played.terms[term::king_attack] = 10;
    played.terms[term::pawn_shield] = -30;
    played.terms[term::castling_rights] = 10;
    played.terms[term::passed_pawns] = 25;
    auto const found = explain(positions::start, best, played);
    auto const& king = found.groups[static_cast<std::size_t>(term_group::king_safety)].terms;
    ASSERT_EQ(king.size(), 3U);
    EXPECT_EQ(king[0].index, term::pawn_shield);
    EXPECT_EQ(king[1].index, term::king_attack);
    EXPECT_EQ(king[2].index, term::castling_rights);
    auto const order = found.largest_first();
    ASSERT_EQ(order.size(), 2U);
    EXPECT_EQ(order[0]->group, term_group::passed_pawns);
    EXPECT_EQ(order[1]->group, term_group::king_safety);
}

TEST(ExplanationTest, EqualLeavesHaveNoDifference) {
    Leaf leaf;
    leaf.terms.fill(3.5F);
    auto const found = explain(positions::start, leaf, leaf);
    EXPECT_EQ(found.change, 0);
    EXPECT_TRUE(found.largest_first().empty());
}

// In engine units differences and their sums are exact, so that whole games can be held against
// their scores.
TEST(ExplanationTest, GroupsOfRealLinesAddUpToTheDifferenceOfTheScores) {
    PositionSearch search;
    int compared = 0;
    for (auto const& block : orvelin::test::read_data_blocks("leaf_positions.txt")) {
        for (std::string const& fen : block) {
            Question asked = question(fen, short_tests ? "depth=3" : "depth=4");
            ChessPosition position(shared_tables());
            position.fen(fen);
            asked.played = play::legal_moves(position, shared_tables()).back();
            Result const result = search.answer(asked);
            Line const& best = result.lines.at(0);
            if (best.why_not != unexplained::none || result.played.why_not != unexplained::none) {
                continue;
            }
            ++compared;
            auto const found = explain(fen, best.leaf, result.played.leaf);
            double total = 0;
            for (GroupChange const& group : found.groups) {
                double sum = 0;
                for (TermChange const& one : group.terms) {
                    EXPECT_NEAR(one.change, one.played - one.best, 1e-12);
                    sum += one.change;
                }
                EXPECT_NEAR(group.change, sum, 1e-12);
                total += group.change;
            }
            EXPECT_NEAR(found.change, total, 1e-12);
            // Each leaf is rounded once, or cut when it is faded.
            EXPECT_NEAR(found.change * found.pawn, result.played.leaf.score - best.leaf.score, 2);
        }
    }
    EXPECT_GT(compared, 30);
}

}  // namespace

}  // namespace orvelin::analyse::test
