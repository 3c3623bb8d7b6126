// What the options do to the answers of the real engine.

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "protocol/engine_directory_fixture.h"
#include "support/data_file.h"
#include "support/positions.h"
#include "support/referee.h"
#include "support/test_config.h"

namespace orvelin::test {
namespace {

/// Only the kings can move, so that deep iterations take no time.
std::string const locked_fen = "4k3/8/8/p1p1p1p1/P1P1P1P1/8/8/4K3 w - - 0 1";
/// White has more than fifty moves and no mate.
std::string const wide_fen = "6k1/5ppp/8/1q6/2R3Q1/1B2B3/5PPP/3R2K1 w - - 0 1";

std::string option(std::string const& name, std::string const& value) {
    return "setoption name " + name + " value " + value;
}

/// The word behind the given one in a line of answers; empty when the word is not in it.
std::string word_after(std::string const& word, std::string const& line) {
    std::vector<std::string> const words = split_words(line);
    auto const found = std::find(words.begin(), words.end(), word);
    return found == words.end() || found + 1 == words.end() ? "" : *(found + 1);
}

int number_after(std::string const& word, std::string const& line) {
    std::string const number = word_after(word, line);
    return number.empty() ? 0 : std::stoi(number);
}

class ProcessOptionsTest : public EngineDirectoryFixture {
 protected:
    ProcessOptionsTest() { start(); }

    /// The deepest iteration that is reported when a search under no other limit is left alone
    /// until it has reported the expected one.
    int deepest_iteration(int expected) {
        engine->send_all({"position fen " + locked_fen, "go depth 18 infinite"});
        lines_t lines = answers_until("info depth " + std::to_string(expected) + " ");
        for (int tick = 0; tick < 3; ++tick) {
            append(lines, say({}));
        }
        append(lines, search({"stop"}));
        int deepest = 0;
        for (std::string const& line : lines) {
            deepest = std::max(deepest, number_after("depth", line));
        }
        last_answer = lines.back();
        return deepest;
    }

    static void append(lines_t& lines, lines_t const& more) {
        lines.insert(lines.end(), more.begin(), more.end());
    }

    /// The numbers of the lines that are reported, read until one of them is the expected one and
    /// some more have come.
    std::set<int> reported_lines(std::string const& fen, int depth, int expected) {
        engine->send_all({"position fen " + fen, "go infinite depth " + std::to_string(depth)});
        std::set<int> numbers;
        for (int more = 60; more > 0;) {
            auto const line = engine->read_line();
            if (!line || line->text == "readyok") {
                break;
            }
            numbers.insert(number_after("multipv", line->text));
            if (!numbers.contains(expected)) {
                continue;
            }
            // The answer comes behind all reports that wait by now, of which there may be many.
            if (more-- == 60) {
                engine->send("isready");
            }
        }
        return numbers;
    }

