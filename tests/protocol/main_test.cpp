#include <algorithm>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/engine_process.h"
#include "support/test_config.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;
using timed_lines_t = std::vector<EngineProcess::timed_line_t>;
using namespace std::chrono_literals;

lines_t const handshake{
    "id name Orvelin 0.40.1",
    "id author Kalvoorst",
    "option name Hash type spin default 128 min 6 max 4096",
    "option name Threads type spin default 1 min 1 max 2",
    "option name Ponder type check default true",
    "option name OwnBook type check default false",
    "option name UCI_LimitStrength type check default false",
    "option name UCI_Elo type spin default 2000 min 1500 max 2200",
    "option name UCI_Chess960 type check default false",
    "option name MultiPV type spin default 1 min 1 max 256",
    "option name Debug type check default false",
    "uciok",
};

lines_t texts(timed_lines_t const& lines) {
    lines_t result;
    for (auto const& line : lines) {
        result.push_back(line.text);
    }
    return result;
}

std::chrono::duration<double, std::milli> span(timed_lines_t const& lines) {
    return lines.back().time - lines.front().time;
}

/// Starts a search that only a stop ends, and waits until it reports.
void start_searching(EngineProcess& engine) {
    engine.send_all({"position startpos", "go infinite"});
    ASSERT_TRUE(engine.find("info depth").starts_with("info depth"));
}

void expect_clean_end(EngineProcess& engine) {
    auto const end = engine.wait();
    ASSERT_TRUE(end.has_value());
    EXPECT_EQ(end->status, 0);
    EXPECT_EQ(end->signal, 0);
    EXPECT_EQ(engine.error_text(), "");
}

TEST(MainTest, NothingIsSaidAtTheStart) {
    EngineProcess engine;
    engine.send("isready");
    EXPECT_EQ(texts(engine.read_until("readyok")), lines_t{"readyok"});
}

TEST(MainTest, TheHandshakeIsFixedText) {
    EngineProcess engine;
    engine.send("uci");
    EXPECT_EQ(texts(engine.read_until("uciok")), handshake);
    engine.send("quit");
    expect_clean_end(engine);
    EXPECT_EQ(engine.rest(), lines_t{});
}

TEST(MainTest, TheHandshakeDuringASearchComesAtOnceAndDisturbsNothing) {
    EngineProcess engine;
    start_searching(engine);
    engine.send("uci");
    lines_t const lines = texts(engine.read_until("uciok"));
    ASSERT_GE(lines.size(), handshake.size());
    // Other lines may come before the handshake, but none within it.
    lines_t const last(lines.end() - static_cast<std::ptrdiff_t>(handshake.size()), lines.end());
    EXPECT_EQ(last, handshake);
    engine.send("isready");
    EXPECT_EQ(engine.find("readyok"), "readyok");
    timed_lines_t const later = engine.read_for(300ms);
    for (auto const& line : later) {
        EXPECT_TRUE(line.text.starts_with("info ")) << line.text;
    }
    engine.send("stop");
    EXPECT_TRUE(engine.find("bestmove").starts_with("bestmove "));
}

TEST(MainTest, ThreeIsreadyAreAnsweredInThreeTicks) {
    EngineProcess engine;
    engine.send("isready");
    ASSERT_EQ(engine.find("readyok"), "readyok");
    // The reading side may see two lines late and close together, but hardly every time.
    std::chrono::duration<double, std::milli> longest{0};
    for (int attempt = 0; attempt < 10; ++attempt) {
        engine.write("isready\nisready\nisready\n");
        timed_lines_t lines;
        for (int i = 0; i < 3; ++i) {
            auto const line = engine.read_line();
            ASSERT_TRUE(line.has_value());
            EXPECT_EQ(line->text, "readyok");
            lines.push_back(*line);
        }
        longest = std::max(longest, span(lines));
    }
    EXPECT_GE(longest.count(), 9.0);
}

