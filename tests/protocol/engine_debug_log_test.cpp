// The option Debug: the log files of the engine in its working directory.

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "protocol/engine_directory_fixture.h"
#include "support/text_pattern.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;
namespace fs = std::filesystem;

/// Names of the files in a directory whose name matches.
std::set<std::string> files_in(fs::path const& directory, std::string const& pattern = ".*") {
    std::set<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(directory)) {
        std::string const name = entry.path().filename().string();
        if (matches(name, pattern)) {
            names.insert(name);
        }
    }
    return names;
}

lines_t lines_that_start(std::string const& start, lines_t const& lines) {
    lines_t result;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(result),
                 [&](std::string const& line) { return line.starts_with(start); });
    return result;
}

class DebugLogTest : public EngineDirectoryFixture {
 protected:
    std::set<std::string> files() const { return files_in(directory.path()); }

    /// The name of the one log that the engine has opened; empty when there is none or another.
    std::string engine_log() const {
        std::set<std::string> const names = files_in(directory.path(), "uci_eng_\\d+\\.log");
        return names.size() == 1 ? *names.begin() : "";
    }

    lines_t log() const { return read_lines(directory.file(engine_log())); }

    std::string name_of_analysis_log() const {
        std::set<std::string> const names = files_in(directory.path(), "analysis_\\d+\\.log");
        return names.size() == 1 ? *names.begin() : "";
    }

    /// Calls the function with every name that the engine's log can have.
    template <typename Action>
    void for_each_log_name(Action action) const {
        for (int id = 0; id < 512; ++id) {
            action(directory.file("uci_eng_" + std::to_string(id) + ".log"));
        }
    }
};

TEST_F(DebugLogTest, NoFileBeforeTheOptionAndThreeAfterIt) {
    start();
    engine->send_all({"position startpos", "go depth 2"});
    ASSERT_NE(engine->find("bestmove"), "");
    EXPECT_EQ(files(), std::set<std::string>{});
    EXPECT_EQ(say({debug_on}), lines_t{"readyok"});
    EXPECT_EQ(files(),
              (std::set<std::string>{engine_log(), name_of_analysis_log(), "eval_log.log"}));
    std::string const id = engine_log().substr(8, engine_log().size() - 12);
    EXPECT_LE(std::stoi(id), 511);
    EXPECT_EQ(std::to_string(std::stoi(id)), id);
}

TEST_F(DebugLogTest, TheLogsOfSearchAndEvaluationStayEmpty) {
    start();
    say({debug_on, "position startpos", "eval", "go depth 5"});
    EXPECT_TRUE(engine->find("bestmove").starts_with("bestmove"));
    say({debug_off});
    EXPECT_EQ(fs::file_size(directory.file(name_of_analysis_log())), 0U);
    EXPECT_EQ(fs::file_size(directory.file("eval_log.log")), 0U);
    quit();
    EXPECT_EQ(fs::file_size(directory.file(name_of_analysis_log())), 0U);
}

TEST_F(DebugLogTest, EveryLineThatReachesTheEngineIsLoggedWhole) {
    start();
    say({"position startpos moves d2d4", debug_on});
    say({"uci", "", "nonsense  of two words", "   ", "  isready  now ", "\tdebug on",
         "position startpos moves e2e4", "eval", "setoption name MultiPV value 2",
         "SETOPTION name Hash value 6", "uci ", "stop"});
    quit();
    EXPECT_EQ(log(), (lines_t{
                         "engine <- isready",
                         "engine -> readyok",
                         "engine <- nonsense  of two words",
                         "engine <-   isready  now ",
                         "engine -> readyok",
                         "engine <- \tdebug on",
                         "engine <- position startpos moves e2e4",
                         "engine <- eval",
                         "engine <- setoption name MultiPV value 2",
                         "engine <- SETOPTION name Hash value 6",
                         "engine <- uci ",
                         "engine <- stop",
                         "engine <- isready",
                         "engine -> readyok",
                         "engine <- quit",
                     }));
}

TEST_F(DebugLogTest, ALineIsLoggedBeforeItIsActedOn) {
    start();
    say({debug_on});
    engine->send("position startpos moves e2e9");
    auto const end = engine->wait();
    ASSERT_TRUE(end.has_value());
    EXPECT_EQ(end->signal, SIGABRT);
    EXPECT_EQ(log(), (lines_t{"engine <- isready", "engine -> readyok",
                              "engine <- position startpos moves e2e9"}));
}

TEST_F(DebugLogTest, EveryLineOfASearchIsLoggedAsItWentOut) {
    start();
    say({debug_on, "setoption name MultiPV value 2"});
    lines_t const commands{"position startpos moves e2e4", "go depth 6"};
    lines_t const answers = search(commands);
    EXPECT_FALSE(lines_that_start("info depth", answers).empty());
    EXPECT_EQ(lines_that_start("info hashfull ", answers).size(), 1U);
    EXPECT_EQ(lines_that_start("bestmove ", answers).size(), 1U);
    quit();
    lines_t expected{"engine -> readyok"};
    for (std::string const& line : answers) {
        expected.push_back("engine -> " + line);
    }
    EXPECT_EQ(lines_that_start("engine ->", log()), expected);
    EXPECT_EQ(lines_that_start("engine <-", log()),
              (lines_t{"engine <- setoption name MultiPV value 2", "engine <- isready",
                       "engine <- " + commands[0], "engine <- " + commands[1], "engine <- quit"}));
    EXPECT_EQ(log().size(), expected.size() + 5);
}

