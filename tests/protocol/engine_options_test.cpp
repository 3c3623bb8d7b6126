// What each option does to the engine.

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "protocol/engine_options_fixture.h"
#include "search/action.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;

class EngineOptionsTest : public EngineOptionsFixture {};

TEST_F(EngineOptionsTest, StartValues) {
    expect_start_values("start");
}

TEST_F(EngineOptionsTest, HashIsRoundedDownToAPowerOfTwo) {
    for (auto const& [megabytes, expected] :
         std::vector<std::pair<std::string, std::uint64_t>>{{"5", 65536},
                                                            {"100", 1048576},
                                                            {"6", 65536},
                                                            {"7", 65536},
                                                            {"8", 131072},
                                                            {"1", 65536},
                                                            {"15", 131072},
                                                            {"16", 262144},
                                                            {"127", 1048576},
                                                            {"128", 2097152},
                                                            {"255", 2097152},
                                                            {"256", 4194304},
                                                            {"+32", 524288},
                                                            {"12.9", 131072},
                                                            {"64MB", 1048576}}) {
        set("Hash", megabytes);
        EXPECT_EQ(buckets(), expected) << megabytes;
    }
}

TEST_F(EngineOptionsTest, HashOfZeroOrBelowIsIgnored) {
    set("Hash", "16");
    for (char const* const value : {"0", "-1", "-128", "-2147483648", "-99999999999"}) {
        set("Hash", value);
        EXPECT_EQ(buckets(), 262144U) << value;
    }
}

TEST_F(EngineOptionsTest, HashOfTheSameSizeKeepsTheContents) {
    fill_table();
    for (char const* const same : {"128", "0", "-5", "nothing", "200"}) {
        set("Hash", same);
        EXPECT_TRUE(remembers_start()) << same;
    }
}

TEST_F(EngineOptionsTest, HashOfAnotherSizeEmptiesTheTable) {
    fill_table();
    set("Hash", "100");
    EXPECT_FALSE(remembers_start());
    EXPECT_EQ(engine->analysis().get_hashfull(), 0);
    fill_table();
    set("Hash", "64");
    EXPECT_TRUE(remembers_start());
    set("Hash", "128");
    EXPECT_FALSE(remembers_start());
}

TEST_F(EngineOptionsTest, HashDuringASearchIsInForceForTheNextOne) {
    command("position startpos");
    command("go infinite");
    ASSERT_TRUE(wait_for_iteration(2));
    set("Hash", "16");
    EXPECT_EQ(engine->analysis().get_status(), searching_status);
    command("stop");
    EXPECT_TRUE(replies().back().starts_with("bestmove "));
    command("position startpos");
    EXPECT_EQ(buckets(), 262144U);
}

TEST_F(EngineOptionsTest, ThreadsAreStoredUpToTwoAndChangeNoSearch) {
    for (auto const& [value, expected] :
         std::vector<std::pair<std::string, unsigned>>{{"2", 2},
                                                       {"0", 1},
                                                       {"1", 1},
                                                       {"3", 2},
                                                       {"-1", 2},
                                                       {"-2147483648", 2},
                                                       {"99999999999", 2},
                                                       {"512", 2}}) {
        set("Threads", value);
        EXPECT_EQ(probe.max_threads(), expected) << value;
    }
    std::vector<std::uint64_t> nodes;
    for (char const* const value : {"1", "2"}) {
        set("Threads", value);
        command("ucinewgame");
        command("position startpos");
        best_move_of("go depth 5");
        nodes.push_back(engine->analysis().get_node_count());
    }
    EXPECT_EQ(nodes[0], nodes[1]);
}

TEST_F(EngineOptionsTest, PonderingWorksWhateverThePonderOptionSays) {
    for (char const* const value : {"false", "true", "never"}) {
        set("Ponder", value);
        command("position startpos moves e2e4");
        command("go ponder depth 2");
        EXPECT_EQ(engine->engine_state(), 2) << value;
        ASSERT_TRUE(wait_for_status(finished_status)) << value;
        engine->to_console();
        for (std::string const& line : replies()) {
            EXPECT_TRUE(line.starts_with("info")) << line;
        }
        command("ponderhit");
        EXPECT_TRUE(search_to_end().back().starts_with("bestmove ")) << value;
    }
}

TEST_F(EngineOptionsTest, LimitStrengthAloneChangesNoLimit) {
    set("UCI_LimitStrength", "true");
    EXPECT_TRUE(probe.limit_strength());
    // The announced strength of 2000 is not applied before it is sent.
    EXPECT_EQ(engine->analysis().strength_depth(), 102);
    EXPECT_EQ(engine->analysis().strength_margin(), 0);
    set("UCI_Elo", "2000");
    EXPECT_EQ(engine->analysis().strength_depth(), 12);
}