TEST(MainTest, OneLineInAndOneLineOutATick) {
    EngineProcess engine;
    engine.send("isready");
    ASSERT_EQ(engine.find("readyok"), "readyok");
    constexpr int count = 60;
    engine.send_all(lines_t(count, "isready"));
    timed_lines_t lines;
    for (int i = 0; i < count; ++i) {
        auto const line = engine.read_line();
        ASSERT_TRUE(line.has_value());
        lines.push_back(*line);
    }
    EXPECT_GE(span(lines).count(), (count - 1) * 5.0 * 0.8);
}

/// The time over which so many copies of a line are answered, each by a line that begins so.
std::chrono::duration<double, std::milli> time_of(EngineProcess& engine, std::string const& line,
                                                  std::string const& answer, std::size_t count) {
    engine.send_all(lines_t(count, line));
    timed_lines_t answers;
    while (answers.size() < count) {
        timed_lines_t const lines = engine.read_until(answer);
        if (lines.empty()) {
            ADD_FAILURE() << "no " << answer;
            return {};
        }
        answers.push_back(lines.back());
    }
    return span(answers);
}

TEST(MainTest, ATickLastsAboutFiveMilliseconds) {
    EngineProcess engine;
    ASSERT_EQ(time_of(engine, "isready", "readyok", 1).count(), 0.0);
    // A loaded machine makes ticks longer, but hardly all of them.
    std::chrono::duration<double, std::milli> shortest{60000};
    for (int attempt = 0; attempt < 40; ++attempt) {
        shortest = std::min(shortest, time_of(engine, "isready", "readyok", 6));
    }
    EXPECT_GE(shortest.count(), 5 * 5.0 * 0.8);
    EXPECT_LE(shortest.count(), 5 * 5.0 * 2);
}

TEST(MainTest, TheHandshakeCostsNoTick) {
    EngineProcess engine;
    ASSERT_EQ(time_of(engine, "isready", "readyok", 1).count(), 0.0);
    // Each answer to `isready` takes a tick.
    EXPECT_LT(time_of(engine, "uci", "uciok", 200) * 2, time_of(engine, "isready", "readyok", 200));
}

TEST(MainTest, ASearchIsReportedNoFasterThanALineATick) {
    EngineProcess engine;
    start_searching(engine);
    timed_lines_t const lines = engine.read_for(500ms);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_GE(span(lines).count(), static_cast<double>(lines.size() - 1) * 5.0 * 0.8);
}

TEST(MainTest, IsreadyDuringASearchIsAnsweredSoon) {
    EngineProcess engine;
    start_searching(engine);
    // Let the reports catch up with the search, for they go out first.
    engine.read_for(1s);
    auto const start = EngineProcess::clock::now();
    engine.send("isready");
    timed_lines_t const lines = engine.read_until("readyok");
    ASSERT_EQ(lines.back().text, "readyok");
    EXPECT_LT(lines.back().time - start, 5s);
}

TEST(MainTest, UciWithATrailingBlankIsDropped) {
    EngineProcess engine;
    engine.send_all({"uci ", " uci", "UCI", "isready"});
    EXPECT_EQ(texts(engine.read_until("readyok")), lines_t{"readyok"});
}

TEST(MainTest, EmptyLinesAndBlanksAreDropped) {
    EngineProcess engine;
    engine.send_all({"", "", "   ", "isready", ""});
    EXPECT_EQ(texts(engine.read_until("readyok")), lines_t{"readyok"});
}

TEST(MainTest, UnknownWordsAreDropped) {
    EngineProcess engine;
    engine.send_all({"hello", "debug on", "register later", "ISREADY", "isready"});
    EXPECT_EQ(texts(engine.read_until("readyok")), lines_t{"readyok"});
}

TEST(MainTest, LinesSentBeforeTheTablesAreBuiltAreTaken) {
    EngineProcess engine;
    engine.send_all({"uci", "isready", "quit"});
    expect_clean_end(engine);
    EXPECT_EQ(texts(engine.read_until("uciok")), handshake);
}

