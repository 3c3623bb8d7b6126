#include "analyse/position_search.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <utility>

#include "analyse/result_text.h"
#include "play/position_reader.h"
#include "support/positions.h"
#include "support/shared_tables.h"
#include "support/test_config.h"

namespace orvelin::analyse::test {

namespace {

using orvelin::test::shared_tables;

/// One for all: nothing is left of a question.
PositionSearch& searcher() {
    static PositionSearch search;
    return search;
}

Result ask(std::string const& fen, std::string const& limit, int lines = 1) {
    return searcher().answer(question(fen, limit, lines));
}

Move move_of(std::string const& fen, std::string const& text) {
    ChessPosition position(shared_tables());
    position.fen(fen);
    return play::find_legal_move(position, shared_tables(), text);
}

Result ask_played(std::string const& fen, std::string const& limit, std::string const& text,
                  int lines = 1) {
    Question asked = question(fen, limit, lines);
    asked.played = move_of(fen, text);
    return searcher().answer(asked);
}

TEST(PositionSearchTest, StaticMeansNoSearch) {
    Result const result = ask(positions::start, "static");
    EXPECT_EQ(result.nodes, 0U);
    EXPECT_EQ(result.depth, 0);
    EXPECT_EQ(result.static_score, 14);
    EXPECT_TRUE(result.lines.empty());
    EXPECT_TRUE(result.played.moves.empty());
}

TEST(PositionSearchTest, WithoutLegalMovesThereAreNoLines) {
    for (std::string const fen :
         {"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", "7k/6Q1/6K1/8/8/8/8/8 b - - 0 1"}) {
        for (std::string const limit : {"depth=5", "nodes=100", "static"}) {
            Result const result = ask(fen, limit, 3);
            EXPECT_TRUE(result.lines.empty());
            EXPECT_EQ(result.nodes, 0U);
            EXPECT_LT(result.static_score, -1000);
        }
    }
}

TEST(PositionSearchTest, DrawsWithoutReturnAreDrawnWhateverTheSearchThinks) {
    for (std::string const limit : {"static", "depth=4"}) {
        EXPECT_TRUE(ask("8/8/4k3/8/8/4K3/8/8 w - - 0 1", limit).drawn);
        EXPECT_TRUE(ask("8/8/4k3/8/8/4KB2/8/8 w - - 0 1", limit).drawn);
        EXPECT_TRUE(ask("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", limit).drawn);
        EXPECT_FALSE(ask("7k/6Q1/6K1/8/8/8/8/8 b - - 0 1", limit).drawn);
        EXPECT_FALSE(ask("8/8/4k3/8/8/3BB3/4K3/8 w - - 0 1", limit).drawn);
    }
    Line const king = ask("8/8/4k3/8/8/4KB2/8/8 w - - 0 1", "depth=4").lines.at(0);
    EXPECT_TRUE(king.drawn);
    EXPECT_EQ(king.score, 0);
    EXPECT_EQ(king.why_not, unexplained::mate_or_draw);
    std::string const queen = "7k/8/4Q1K1/8/8/8/8/8 w - - 0 1";
    EXPECT_TRUE(ask_played(queen, "depth=4", "e6f7").played.drawn);
    EXPECT_FALSE(ask_played(queen, "depth=4", "e6e5").played.drawn);
    EXPECT_FALSE(ask(queen, "depth=4").lines.at(0).drawn);
}

TEST(PositionSearchTest, TheRestIsSearchedBesideABestMove) {
    std::string const fen = positions::quiet_middle_game;
    Question asked = question(fen, "depth=5");
    asked.rest = true;
    Result const result = searcher().answer(asked);
    Move const best = result.lines.at(0).moves.at(0);
    ASSERT_FALSE(result.rest.moves.empty());
    EXPECT_NE(result.rest.moves[0], best);
    EXPECT_EQ(result.rest.depth, 5);
    EXPECT_FALSE(result.rest.at_least);
    EXPECT_EQ(result.nodes, ask(fen, "depth=5").nodes);
    asked.played = best;
    EXPECT_EQ(moves_text(searcher().answer(asked).rest.moves), moves_text(result.rest.moves));
    asked.played = result.rest.moves[0];
    EXPECT_TRUE(searcher().answer(asked).rest.moves.empty());
    asked.played = Move();
    asked.limit = parse_limit("static").value();
    EXPECT_TRUE(searcher().answer(asked).rest.moves.empty());
    // There is no rest of a single move.
    asked = question("7k/8/8/8/8/8/r7/7K w - - 0 1", "depth=3");
    asked.rest = true;
    EXPECT_EQ(searcher().answer(asked).lines.size(), 1U);
    EXPECT_TRUE(searcher().answer(asked).rest.moves.empty());
    asked.rest = false;
    asked.fen = fen;
    EXPECT_TRUE(searcher().answer(asked).rest.moves.empty());
}

TEST(PositionSearchTest, SeveralLinesBeginWithDifferentMoves) {
    Result const result = ask(positions::quiet_middle_game, "depth=5", 4);
    ASSERT_EQ(result.lines.size(), 4U);
    EXPECT_EQ(result.depth, 5);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(result.lines[i].depth, 5);
        for (std::size_t j = 0; j < i; ++j) {
            EXPECT_NE(result.lines[i].moves[0], result.lines[j].moves[0]);
        }
    }
}

// The engine searches further lines in a window that is never turned round, so that a line whose
// score is above 0 for the other side has a bound for a score and no reply.
TEST(PositionSearchTest, LinesWithoutAReplyAreLowerBounds) {
    int bounds = 0;
    for (Line const& line : ask(positions::start, "depth=5", 20).lines) {
        EXPECT_EQ(line.at_least, line.moves.size() == 1);
        EXPECT_TRUE(!line.at_least || line.why_not == unexplained::not_found);
        bounds += line.at_least ? 1 : 0;
    }
    EXPECT_GT(bounds, 0);
}

TEST(PositionSearchTest, ALimitOfNodesIsKeptExactlyAndGivesWholeIterations) {
    for (std::uint64_t const nodes : {1U, 20U, 500U, 5000U, 40000U}) {
        Result const result = ask(positions::start, "nodes=" + std::to_string(nodes));
        EXPECT_EQ(result.nodes, nodes);
        ASSERT_EQ(result.lines.size(), 1U);
        EXPECT_GE(result.lines[0].depth, result.depth);
        EXPECT_LE(result.lines[0].depth, result.depth + 1);
    }
    EXPECT_EQ(ask(positions::start, "nodes=1").depth, 0);
    EXPECT_GE(ask(positions::start, "nodes=36000").depth, 8);
}

// In each the search had found a line of its last iteration and then a move that is better by an
// unknown amount, when it was stopped.
TEST(PositionSearchTest, ALineThatIsKnownNotToBeTheBestIsNotTaken) {
    for (auto const& [fen, limit] :
         {std::pair("r1b1kb1r/pp3ppp/1qnp1n2/4p3/2B1P3/1NN5/PPP2PPP/R1BQK2R w KQkq - 0 8",
                    "nodes=4885"),
          {"rq2r1k1/2n1ppb1/7p/2QPPbp1/1p6/4BN1P/PP2N1P1/R4RK1 b - - 6 27", "nodes=6439"},
          {"1r2kbnr/p1pb2pp/5p2/p2Pp3/1qp1P3/2N2N2/PPQ2PPP/R3KB1R w KQk - 4 14", "nodes=1777"}}) {
        Result const result = ask(fen, limit);
        EXPECT_EQ(result.lines.at(0).depth, result.depth) << fen;
    }
}

TEST(PositionSearchTest, TheBestLineOfAnIterationThatWasCutShortComesFirst) {
    int newer = 0;
    for (int nodes = 1000; nodes < 20000; nodes += 1000) {
        Result const result = ask(positions::kiwipete, "nodes=" + std::to_string(nodes), 2);
        newer += result.lines[0].depth == result.depth + 1 ? 1 : 0;
        ASSERT_GE(result.lines.size(), 1U);
        for (std::size_t i = 1; i < result.lines.size(); ++i) {
            EXPECT_EQ(result.lines[i].depth, result.depth);
            EXPECT_NE(result.lines[i].moves[0], result.lines[0].moves[0]);
        }
    }
    EXPECT_GT(newer, 0);
}

TEST(PositionSearchTest, LinesAtALimitOfNodesAreExplained) {
    int explained = 0;
    for (int nodes = 1000; nodes < 30000; nodes += 1000) {
        Result const result = ask(positions::quiet_middle_game, "nodes=" + std::to_string(nodes));
        explained += result.lines[0].why_not == unexplained::none ? 1 : 0;
    }
    EXPECT_EQ(explained, 29);
}

TEST(PositionSearchTest, WithoutAWholeIterationSomeLegalMoveIsGiven) {
    Result const result = ask(positions::quiet_middle_game, "nodes=1");
    ASSERT_EQ(result.lines.size(), 1U);
    EXPECT_EQ(result.lines[0].depth, 0);
    EXPECT_EQ(result.lines[0].score, result.static_score);
    EXPECT_EQ(result.lines[0].moves.size(), 1U);
    EXPECT_EQ(result.lines[0].why_not, unexplained::not_found);
}

TEST(PositionSearchTest, ThePlayedMoveIsSearchedByItself) {
    Result const result = ask_played(positions::quiet_middle_game, "depth=5", "e2d1");
    EXPECT_EQ(result.played.moves.at(0), move_of(positions::quiet_middle_game, "e2d1"));
    EXPECT_EQ(result.played.depth, 5);
    EXPECT_LT(result.played.score, result.lines[0].score);
    EXPECT_EQ(result.played.why_not, unexplained::none);
    // The search of the lines is as it is without.
    EXPECT_EQ(result.nodes, ask(positions::quiet_middle_game, "depth=5").nodes);
}

TEST(PositionSearchTest, ThePlayedMoveIsTakenFromTheLinesWhereItIsAmongThem) {
    std::string const limit = orvelin::test::short_tests ? "depth=3" : "depth=4";
    Result const lines = ask(positions::quiet_middle_game, limit, 3);
    for (Line const& line : lines.lines) {
        if (line.at_least) {
            continue;
        }
        Result const result =
            ask_played(positions::quiet_middle_game, limit, line.moves[0].algebraic(false), 3);
        EXPECT_EQ(result.played.score, line.score);
        EXPECT_EQ(result.played.moves, line.moves);
    }
}

TEST(PositionSearchTest, AnIllegalPlayedMoveIsNoQuestion) {
    Question asked = question(positions::start, "depth=2");
    asked.played = move_of(positions::kiwipete, "e5f7");
    EXPECT_TRUE(searcher().answer(asked).played.moves.empty());
}

TEST(PositionSearchTest, ThePlayedMoveNeedNotTellWhetherItGivesCheck) {
    std::string const fen = "4k3/8/8/8/8/4B3/4R3/K7 w - - 0 1";
    Question asked = question(fen, "depth=3");
    asked.played = move_of(fen, "e3g5");
    ASSERT_TRUE(asked.played.check());
    asked.played.check(false);
    EXPECT_EQ(searcher().answer(asked).played.moves.at(0).algebraic(false), "e3g5");
}

TEST(PositionSearchTest, LeavesAreLeftAwayWhereTheyAreNotWanted) {
    Question asked = question(positions::quiet_middle_game, "depth=4");
    asked.leaves = false;
    Result const result = searcher().answer(asked);
    EXPECT_TRUE(result.lines[0].leaf.fen.empty());
    EXPECT_EQ(result.nodes, ask(positions::quiet_middle_game, "depth=4").nodes);
}

TEST(PositionSearchTest, InterruptEndsALongSearch) {
    PositionSearch search;
    Question asked = question(positions::quiet_middle_game, "depth=60");
    asked.played = move_of(positions::quiet_middle_game, "c4f7");
    std::atomic<bool> answered{false};
    // Once, and for the case that the search had not begun or goes on with the next after a while.
    std::thread other([&] {
        for (int i = 0; !answered.load(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            if (i == 40 || i > 400) {
                search.interrupt();
            }
        }
    });
    Result const result = search.answer(asked);
    answered.store(true);
    other.join();
    EXPECT_LT(result.depth, 60);
    EXPECT_EQ(result.played.depth, 0);
    // What is asked next is answered in full.
    EXPECT_EQ(text_of(search.answer(question(positions::kiwipete, "depth=4"))),
              text_of(ask(positions::kiwipete, "depth=4")));
}

}  // namespace

}  // namespace orvelin::analyse::test
