#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "search/action.h"
#include "support/analysis_probe.h"
#include "support/engine_fixture.h"
#include "support/logic_error_text.h"
#include "support/positions.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;

constexpr char const* other_fen = positions::last_of_bench;

class EnginePositionTest : public EngineFixture {
 protected:
    std::string history() const { return engine->position().history_str(); }
};

TEST_F(EnginePositionTest, StartposWithMoves) {
    command("position startpos moves e2e4 e7e5 g1f3");
    EXPECT_EQ(fen(), "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 2");
    EXPECT_EQ(history(), "e2e4 e7e5 g1f3");
    EXPECT_EQ(engine->position_line(), "position startpos moves e2e4 e7e5 g1f3");
}

TEST_F(EnginePositionTest, FenReadsExactlySixTokens) {
    command(
        std::string("position fen  r2q2k1/pp1rbppp/4pn2/2P5/1P3B2/6P1/P3QPBP/1R3RK1   w - -  ") +
        "3 17 moves c5c6");
    EXPECT_EQ(fen(), "r2q2k1/pp1rbppp/2P1pn2/8/1P3B2/6P1/P3QPBP/1R3RK1 b - - 0 17");
    EXPECT_EQ(engine->position().initial_position(),
              "r2q2k1/pp1rbppp/4pn2/2P5/1P3B2/6P1/P3QPBP/1R3RK1 w - - 3 17");
}

TEST_F(EnginePositionTest, AFenOfFourFieldsSwallowsTheWordsBehindIt) {
    command("position fen r2q2k1/pp1rbppp/4pn2/2P5/1P3B2/6P1/P3QPBP/1R3RK1 w - - moves c5c6");
    EXPECT_EQ(fen(), other_fen);
}

TEST_F(EnginePositionTest, AFenOfFourFieldsAloneIsCompleted) {
    command("position fen r2q2k1/pp1rbppp/4pn2/2P5/1P3B2/6P1/P3QPBP/1R3RK1 w - -");
    EXPECT_EQ(fen(), other_fen);
}

TEST_F(EnginePositionTest, TestposIsAFixedPosition) {
    command("position testpos");
    EXPECT_EQ(fen(), "b4bN1/4p1p1/1Q1p2K1/q1np4/3p1Rnk/6pr/4Rppr/3N4 w - - 0 1");
    command("position testpos moves f4g4");
    EXPECT_EQ(history(), "f4g4");
}

TEST_F(EnginePositionTest, AnUnknownKindLeavesThePositionAsItIs) {
    command("position startpos moves e2e4");
    command("position somewhere moves e7e5");
    EXPECT_EQ(history(), "e2e4 e7e5");
}

TEST_F(EnginePositionTest, AWordOtherThanMovesEndsTheParse) {
    command("position startpos with e2e4");
    EXPECT_EQ(fen(), start_fen);
    EXPECT_EQ(engine->position_line(), "position startpos with e2e4");
}

TEST_F(EnginePositionTest, MovesWithNothingBehindItMakesNone) {
    command("position startpos moves");
    EXPECT_EQ(fen(), start_fen);
}

TEST_F(EnginePositionTest, OneMoveMoreIsMadeOnThePositionAsItStands) {
    command("position startpos moves e2e4");
    command("usermove e7e5");
    command("position startpos moves e2e4 g1f3");
    EXPECT_EQ(history(), "e2e4 e7e5 g1f3");
    EXPECT_EQ(engine->position_line(), "position startpos moves e2e4 g1f3");
}

TEST_F(EnginePositionTest, TwoMovesMoreAreParsedInFull) {
    command("position startpos moves e2e4");
    command("usermove e7e5");
    command("position startpos moves d2d4 d7d5 c2c4");
    EXPECT_EQ(history(), "d2d4 d7d5 c2c4");
}

TEST_F(EnginePositionTest, ThePrefixIsComparedToTheByte) {
    command("position startpos moves e2e4");
    command("usermove e7e5");
    command("position  startpos moves e2e4 c7c5");
    EXPECT_EQ(history(), "e2e4 c7c5");
}

TEST_F(EnginePositionTest, StartposGivenTwiceIsParsedTwice) {
    command("position startpos");
    command("usermove e2e4");
    command("position startpos");
    EXPECT_EQ(fen(), start_fen);
}

TEST_F(EnginePositionTest, ABarePositionAfterUcinewgameTakesItsOwnTailForAMove) {
    command("position startpos moves e2e4");
    command("ucinewgame");
    EXPECT_EQ(logic_error_text([&] { command("position"); }),
              "ChessPosition::convert_to_move(const string& osition)");
    EXPECT_EQ(engine->position_line(), "position");
}

TEST_F(EnginePositionTest, ALeadingBlankIsNoPlaceToSplit) {
    EXPECT_EQ(logic_error_text([&] { command(" position"); }),
              "ChessPosition::convert_to_move(const string& position)");
}

TEST_F(EnginePositionTest, ABarePositionElsewhereLeavesThePosition) {
    command("position startpos moves e2e4");
    command("position");
    EXPECT_EQ(history(), "e2e4");
    EXPECT_EQ(engine->position_line(), "position");
}