TEST_F(DebugLogTest, AStoppedSearchIsLoggedToItsBestMove) {
    start();
    say({debug_on});
    engine->send_all({"position startpos", "go infinite"});
    lines_t answers = answers_until("info depth");
    engine->send("stop");
    for (std::string const& line : answers_until("bestmove")) {
        answers.push_back(line);
    }
    quit();
    lines_t expected{"engine -> readyok"};
    for (std::string const& line : answers) {
        expected.push_back("engine -> " + line);
    }
    EXPECT_EQ(lines_that_start("engine ->", log()), expected);
}

TEST_F(DebugLogTest, ARefusedGoLeavesItsErrorLineInTheLogOnly) {
    start();
    say({debug_on});
    engine->send_all({"position startpos", "go wtime 6000000 btime 6000000"});
    ASSERT_NE(engine->find("info depth"), "");
    for (std::string const& line : say({"go depth 1"})) {
        EXPECT_TRUE(line.starts_with("info depth") || line == "readyok") << line;
    }
    lines_t const lines = log();
    auto const refused = std::find(lines.begin(), lines.end(), "engine <- go depth 1");
    ASSERT_NE(refused, lines.end());
    ASSERT_NE(refused + 1, lines.end());
    EXPECT_EQ(*(refused + 1), "Error: received go while already thinking");
    EXPECT_EQ(lines_that_start("Error", lines).size(), 1U);
}

TEST_F(DebugLogTest, EachSwitchingOnStartsTheFileAfresh) {
    start();
    for (int round = 0; round < 4; ++round) {
        std::string const word = "round" + std::to_string(round);
        say({debug_on, word, debug_off, "unheard"});
        lines_t const expected{"engine <- " + word, "engine <- " + debug_off};
        EXPECT_EQ(log(), expected) << round;
        EXPECT_EQ(say({debug_off, "unheard"}), lines_t{"readyok"});
        EXPECT_EQ(log(), expected) << round;
    }
    EXPECT_EQ(files().size(), 3U);
    quit();
    EXPECT_EQ(log().size(), 2U);
}

TEST_F(DebugLogTest, OldFilesOfTheSameNamesAreEmptied) {
    for_each_log_name([](std::string const& name) { std::ofstream(name) << "old text\n"; });
    std::ofstream(directory.file("eval_log.log")) << "old text\n";
    start();
    say({debug_on, "noted"});
    int written = 0;
    for_each_log_name([&](std::string const& name) {
        lines_t const lines = read_lines(name);
        if (lines == lines_t{"old text"}) {
            return;
        }
        EXPECT_EQ(lines, (lines_t{"engine <- noted", "engine <- isready", "engine -> readyok"}));
        ++written;
    });
    EXPECT_EQ(written, 1);
    EXPECT_EQ(fs::file_size(directory.file("eval_log.log")), 0U);
}

// The engine's log stays as it is; the two others are opened again while open, which fails.
TEST_F(DebugLogTest, TrueTwiceOpensNothingAnew) {
    start();
    say({debug_on, "first"});
    std::string const analysis_log = name_of_analysis_log();
    fs::remove(directory.file(analysis_log));
    fs::remove(directory.file("eval_log.log"));
    say({debug_on, "second"});
    EXPECT_EQ(files(), std::set<std::string>{engine_log()});
    EXPECT_EQ(log(), (lines_t{"engine <- first", "engine <- isready", "engine -> readyok",
                              "engine <- " + debug_on, "engine <- second", "engine <- isready",
                              "engine -> readyok"}));
    say({debug_off, debug_on});
    EXPECT_EQ(files(), (std::set<std::string>{engine_log(), analysis_log, "eval_log.log"}));
    quit();
}

TEST_F(DebugLogTest, FalseWithTheLogClosedChangesNothing) {
    start();
    EXPECT_EQ(say({debug_off, debug_off, "setoption name Debug value True"}), lines_t{"readyok"});
    EXPECT_EQ(files(), std::set<std::string>{});
    say({debug_on, "noted"});
    EXPECT_EQ(log(), (lines_t{"engine <- noted", "engine <- isready", "engine -> readyok"}));
    quit();
}

TEST_F(DebugLogTest, AnyOtherWordThanTrueSwitchesOff) {
    start();
    say({debug_on, "setoption name debug value yes", "unheard"});
    EXPECT_EQ(log(), lines_t{"engine <- setoption name debug value yes"});
}

TEST_F(DebugLogTest, AnOptionLineWithoutValueLeavesTheLogOpen) {
    start();
    say({debug_on, "setoption name Debug", "setoption name Debug false", "noted"});
    EXPECT_EQ(log(),
              (lines_t{"engine <- setoption name Debug", "engine <- setoption name Debug false",
                       "engine <- noted", "engine <- isready", "engine -> readyok"}));
}

TEST_F(DebugLogTest, ADirectoryThatIsGoneIsNotReported) {
    start();
    say({});
    fs::remove_all(directory.path());
    EXPECT_EQ(say({debug_on, "unheard", debug_on, debug_off, debug_off, debug_on}),
              lines_t{"readyok"});
    engine->send_all({"position startpos", "go depth 2"});
    EXPECT_NE(engine->find("bestmove"), "");
    quit();
    EXPECT_FALSE(fs::exists(directory.path()));
}

}  // namespace
}  // namespace orvelin::test