TEST_F(EngineOptionsTest, LimitStrengthOffLiftsTheLimitsAndKeepsTheElo) {
    set("UCI_Elo", "1600");
    EXPECT_FALSE(probe.limit_strength());
    set("UCI_LimitStrength", "true");
    EXPECT_EQ(engine->analysis().strength_depth(), 4);
    EXPECT_EQ(engine->analysis().strength_margin(), 160);
    set("UCI_LimitStrength", "false");
    EXPECT_EQ(engine->analysis().strength_depth(), 102);
    EXPECT_EQ(engine->analysis().strength_margin(), 0);
    EXPECT_EQ(engine->analysis().elo(), 1600);
    set("UCI_LimitStrength", "true");
    EXPECT_EQ(engine->analysis().strength_depth(), 102);
}

TEST_F(EngineOptionsTest, EloIsClampedNotRefused) {
    struct {
        char const* value;
        int elo;
        int depth;
        int margin;
    } const rows[] = {
        {"1499", 1500, 2, 200},       {"1500", 1500, 2, 200},         {"-2000", 1500, 2, 200},
        {"1750", 1750, 6, 100},       {"1999", 1999, 10, 0},          {"2000", 2000, 12, 0},
        {"2199", 2199, 14, 0},        {"2200", 2200, 14, 0},          {"2201", 2200, 14, 0},
        {"99999999999", 2200, 14, 0}, {"-99999999999", 1500, 2, 200}, {"3000", 2200, 2, 0},
    };
    for (auto const& row : rows) {
        set("UCI_Elo", row.value);
        EXPECT_EQ(engine->analysis().elo(), row.elo) << row.value;
        EXPECT_EQ(engine->analysis().strength_depth(), row.depth) << row.value;
        EXPECT_EQ(engine->analysis().strength_margin(), row.margin) << row.value;
    }
}

TEST_F(EngineOptionsTest, Chess960ChangesTheTextOfCastlingOnly) {
    struct {
        char const* option;
        char const* move;
    } const rows[] = {{"false", "e1g1"}, {"true", "e1h1"}, {"maybe", "e1g1"}};
    for (auto const& row : rows) {
        set("UCI_Chess960", row.option);
        for (std::string const given : {"e1g1", "e1h1"}) {
            command("position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1");
            EXPECT_TRUE(best_move_of("go depth 2 searchmoves " + given)
                            .starts_with(std::string("bestmove ") + row.move))
                << row.option << given;
            // The line of the game grows by the same text.
            EXPECT_TRUE(engine->position_line().ends_with(std::string(" ") + row.move));
            command("position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1 moves " + given);
            EXPECT_EQ(fen(), "4k3/8/8/8/8/8/8/5RK1 b - - 1 1") << row.option << given;
        }
        command("position fen 4k3/8/8/8/8/8/8/4K2R w H - 0 1 moves e1h1");
        EXPECT_EQ(fen(), "4k3/8/8/8/8/8/8/5RK1 b - - 1 1") << row.option;
    }
}

TEST_F(EngineOptionsTest, NumberOfLinesIsLimitedToFifty) {
    for (auto const& [value, expected] :
         std::vector<std::pair<std::string, int>>{{"2", 2},
                                                  {"0", 1},
                                                  {"3", 3},
                                                  {"49", 49},
                                                  {"50", 50},
                                                  {"51", 50},
                                                  {"1", 1},
                                                  {"256", 50},
                                                  {"-1", 50},
                                                  {"7", 7},
                                                  {"-2147483648", 50},
                                                  {"2147483647", 50},
                                                  {"99999999999", 50}}) {
        set("MultiPV", value);
        EXPECT_EQ(probe.number_of_lines(), expected) << value;
    }
}

TEST_F(EngineOptionsTest, NumberOfLinesIsWhatTheSearchFinds) {
    command("position startpos");
    for (int const lines : {3, 1, 2}) {
        set("MultiPV", std::to_string(lines));
        command("position startpos");
        best_move_of("go depth 3");
        EXPECT_EQ(engine->analysis().mpv().size(), lines);
    }
}

TEST_F(EngineOptionsTest, OptionsAreNotHeldBackWhileASearchRuns) {
    command("position startpos");
    command("go infinite");
    ASSERT_TRUE(wait_for_status(searching_status));
    set("MultiPV", "3");
    set("Threads", "2");
    set("UCI_Elo", "1800");
    set("Ponder", "false");
    EXPECT_EQ(probe.max_threads(), 2U);
    EXPECT_EQ(engine->analysis().elo(), 1800);
    EXPECT_EQ(engine->analysis().mpv().number(), 3);
    EXPECT_EQ(engine->analysis().get_status(), searching_status);
    EXPECT_EQ(engine->engine_state(), 3);
    EXPECT_EQ(replies(), lines_t{});
    command("stop");
    EXPECT_TRUE(replies().back().starts_with("bestmove "));
}

}  // namespace
}  // namespace orvelin::test