TEST_F(EnginePositionTest, TrailingBlanksAreStripped) {
    command("position startpos moves e2e4   ");
    EXPECT_EQ(engine->position_line(), "position startpos moves e2e4");
    command("usermove e7e5");
    command("position startpos moves e2e4 g1f3  ");
    EXPECT_EQ(history(), "e2e4 e7e5 g1f3");
}

TEST_F(EnginePositionTest, BestmoveIsAppendedSoThatTheReplyAloneIsMade) {
    command("position startpos moves e2e4 e7e5");
    std::string const best = best_move_of("go depth 1").substr(9, 4);
    EXPECT_EQ(engine->position_line(), "position startpos moves e2e4 e7e5 " + best);
    std::string const key_before = engine->position().history_str();
    command("usermove b8c6");
    command(engine->position_line() + " g8f6");
    EXPECT_EQ(history(), key_before + " b8c6 g8f6");
}

TEST_F(EnginePositionTest, WithoutTheWordMovesTheNextLineIsParsedInFull) {
    command("position startpos");
    std::string const best = best_move_of("go depth 1").substr(9, 4);
    EXPECT_EQ(engine->position_line(), "position startpos " + best);
    command("usermove b8c6");
    command("position startpos moves " + best + " e7e5");
    EXPECT_EQ(history(), best + " e7e5");
}

TEST_F(EnginePositionTest, StopDoesNotAppendSoThatTheNextLineIsParsedInFull) {
    command("position startpos moves e2e4 e7e5");
    command("go infinite");
    ASSERT_TRUE(wait_for_iteration(2));
    command("stop");
    EXPECT_EQ(engine->position_line(), "position startpos moves e2e4 e7e5");
    std::string const best = engine->analysis().best_move().algebraic(false);
    EXPECT_EQ(history(), "e2e4 e7e5 " + best);
    command("position startpos moves e2e4 e7e5 g1f3 b8c6");
    EXPECT_EQ(history(), "e2e4 e7e5 g1f3 b8c6");
}

TEST_F(EnginePositionTest, AfterAStopALineWithOneMoveMoreIsParsedInFull) {
    command("position startpos moves e2e4");
    command("go infinite");
    ASSERT_TRUE(wait_for_iteration(2));
    command("stop");
    command("position startpos moves e2e4 d7d5");
    EXPECT_EQ(history(), "e2e4 d7d5");
    command("position startpos moves e2e4 d7d5 e4d5");
    EXPECT_EQ(history(), "e2e4 d7d5 e4d5");
}

TEST_F(EnginePositionTest, PositionDuringASearchStopsItSilently) {
    open_log();
    command("position startpos");
    command("go wtime 600000 btime 600000");
    ASSERT_TRUE(wait_for_status(searching_status));
    ASSERT_TRUE(wait_for_iteration(2));
    command("position startpos moves e2e4");
    EXPECT_NE(engine->analysis().get_status(), searching_status);
    EXPECT_EQ(engine->engine_state(), 1);
    engine->to_console();
    for (std::string const& line : replies()) {
        EXPECT_FALSE(line.starts_with("bestmove")) << line;
    }

    command("go depth 1");
    EXPECT_EQ(engine->analysis().get_action(), no_action);
    EXPECT_NE(log_text().find("\nError: received go while already thinking\n"), std::string::npos);

    command("stop");
    std::string const old_best = engine->analysis().best_move().algebraic(false);
    EXPECT_TRUE(replies().back().starts_with("bestmove " + old_best));
    EXPECT_EQ(engine->engine_state(), 0);
    EXPECT_EQ(history(), "e2e4 " + old_best);
}

TEST_F(EnginePositionTest, PositionResetsTheLimits) {
    command("position startpos");
    command("go depth 1 wtime 60000 movestogo 1");
    search_to_end();
    command("position startpos moves e2e4");
    TimeManager& limits = engine->analysis().time_manager();
    limits.set_white_to_move(true);
    EXPECT_EQ(limits.hard_limit(), [] {
        TimeManager defaults;
        defaults.set_white_to_move(true);
        return defaults.hard_limit();
    }());
    engine->set_action(1);
    EXPECT_TRUE(wait_for_iteration(3));
    engine->set_action(2);
}

TEST_F(EnginePositionTest, PositionTakesAHeldBackBestmoveAway) {
    command("position startpos");
    command("go ponder depth 2");
    ASSERT_TRUE(wait_for_status(finished_status));
    std::string const old_best = engine->analysis().best_move().algebraic(false);
    command("position startpos moves e2e4");
    EXPECT_EQ(engine->analysis().get_status(), ready_status);
    engine->to_console();
    EXPECT_EQ(replies(), lines_t{});
    command("stop");
    EXPECT_TRUE(replies().back().starts_with("bestmove " + old_best));
    EXPECT_EQ(history(), "e2e4 " + old_best);
}

