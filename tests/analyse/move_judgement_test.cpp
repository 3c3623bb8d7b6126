#include "analyse/move_judgement.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "analyse/lines_fixture.h"
#include "analyse/score.h"
#include "search/score.h"
#include "support/positions.h"

namespace orvelin::analyse::test {

namespace {

constexpr int mate_in_two = mate_score - 3;
constexpr int mated_in_two = 4 - mate_score;

move_mark mark_of(int best, int played) {
    SearchedMove moves(positions::start, line_from(positions::start, "a2a3", played),
                       line_from(positions::start, "e2e4", best));
    return moves.judged().mark;
}

move_mark mark_beside(int best, int rest) {
    Line const other = line_from(positions::start, "a2a3", rest);
    Line const line = line_from(positions::start, "e2e4", best);
    return SearchedMove(positions::start, line, line).rest(other).judged().mark;
}

TEST(MoveJudgementTest, MarksBeginAtTheirLosses) {
    // From 0, which is worth half a point, to what is worth 0.451, 0.450, 0.401, 0.4, 0.301, 0.3.
    int score = 0;
    std::string marks;
    for (double const lost : {0.049, 0.05, 0.099, 0.1, 0.199, 0.2}) {
        while (0.5 - Score{score}.points() < lost - 1e-9) {
            --score;
        }
        ASSERT_NEAR(0.5 - Score{score}.points(), lost, 0.00051);
        marks += std::string(mark_text(mark_of(0, score))) + ' ';
    }
    EXPECT_EQ(marks, " ?! ?! ? ? ?? ");
    EXPECT_EQ(mark_of(0, 50), move_mark::none);
    EXPECT_EQ(mark_glyph(move_mark::good), 1);
    EXPECT_EQ(mark_glyph(move_mark::mistake), 2);
    EXPECT_EQ(mark_glyph(move_mark::blunder), 4);
    EXPECT_EQ(mark_glyph(move_mark::dubious), 6);
    EXPECT_EQ(mark_glyph(move_mark::none), 0);
    for (int mark = 0; mark < 5; ++mark) {
        EXPECT_EQ(parse_mark(mark_text(static_cast<move_mark>(mark))),
                  static_cast<move_mark>(mark));
    }
    EXPECT_FALSE(parse_mark("!?"));
}

TEST(MoveJudgementTest, MatesThatCanBeSeenCountInDecidedGames) {
    EXPECT_EQ(mark_of(mate_in_two, 5000), move_mark::dubious);
    EXPECT_EQ(mark_of(mate_score - 11, 5000), move_mark::none);
    EXPECT_EQ(mark_of(mate_in_two, mate_in_two - 2), move_mark::none);
    EXPECT_EQ(mark_of(-5000, mated_in_two), move_mark::dubious);
    EXPECT_EQ(mark_of(-5000, 12 - mate_score), move_mark::none);
    EXPECT_EQ(mark_of(mate_in_two, 0), move_mark::blunder);
    SearchedMove moves(positions::start, line_from(positions::start, "a2a3", mated_in_two),
                       line_from(positions::start, "e2e4", mate_in_two));
    EXPECT_EQ(moves.judged().mate_missed, 2);
    EXPECT_EQ(moves.judged().mate_allowed, 2);
}

TEST(MoveJudgementTest, OnlyTheOnlyGoodMoveIsPraised) {
    EXPECT_EQ(mark_beside(0, -260), move_mark::none);
    EXPECT_EQ(mark_beside(0, -320), move_mark::good);
    // All moves lose.
    EXPECT_EQ(mark_beside(-500, -5000), move_mark::none);
    EXPECT_EQ(mark_of(0, 0), move_mark::none);
}

// The search of further lines is one-sided: what it puts in the second place proves nothing.
TEST(MoveJudgementTest, ASecondLinePraisesNothing) {
    Line const line = line_from(positions::start, "e2e4", 0);
    SearchedMove moves(positions::start, line, line);
    moves.result.lines.push_back(line_from(positions::start, "a2a3", -320));
    EXPECT_EQ(moves.judged().mark, move_mark::none);
    moves.rest(line_from(positions::start, "d2d4", -10));
    EXPECT_EQ(moves.judged().mark, move_mark::none);
}

TEST(MoveJudgementTest, ObviousMovesAreNotPraised) {
    auto const mark = [](std::string const& fen, std::string const& move, std::string const& other,
                         std::string const& previous = "") {
        Line const line = line_from(fen, move, 900);
        SearchedMove moves(fen, line, line);
        moves.rest(line_from(fen, other, 0));
        if (!previous.empty()) {
            moves.move.taken =
                taken_by(line_from("rnbqkbnr/ppp1pppp/8/3p4/4P3/2N5/PPPP1PPP/R1BQKBNR b KQkq - 0 2",
                                   previous, 0)
                             .moves[0]);
        }
        return moves.judged().mark;
    };
    std::string const taken = "rnbqkbnr/ppp1pppp/8/8/4p3/2N5/PPPP1PPP/R1BQKBNR w KQkq - 0 3";
    std::string const guarded = "rnbqkb1r/ppp1pppp/5n2/8/4p3/2N5/PPPP1PPP/R1BQKBNR w KQkq - 0 3";
    EXPECT_EQ(mark(guarded, "c3e4", "a2a3"), move_mark::good);
    EXPECT_EQ(mark(guarded, "c3e4", "a2a3", "d5e4"), move_mark::none);
    EXPECT_EQ(mark(guarded, "c3e4", "a2a3", "d5d4"), move_mark::good);
    EXPECT_EQ(mark(taken, "c3e4", "a2a3"), move_mark::none);
    std::string const promotion = "7k/P7/8/8/8/8/8/K7 w - - 0 1";
    EXPECT_EQ(mark(promotion, "a7a8q", "a1b1"), move_mark::none);
    EXPECT_EQ(mark(promotion, "a7a8r", "a1b1"), move_mark::good);
    std::string const dear = "rnb1kbnr/ppp1pppp/8/3q4/8/2N5/PPPP1PPP/R1BQKBNR w KQkq - 0 3";
    EXPECT_EQ(mark(dear, "c3d5", "a2a3"), move_mark::none);
    EXPECT_EQ(mark(dear, "c3e4", "a2a3"), move_mark::good);
}

TEST(MoveJudgementTest, WhoTakesElsewhereDoesNotTakeBack) {
    MoveInGame move;
    move.played = line_from("4k3/8/8/8/8/8/6rr/K6Q w - - 0 1", "h1h2", 0).moves[0];
    EXPECT_FALSE(move.takes_back());
    move.taken = Taken{white_rook, Square("g2")};
    EXPECT_FALSE(move.takes_back());
    move.taken = Taken{white_rook, Square("h2")};
    EXPECT_TRUE(move.takes_back());
    move.played = line_from("4k3/8/8/8/8/8/6rr/K6Q w - - 0 1", "h1g1", 0).moves[0];
    move.taken = Taken{white_rook, Square("g1")};
    EXPECT_FALSE(move.takes_back());
}

TEST(MoveJudgementTest, ForcedMovesAreNotMarked) {
    std::string const fen = "7k/8/8/8/8/8/r7/1r5K w - - 0 1";
    SearchedMove none(fen, line_from("7k/8/8/8/8/8/1r6/7K w - - 0 1", "h1g1", -3000),
                      line_from("7k/8/8/8/8/8/1r6/7K w - - 0 1", "h1g1", 0));
    EXPECT_FALSE(none.judged().known);
    std::string const only = "7k/8/8/8/8/8/r7/7K w - - 0 1";
    SearchedMove forced(only, line_from(only, "h1g1", -3000), line_from(only, "h1g1", 0));
    Judgement const judgement = forced.judged();
    EXPECT_TRUE(judgement.forced);
    EXPECT_TRUE(judgement.known);
    EXPECT_EQ(judgement.mark, move_mark::none);
    EXPECT_FALSE(move_accuracy(judgement));
}

TEST(MoveJudgementTest, AMoveIsFoundAmongTheLines) {
    SearchedMove moves(positions::start, line_from(positions::start, "a2a3", 0),
                       line_from(positions::start, "e2e4", 10));
    moves.result.lines.push_back(moves.result.played);
    moves.result.played = Line();
    EXPECT_TRUE(moves.judged().known);
    moves.result.lines[1].at_least = true;
    EXPECT_FALSE(moves.judged().known);
    moves.result.lines[1].at_least = false;
    moves.result.lines[0].depth = 0;
    EXPECT_FALSE(moves.judged().known);
}

TEST(AccuracyTest, EverySixthOfAPointHalvesAMove) {
    Judgement judgement;
    judgement.known = true;
    judgement.best_points = judgement.points = 0.5;
    EXPECT_EQ(move_accuracy(judgement), 100);
    judgement.points = 0.5 - 1.0 / 6;
    EXPECT_EQ(move_accuracy(judgement), 50);
    judgement.points = 0.45;
    EXPECT_EQ(move_accuracy(judgement), 81.2);
    judgement.forced = true;
    EXPECT_FALSE(move_accuracy(judgement));
}

// Then it is rounded alike wherever the last bit of a power may be another one.
TEST(AccuracyTest, NoLossIsNearTheHalfOfAStep) {
    for (int lost = 0; lost <= 2000; ++lost) {
        double const steps = 1000 * std::exp2(-6 * lost / 2000.0);
        EXPECT_GT(std::abs(steps - std::floor(steps) - 0.5), 1e-6) << lost;
    }
}

TEST(AccuracyTest, IsTheMeanOverMovesThatWereNotForced) {
    Accuracy accuracy;
    EXPECT_FALSE(accuracy.percent());
    accuracy.add(move_mark::none, std::nullopt);
    EXPECT_FALSE(accuracy.percent());
    accuracy.add(move_mark::none, 100.0);
    accuracy.add(move_mark::mistake, 50.0);
    EXPECT_DOUBLE_EQ(accuracy.percent().value(), 75);
    EXPECT_EQ(accuracy.count(move_mark::mistake), 1);
    EXPECT_EQ(accuracy.count(move_mark::none), 2);
}

}  // namespace

}  // namespace orvelin::analyse::test