    std::string last_answer;
};

TEST_F(ProcessOptionsTest, StrengthIsLimitedByDepth) {
    struct {
        char const* elo;
        int deepest;
    } const rows[] = {{"1400", 3},  {"1500", 3},  {"1600", 5},  {"1700", 7},  {"1800", 9},
                      {"1900", 11}, {"1999", 11}, {"2000", 13}, {"2100", 15}, {"2199", 15}};
    say({option("Hash", "6"), option("UCI_LimitStrength", "true")});
    // The announced strength is not in force before it is sent.
    EXPECT_EQ(deepest_iteration(18), 18);
    for (auto const& row : rows) {
        say({option("UCI_Elo", row.elo)});
        EXPECT_EQ(deepest_iteration(row.deepest), row.deepest) << row.elo;
        EXPECT_EQ(word_after("ponder", last_answer), "") << last_answer;
    }
}

TEST_F(ProcessOptionsTest, TheStrongestLevelKeepsTheDepthLimitThatWasSet) {
    say({option("Hash", "6"), option("UCI_LimitStrength", "true"), option("UCI_Elo", "2200")});
    EXPECT_EQ(deepest_iteration(18), 18);
    say({option("UCI_Elo", "2500")});
    EXPECT_EQ(deepest_iteration(18), 18);
    say({option("UCI_Elo", "1600"), option("UCI_Elo", "2200")});
    EXPECT_EQ(deepest_iteration(5), 5);
    // Switched off, the limit is gone for good.
    say({option("UCI_LimitStrength", "false")});
    EXPECT_EQ(deepest_iteration(18), 18);
    EXPECT_NE(word_after("ponder", last_answer), "") << last_answer;
    say({option("UCI_LimitStrength", "true")});
    EXPECT_EQ(deepest_iteration(18), 18);
}

TEST_F(ProcessOptionsTest, EloWithoutLimitStrengthChangesNothing) {
    say({option("UCI_Elo", "1500")});
    EXPECT_EQ(deepest_iteration(18), 18);
}

TEST_F(ProcessOptionsTest, AWeakenedEngineSpendsItsTime) {
    say({option("UCI_LimitStrength", "true"), option("UCI_Elo", "1500")});
    auto const start_time = EngineProcess::clock::now();
    lines_t const lines = search({"position startpos", "go movetime 700"});
    auto const time = EngineProcess::clock::now() - start_time;
    EXPECT_GE(time, std::chrono::milliseconds(400));
    for (std::string const& line : lines) {
        EXPECT_LE(number_after("depth", line), 3) << line;
    }
}

// The table is emptied before every iteration of a weakened search.
TEST_F(ProcessOptionsTest, StrengthDoesNotHangOnTheSizeOfTheTable) {
    // Builds with sanitizers are slower, but not by the size of the table. A busy machine may take
    // the time away from a search or two, but never gives one more.
    std::string const clock = short_tests ? "40000" : "2000";
    std::vector<std::string> const sizes =
        whole_tests() ? std::vector<std::string>{"6", "128", "256", "1024", "4096"}
                      : std::vector<std::string>{"6", "4096"};
    for (std::string const& megabytes : sizes) {
        int deepest = 0;
        for (int tries = 0; tries < 5 && deepest < 3; ++tries) {
            start();
            say({option("Hash", megabytes), option("UCI_LimitStrength", "true"),
                 option("UCI_Elo", "1500")});
            for (std::string const& line :
                 search({"position startpos", "go wtime " + clock + " btime " + clock})) {
                deepest = std::max(deepest, number_after("depth", line));
            }
        }
        EXPECT_EQ(deepest, 3) << megabytes;
    }
}

TEST_F(ProcessOptionsTest, ANewGameBehindAShortSearchBeginsAtOnceAlsoWithALargeTable) {
    say({option("Hash", "4096")});
    search({"position startpos", "go depth 5"});
    auto const start_time = EngineProcess::clock::now();
    say({"ucinewgame"});
    EXPECT_LT(EngineProcess::clock::now() - start_time, std::chrono::milliseconds(1500));
}

TEST_F(ProcessOptionsTest, AsManyLinesAreReportedAsAreWanted) {
    ASSERT_GT(Referee(wide_fen).legal_moves().size(), 50U);
    ASSERT_EQ(Referee(start_fen).legal_moves().size(), 20U);
    struct {
        std::string fen;
        char const* wanted;
        /// Low for many lines, which one a tick are written, and else high enough for a report.
        int depth;
        int lines;
    } const rows[] = {
        {wide_fen, "2", 3, 2},    {wide_fen, "3", 3, 3},  {wide_fen, "50", 1, 50},
        {wide_fen, "256", 1, 50}, {start_fen, "3", 5, 3}, {start_fen, "50", 3, 20},
    };
    for (auto const& row : rows) {
        start();
        say({option("MultiPV", row.wanted)});
        std::set<int> const numbers = reported_lines(row.fen, row.depth, row.lines);
        EXPECT_EQ(numbers.size(), static_cast<std::size_t>(row.lines)) << row.wanted;
        ASSERT_FALSE(numbers.empty()) << row.wanted;
        EXPECT_EQ(*numbers.begin(), 1) << row.wanted;
        EXPECT_EQ(*numbers.rbegin(), row.lines) << row.wanted;
    }
}

TEST_F(ProcessOptionsTest, OneLineIsNotNumbered) {
    for (char const* const wanted : {"1", "0", "none"}) {
        say({option("MultiPV", "3"), option("MultiPV", wanted)});
        int reports = 0;
        for (std::string const& line : search({"ucinewgame", "position startpos", "go depth 7"})) {
            EXPECT_EQ(line.find("multipv"), std::string::npos) << line;
            if (line.starts_with("info depth")) {
                ++reports;
            }
        }
        EXPECT_GT(reports, 0);
    }
}

TEST_F(ProcessOptionsTest, CastlingIsReportedAsTheOptionSays) {
    std::string const fen =
        "r1bqk2r/ppp2ppp/2np1n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQK2R w KQkq - 0 6";
    struct {
        char const* option;
        std::string move;
    } const rows[] = {{"false", "e1g1"}, {"true", "e1h1"}, {"False", "e1g1"}};
    for (auto const& row : rows) {
        for (char const* const given : {"e1g1", "e1h1"}) {
            lines_t const lines = search({option("UCI_Chess960", row.option), "position fen " + fen,
                                          std::string("go depth 5 searchmoves ") + given});
            int reports = 0;
            for (std::string const& line : lines) {
                if (!line.starts_with("info depth")) {
                    continue;
                }
                EXPECT_EQ(word_after("pv", line), row.move) << line;
                ++reports;
            }
            EXPECT_GT(reports, 0);
            EXPECT_EQ(word_after("bestmove", lines.back()), row.move);
        }
    }
}

TEST_F(ProcessOptionsTest, CastlingOfOtherArraysIsTheKingTakingHisRookWhateverTheOption) {
    std::string const fen = "1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1";
    for (char const* const value : {"false", "true"}) {
        say({option("UCI_Chess960", value)});
        for (auto const& [position, move] : {std::pair{fen + " w GBgb - 0 1", "f1g1"},
                                             {fen + " w GBgb - 0 1 moves f1g1", "f8g8"},
                                             {fen + " w GBgb - 0 1", "f1b1"}}) {
            lines_t const lines =
                search({"position fen " + position, std::string("go depth 2 searchmoves ") + move});
            EXPECT_EQ(word_after("bestmove", lines.back()), move) << value;
        }
    }
}

/// Nodes of a second search of the start position, with some commands between the two.
int nodes_of_second_search(EngineProcess& engine, std::vector<std::string> const& between) {
    int nodes = 0;
    for (int search = 0; search < 2; ++search) {
        engine.send_all({"position startpos", "go depth 8"});
        for (auto const& line : engine.read_until("bestmove")) {
            if (line.text.starts_with("info depth")) {
                nodes = number_after("nodes", line.text);
            }
        }
        engine.send_all(between);
    }
    return nodes;
}

TEST_F(ProcessOptionsTest, HashOfTheSameSizeKeepsWhatTheSearchFound) {
    std::vector<int> nodes;
    for (lines_t const& between :
         {lines_t{}, lines_t{option("Hash", "128"), option("Hash", "0"), option("Hash", "-1"),
                             option("Hash", "200"), option("Hash", "much")}}) {
        start();
        nodes.push_back(nodes_of_second_search(*engine, between));
    }
    EXPECT_GT(nodes[0], 0);
    EXPECT_EQ(nodes[0], nodes[1]);
    start();
    EXPECT_NE(nodes_of_second_search(*engine, {option("Hash", "100"), option("Hash", "128")}),
              nodes[0]);
}

TEST_F(ProcessOptionsTest, HashDuringASearchHarmsNothing) {
    engine->send_all({"position startpos", "go infinite"});
    answers_until("info depth");
    lines_t sizes;
    for (int i = 0; i < 50; ++i) {
        sizes.push_back(option("Hash", i % 2 == 0 ? "6" : "64"));
    }
    say(sizes);
    EXPECT_TRUE(search({"stop"}).back().starts_with("bestmove "));
    EXPECT_TRUE(search({"position startpos", "go depth 5"}).back().starts_with("bestmove "));
    quit();
}

TEST_F(ProcessOptionsTest, ASmallTableIsFuller) {
    std::vector<int> fullness;
    for (char const* const megabytes : {"6", "128"}) {
        start();
        for (std::string const& line :
             search({option("hash", megabytes), "position startpos", "go depth 9"})) {
            if (line.starts_with("info hashfull")) {
                fullness.push_back(number_after("hashfull", line));
            }
        }
    }
    ASSERT_EQ(fullness.size(), 2U);
    EXPECT_GT(fullness[0], 2 * fullness[1]);
}

TEST_F(ProcessOptionsTest, NoOptionIsAnswered) {
    lines_t options;
    for (std::string const name : {"Hash", "Threads", "Ponder", "OwnBook", "UCI_LimitStrength",
                                   "UCI_Elo", "UCI_Chess960", "MultiPV", "Debug", "Nonsense"}) {
        for (char const* const value : {"16", "false", "", "-99999999999", "true"}) {
            options.push_back(option(name, value));
        }
        options.push_back("setoption name " + name);
    }
    append(options, {"setoption", "setoption name", "SETOPTION NAME HASH VALUE 6"});
    EXPECT_EQ(say(options), lines_t{"readyok"});
    quit();
}

}  // namespace
}  // namespace orvelin::test