TEST_F(EnginePositionTest, UcinewgameSetsTheStartPositionAndEmptiesLineAndTable) {
    engine->analysis().set_hash_size(6);
    command("position startpos moves e2e4");
    command("go depth 8");
    search_to_end();
    EXPECT_GT(engine->analysis().get_hashfull(), 0);
    command("ucinewgame");
    EXPECT_EQ(fen(), start_fen);
    EXPECT_EQ(engine->position_line(), "");
    EXPECT_EQ(engine->analysis().get_hashfull(), 0);
}

TEST_F(EnginePositionTest, UcinewgameForgetsKillersAndAStoppedSearch) {
    AnalysisProbe probe(engine->analysis());
    command("position startpos");
    command("go infinite");
    ASSERT_TRUE(wait_for_iteration(2));
    command("stop");
    probe.killers().set_killer(3, engine->analysis().best_move());
    command("ucinewgame");
    EXPECT_EQ(probe.killers().get_killerA(3), Move());
    // As for a position line that is empty and complete, the word's tail is taken for a move.
    EXPECT_EQ(logic_error_text([&] { command("position"); }),
              "ChessPosition::convert_to_move(const string& osition)");
}

TEST_F(EnginePositionTest, UcinewgameMakesTheNextSearchLikeTheFirst) {
    std::uint64_t first = 0;
    for (int game = 0; game < 2; ++game) {
        command("ucinewgame");
        command("position " + std::string("fen ") + other_fen);
        command("go depth 6");
        search_to_end();
        std::uint64_t const nodes = engine->analysis().get_node_count();
        if (game == 0) {
            first = nodes;
        }
        EXPECT_EQ(nodes, first);
    }
    command("position " + std::string("fen ") + other_fen + " ");
    command("go depth 6");
    search_to_end();
    EXPECT_NE(engine->analysis().get_node_count(), first);
}

TEST_F(EnginePositionTest, UcinewgameDoesNotReadyForASearch) {
    Analysis& analysis = engine->analysis();
    analysis.set_status(finished_status);
    analysis.set_movetime(1234);
    analysis.set_depth(3);
    command("ucinewgame");
    EXPECT_EQ(analysis.get_status(), finished_status);
    EXPECT_EQ(analysis.time_manager().remaining_time(0), 1234);
    EXPECT_EQ(AnalysisProbe(analysis).depth_limit(), 3);
}

TEST_F(EnginePositionTest, UsermoveResetsTheLimitsButThatOfNodes) {
    Analysis& analysis = engine->analysis();
    AnalysisProbe const limits(analysis);
    analysis.set_depth(3);
    analysis.set_movetime(1234);
    analysis.set_searchmoves({Move()});
    analysis.set_nodes(77);
    command("usermove e2e4");
    EXPECT_EQ(limits.depth_limit(), 101);
    EXPECT_EQ(analysis.time_manager().remaining_time(0), TimeManager().remaining_time(0));
    EXPECT_TRUE(limits.searchmoves().empty());
    EXPECT_EQ(limits.max_nodes(), 77U);
}

TEST_F(EnginePositionTest, UsermoveMakesAMoveAndClearsTheStatus) {
    command("usermove e2e4");
    EXPECT_EQ(history(), "e2e4");
    EXPECT_EQ(engine->position_line(), "");
    engine->analysis().set_status(finished_status);
    command("usermove e7e5");
    EXPECT_EQ(engine->analysis().get_status(), ready_status);
}

TEST_F(EnginePositionTest, ABadUsermoveIsReportedAndThrown) {
    std::ostringstream errors;
    std::streambuf* const old_buffer = std::cerr.rdbuf(errors.rdbuf());
    std::string const text = logic_error_text([&] { command("usermove e2e9"); });
    std::cerr.rdbuf(old_buffer);
    EXPECT_EQ(text, "Engine::from_console() error");
    EXPECT_EQ(errors.str(), start_fen + "    move=e2e9\n");
}

TEST_F(EnginePositionTest, AMissingUsermoveIsABadOne) {
    std::ostringstream errors;
    std::streambuf* const old_buffer = std::cerr.rdbuf(errors.rdbuf());
    std::string const text = logic_error_text([&] { command("usermove"); });
    std::cerr.rdbuf(old_buffer);
    EXPECT_EQ(text, "Engine::from_console() error");
    EXPECT_EQ(errors.str(), start_fen + "    move=\n");
}

// The status is written by hand: a usermove under a real search would tear at its position.
TEST_F(EnginePositionTest, UsermoveDuringASearchThrows) {
    engine->analysis().set_status(searching_status);
    EXPECT_EQ(logic_error_text([&] { command("usermove e2e4"); }),
              "Analysis::init  init() call while thinking not allowed");
    engine->analysis().set_status(ready_status);
}

TEST_F(EnginePositionTest, ABadMoveInThePositionLineIsThrown) {
    EXPECT_EQ(logic_error_text([&] { command("position startpos moves e2e4 e7"); }),
              "ChessPosition::convert_to_move(const string& e7)");
    EXPECT_EQ(history(), "e2e4");
}

}  // namespace
}  // namespace orvelin::test