TEST(MainTest, QuitWhileIdle) {
    EngineProcess engine;
    engine.send("quit");
    expect_clean_end(engine);
    EXPECT_EQ(engine.rest(), lines_t{});
}

TEST(MainTest, QuitWhileThinking) {
    EngineProcess engine;
    engine.send_all({"position startpos", "go wtime 600000 btime 600000"});
    ASSERT_TRUE(engine.find("info depth").starts_with("info depth"));
    engine.send("quit");
    expect_clean_end(engine);
    for (std::string const& line : engine.rest()) {
        EXPECT_TRUE(line.starts_with("info ")) << line;
    }
}

TEST(MainTest, QuitWhilePonderingAndWhileInfinite) {
    for (std::string const word : {"ponder", "infinite"}) {
        EngineProcess engine;
        engine.send_all({"position startpos", "go " + word});
        ASSERT_TRUE(engine.find("info depth").starts_with("info depth"));
        engine.send("quit");
        expect_clean_end(engine);
        for (std::string const& line : engine.rest()) {
            EXPECT_TRUE(line.starts_with("info "));
        }
    }
}

TEST(MainTest, QuitWhileABestmoveIsHeldBack) {
    EngineProcess engine;
    engine.send_all({"position startpos", "go infinite depth 1"});
    EXPECT_TRUE(engine.read_for(300ms).size() <= 1U);
    engine.send("quit");
    expect_clean_end(engine);
    for (std::string const& line : engine.rest()) {
        EXPECT_TRUE(line.starts_with("info "));
    }
}

TEST(MainTest, QuitRightBehindGo) {
    EngineProcess engine;
    engine.send_all({"position startpos", "go infinite", "quit"});
    expect_clean_end(engine);
}

TEST(MainTest, QuitAfterABestmove) {
    EngineProcess engine;
    engine.send_all({"position startpos", "go depth 2"});
    ASSERT_TRUE(engine.find("bestmove").starts_with("bestmove "));
    engine.send("quit");
    expect_clean_end(engine);
}

TEST(MainTest, ABestmoveBehindQueuedLinesIsDroppedAtQuit) {
    EngineProcess engine;
    // While a line comes in for each that goes out, the reports of the search pile up.
    lines_t lines{"position startpos", "go infinite"};
    lines.insert(lines.end(), 60, "isready");
    lines.insert(lines.end(), {"stop", "quit"});
    engine.send_all(lines);
    expect_clean_end(engine);
    lines_t const output = engine.rest();
    EXPECT_GE(output.size(), 30U);
    for (std::string const& line : output) {
        EXPECT_FALSE(line.starts_with("bestmove")) << line;
    }
}

TEST(MainTest, QuitWithATrailingBlankEndsTheAnalysisThreadButNotTheProcess) {
    EngineProcess engine;
    engine.send("quit ");
    engine.send("isready");
    EXPECT_EQ(engine.find("readyok"), "readyok");
    EXPECT_FALSE(engine.wait(50ms).has_value());
    engine.send_all({"position startpos", "go depth 1"});
    EXPECT_TRUE(engine.read_for(300ms).empty());
    engine.send("quit");
    expect_clean_end(engine);
}

#if !ORVELIN_SHORT_TESTS
TEST(MainTest, EndOfInputEndsTheProcessAfterTheReaderHasSpunToItsLimit) {
    EngineProcess engine;
    engine.send_all({"position startpos", "go depth 4"});
    engine.close_input();
    EXPECT_TRUE(engine.find("bestmove").starts_with("bestmove "));
    // The reader spins on, so the process does not end at once.
    EXPECT_FALSE(engine.wait(1s).has_value());
    auto const end = engine.wait(600s);
    ASSERT_TRUE(end.has_value());
    EXPECT_EQ(end->status, 0);
    EXPECT_EQ(end->signal, 0);
}
#endif

}  // namespace
}  // namespace orvelin::test
