#include <algorithm>
#include <chrono>
#include <cstddef>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "protocol/engine_directory_fixture.h"
#include "protocol/stress_commands.h"
#include "support/data_file.h"
#include "support/referee.h"

namespace orvelin::test {

namespace {

using burst_t = std::vector<stress_line_t>;

/// How many `bestmove` lines may have come, by the engine state that they leave.
///
/// When a search ends between two lines is open; that each `go` that is taken is answered once, by
/// `stop` or at the end of its search, is not. So the numbers are bounds, and narrow ones.
class AnswerBounds {
 public:
    explicit AnswerBounds(burst_t const& burst) {
        for (stress_line_t const& line : burst) {
            act(line);
        }
    }

    /// Behind a burst that leaves the engine idle.
    std::size_t least() const { return states_.at(0).least; }
    /// Behind any burst.
    std::size_t most() const {
        std::size_t most = 0;
        for (auto const& [state, bounds] : states_) {
            most = std::max(most, bounds.most);
        }
        return most;
    }

 private:
    struct bounds_t {
        std::size_t least = 0;
        std::size_t most = 0;
    };

    void act(stress_line_t const& line) {
        std::map<int, bounds_t> const before = std::exchange(states_, {});
        for (auto const& [state, bounds] : before) {
            act(line, state, bounds);
        }
        // Behind each line, a search that has ended is answered.
        if (auto const thinking = states_.find(1); thinking != states_.end()) {
            add(0, more(thinking->second));
        }
    }

    static bounds_t more(bounds_t const& bounds) { return {bounds.least + 1, bounds.most + 1}; }

    void act(stress_line_t const& line, int state, bounds_t const& bounds) {
        if (line.kind == stress_kind::stop && state != 0) {
            add(0, more(bounds));
        } else if (line.kind == stress_kind::go && state != 1) {
            add(line.go.state, bounds);
        } else if (line.kind == stress_kind::ponderhit) {
            add(1, bounds);
        } else {
            add(state, bounds);
        }
    }

    void add(int state, bounds_t const& bounds) {
        auto const [known, added] = states_.emplace(state, bounds);
        if (added) {
            return;
        }
        known->second.least = std::min(known->second.least, bounds.least);
        known->second.most = std::max(known->second.most, bounds.most);
    }

    std::map<int, bounds_t> states_{{0, {}}};
};

/// The real engine under bursts of lines that are written at once.
class ProcessStressTest : public EngineDirectoryFixture,
                          public ::testing::WithParamInterface<unsigned> {
 protected:
    ProcessStressTest() { start(); }

    /// Lines of a burst. Search moves follow their position at once, before any move is made.
    burst_t make_burst();
    /// Writes the lines, some of them a moment later than others.
    void write(burst_t const& burst);
    /// Sends a burst and counts what comes back.
    void expect_burst_answered();
    /// Has a position searched and expects one legal move, and no other line with a move.
    void expect_search_answered();

    static std::size_t count(lines_t const& lines, std::string const& start) {
        auto const starts = [&](std::string const& line) { return line.starts_with(start); };
        return static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), starts));
    }
    static std::size_t count(burst_t const& burst, std::string const& text) {
        auto const is = [&](stress_line_t const& line) { return line.text == text; };
        return static_cast<std::size_t>(std::count_if(burst.begin(), burst.end(), is));
    }
    static std::string text(burst_t const& burst) {
        std::string text = "seed " + std::to_string(GetParam());
        for (stress_line_t const& line : burst) {
            text += "\n    " + line.text;
        }
        return text;
    }

    StressCommands commands{GetParam()};
    Referee game;
};

burst_t ProcessStressTest::make_burst() {
    burst_t burst;
    for (std::size_t left = 1 + commands.below(15); left > 0; --left) {
        if (commands.one_in(4)) {
            burst.push_back(commands.position(game));
            if (commands.one_in(2)) {
                burst.push_back(commands.go(&game));
            }
        } else if (commands.one_in(20)) {
            burst.push_back({"uci"});
        } else {
            burst.push_back(commands.later_line());
        }
    }
    return burst;
}

void ProcessStressTest::write(burst_t const& burst) {
    std::string lines;
    for (stress_line_t const& line : burst) {
        lines += line.text + "\n";
        if (!commands.one_in(8)) {
            continue;
        }
        engine->write(lines);
        lines.clear();
        std::this_thread::sleep_for(std::chrono::microseconds(commands.below(15000)));
    }
    engine->write(lines);
}

void ProcessStressTest::expect_burst_answered() {
    burst_t burst = make_burst();
    // The end of the burst is told by an answer that no other line brings.
    burst.push_back({"stop", stress_kind::stop});
    write(burst);
    engine->send_all({"setoption name UCI_LimitStrength value false", "isready"});
    lines_t lines;
    for (std::size_t left = count(burst, "isready") + 1; left > 0; --left) {
        lines_t const part = answers_until("readyok");
        ASSERT_FALSE(part.empty()) << text(burst);
        ASSERT_EQ(part.back(), "readyok") << text(burst);
        lines.insert(lines.end(), part.begin(), part.end());
    }
    AnswerBounds const bounds(burst);
    EXPECT_GE(count(lines, "bestmove "), bounds.least()) << text(burst);
    EXPECT_LE(count(lines, "bestmove "), bounds.most()) << text(burst);
    EXPECT_EQ(count(lines, "uciok"), count(burst, "uci")) << text(burst);
}

void ProcessStressTest::expect_search_answered() {
    stress_line_t const position = commands.position(game);
    lines_t const lines = search({position.text, "go depth 2"});
    ASSERT_EQ(count(lines, "bestmove "), 1U) << position.text;
    EXPECT_EQ(count(lines, "readyok"), 0U) << position.text;
    std::string const move = split_words(lines.back()).at(1);
    EXPECT_TRUE(game.over() ? move == "0000" : game.legal(move)) << move << "\n" << position.text;
    game.play(move);
    lines_t const rest = say({"eval"});
    EXPECT_EQ(count(rest, "bestmove "), 0U) << position.text;
    EXPECT_EQ(count(rest, "readyok"), 1U) << position.text;
}

}  // namespace

TEST_P(ProcessStressTest, BurstsOfLines) {
    for (std::size_t left = stress_rounds(40); left > 0 && !HasFailure(); --left) {
        expect_burst_answered();
        while (!HasFailure() && commands.one_in(2)) {
            expect_search_answered();
        }
    }
    quit();
}

TEST_P(ProcessStressTest, QuitAtAnyMoment) {
    for (std::size_t left = stress_rounds(10); left > 0 && !HasFailure(); --left) {
        start();
        burst_t const burst = make_burst();
        write(burst);
        quit();
        lines_t const lines = engine->rest();
        EXPECT_LE(count(lines, "bestmove "), AnswerBounds(burst).most()) << text(burst);
        EXPECT_LE(count(lines, "readyok"), count(burst, "isready")) << text(burst);
        EXPECT_EQ(count(lines, "uciok"), count(burst, "uci")) << text(burst);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ProcessStressTest, ::testing::Range(1U, 5U));

}  // namespace orvelin::test
