#include "analyse/leaf_finder.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "analyse/result_text.h"
#include "analyse/static_evaluator.h"
#include "analyse/term_scores.h"
#include "play/position_reader.h"
#include "support/analysis_fixture.h"
#include "support/data_file.h"
#include "support/fresh_evaluation.h"
#include "support/positions.h"
#include "support/test_config.h"

namespace orvelin::analyse::test {

namespace {

using orvelin::test::search_tables;
using orvelin::test::short_tests;
using orvelin::test::texts_t;

class LeafFinderTest : public orvelin::test::AnalysisFixture {
 protected:
    /// The leaf of a line with its score.
    Line find(std::string const& fen, texts_t const& texts, int score) {
        set(fen);
        Line line;
        line.score = score;
        ChessPosition position(search_tables());
        position.fen(fen);
        for (std::string const& text : texts) {
            line.moves.push_back(play::find_legal_move(position, search_tables(), text));
            position.make_move(line.moves.back());
        }
        finder_.find(line);
        EXPECT_EQ(position_.fen(), fen);
        return line;
    }

    /// What quiescence makes of a position, from its side to move.
    int quiet_value(std::string const& fen) {
        set(fen);
        return analysis_.quiescence(-32000, 32000, 0);
    }

    StaticEvaluator evaluator_{search_tables()};
    LeafFinder finder_{search_tables(), analysis_, evaluator_};
};

/// White takes a knight, and Black takes the pawn that did it.
std::string const two_captures = "6k1/5ppp/2p5/3n4/4P3/8/5PPP/6K1 w - - 0 1";

}  // namespace

TEST_F(LeafFinderTest, AQuietPositionIsItsOwnLeaf) {
    std::string const fen = "6k1/5ppp/8/8/3N4/8/5PPP/6K1 w - - 0 1";
    int const score = quiet_value(fen);
    Line const line = find(fen, {}, score);
    EXPECT_EQ(line.why_not, unexplained::none);
    EXPECT_TRUE(line.leaf.moves.empty());
    EXPECT_EQ(line.leaf.fen, fen);
    EXPECT_EQ(line.leaf.score, score);
}

TEST_F(LeafFinderTest, CapturesAreFollowedToTheirEnd) {
    int const score = quiet_value(two_captures);
    Line const line = find(two_captures, {}, score);
    EXPECT_EQ(line.why_not, unexplained::none);
    EXPECT_EQ(moves_text(line.leaf.moves), " e4d5 c6d5");
    EXPECT_EQ(line.leaf.fen, "6k1/5ppp/8/3p4/8/8/5PPP/6K1 w - - 0 2");
    EXPECT_EQ(line.leaf.score, score);
}

TEST_F(LeafFinderTest, TheScoreIsThatOfTheSideAtTheRoot) {
    int const score = quiet_value("6k1/5ppp/2p5/3P4/8/8/5PPP/6K1 b - - 0 1");
    Line const line = find(two_captures, {"e4d5"}, -score);
    EXPECT_EQ(line.why_not, unexplained::none);
    EXPECT_EQ(line.leaf.score, -score);
    EXPECT_EQ(moves_text(line.leaf.moves), " e4d5 c6d5");
}

TEST_F(LeafFinderTest, TheLeafMayBeOneUnitOff) {
    int const score = quiet_value(two_captures);
    EXPECT_EQ(find(two_captures, {}, score + 1).why_not, unexplained::none);
    EXPECT_EQ(find(two_captures, {}, score - 1).why_not, unexplained::none);
    EXPECT_EQ(find(two_captures, {}, score + 2).why_not, unexplained::not_found);
    EXPECT_EQ(find(two_captures, {}, score - 2).why_not, unexplained::not_found);
    EXPECT_TRUE(find(two_captures, {}, score + 2).leaf.fen.empty());
}

TEST_F(LeafFinderTest, ABoundHasNoLeaf) {
    set(two_captures);
    Line line;
    line.score = quiet_value(two_captures);
    line.at_least = true;
    finder_.find(line);
    EXPECT_EQ(line.why_not, unexplained::not_found);
}

TEST_F(LeafFinderTest, MatesAndDrawsAreNamed) {
    // Mate on the board, a mate beyond it, stalemate, a repetition, fifty moves.
    EXPECT_EQ(find("6k1/5ppp/8/8/8/8/8/3R2K1 w - - 0 1", {"d1d8"}, 29999).why_not,
              unexplained::mate_or_draw);
    EXPECT_EQ(find(positions::start, {}, 29990).why_not, unexplained::mate_or_draw);
    EXPECT_EQ(find("7k/8/5QK1/8/8/8/8/8 w - - 0 1", {"f6f7"}, 0).why_not,
              unexplained::mate_or_draw);
    EXPECT_EQ(find(positions::start, {"g1f3", "g8f6", "f3g1", "f6g8"}, 0).why_not,
              unexplained::mate_or_draw);
    EXPECT_EQ(find("6k1/5ppp/8/8/3N4/8/5PPP/6K1 w - - 100 90", {"d4c2"}, 0).why_not,
              unexplained::mate_or_draw);
    // A draw is worth nothing else.
    EXPECT_EQ(find(positions::start, {"g1f3", "g8f6", "f3g1", "f6g8"}, 14).why_not,
              unexplained::not_found);
}

TEST_F(LeafFinderTest, EndgameFunctionsAreNamed) {
    std::string const pawn_ending = "8/8/8/3k4/8/3K4/3P4/8 w - - 0 1";
    EXPECT_EQ(find(pawn_ending, {}, quiet_value(pawn_ending)).why_not, unexplained::endgame);
}

TEST_F(LeafFinderTest, FadingNearTheFiftyMoveLimitIsTakenIntoTheTerms) {
    std::string const fen = "6k1/5ppp/8/8/3N4/8/5PPP/6K1 w - - 80 90";
    int const value = quiet_value(fen);
    Line const line = find(fen, {}, static_cast<int>(value * 0.4));
    EXPECT_EQ(line.why_not, unexplained::none);
    EXPECT_FLOAT_EQ(line.leaf.fading, 0.4F);
    EXPECT_EQ(line.leaf.score, static_cast<int>(value * 0.4));
    EXPECT_NEAR(sum_of(line.leaf.terms), value * 0.4, 1);
    EXPECT_EQ(find(fen, {}, value).why_not, unexplained::not_found);
}

TEST_F(LeafFinderTest, TheNextSearchIsNotStopped) {
    set(two_captures);
    analysis_.set_nodes(10);
    analysis_.set_depth(8);
    analysis_.iterative_search();
    ASSERT_EQ(analysis_.get_action(), stop_action);
    Line line;
    line.score = quiet_value(two_captures);
    analysis_.set_action(stop_action);
    finder_.find(line);
    EXPECT_EQ(line.why_not, unexplained::none);
}

// From games: openings, middle games and few pieces. Each leaf is checked by itself.
TEST(LeafShareTest, NearlyAllScoresOfGamesAreExplained) {
    PositionSearch search;
    for (auto const& block : orvelin::test::read_data_blocks("leaf_positions.txt")) {
        int explained = 0;
        int unexplained_scores = 0;
        for (std::string const& fen : block) {
            Result const result = search.answer(question(fen, short_tests ? "depth=4" : "depth=6"));
            Line const& line = result.lines.at(0);
            explained += line.why_not == unexplained::none ? 1 : 0;
            unexplained_scores += line.why_not == unexplained::not_found ? 1 : 0;
            if (line.why_not != unexplained::none) {
                continue;
            }
            orvelin::test::FreshEvaluation leaf(line.leaf.fen);
            bool const turned = line.leaf.moves.size() % 2 != 0;
            int const score = turned ? -leaf.score() : leaf.score();
            double const fading = static_cast<double>(line.leaf.fading);
            EXPECT_EQ(static_cast<int>(score * fading), line.leaf.score) << fen;
            EXPECT_LE(std::abs(line.leaf.score - line.score), 1) << fen;
            ChessPosition position(orvelin::test::shared_tables());
            position.fen(fen);
            for (Move const& move : line.leaf.moves) {
                position.make_move(move);
            }
            EXPECT_EQ(position.fen(), line.leaf.fen);
        }
        EXPECT_LE(unexplained_scores, 1);
        EXPECT_GE(explained, 12);
    }
}

}  // namespace orvelin::analyse::test
