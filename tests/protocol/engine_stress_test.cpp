#include <chrono>
#include <cstddef>
#include <deque>
#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "protocol/book_fixture.h"
#include "protocol/stress_commands.h"
#include "protocol/stress_model.h"
#include "support/data_file.h"
#include "support/engine_fixture.h"
#include "support/watchdog.h"
#include "support/working_directory.h"

namespace orvelin::test {

namespace {

/// A directory with a book that knows the start position, and a standard output that is kept.
class StressSurroundings {
 protected:
    StressSurroundings() : console_(std::cout.rdbuf(output_.rdbuf())) {
        write_book("Orvelin.bin", book_bytes({book_line(start_fen, "e2e4")}));
    }
    ~StressSurroundings() { std::cout.rdbuf(console_); }

    WorkingDirectory directory_;
    std::ostringstream output_;
    std::streambuf* console_;
};

/// Sends an engine whatever may come during a search, a tick of the main loop at a time, at
/// moments that chance decides.
class EngineStressTest : protected StressSurroundings,
                         public EngineFixture,
                         public ::testing::WithParamInterface<unsigned> {
 protected:
    EngineStressTest() { command("setoption name Hash value 6"); }

    void run(std::size_t rounds);
    /// Moves have come, some of them waited for, and reports of `eval`.
    bool seen_enough() const { return best_moves > 10 && settled > 2 && !output_.view().empty(); }
    void tick();
    /// Ticks until the search that ends by itself has been answered.
    void settle();

    void push(stress_line_t const& line);
    void push_some();
    void expect_answers();
    void expect_reports();
    /// All lines that wait for the GUI but the information about the search.
    std::vector<std::string> answers();
    void wait_a_little();
    void note(std::string const& line);
    std::string where() const;

    StressCommands commands{GetParam()};
    StressModel model{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - "};
    std::deque<stress_line_t> pending;
    std::deque<std::string> last_lines;
    std::size_t round = 0;
    std::size_t best_moves = 0;
    std::size_t settled = 0;
    Watchdog watchdog{std::chrono::seconds(120)};
};

std::string EngineStressTest::where() const {
    std::string text = "seed " + std::to_string(GetParam()) + " round " + std::to_string(round);
    for (std::string const& line : last_lines) {
        text += "\n    " + line;
    }
    return text;
}

void EngineStressTest::note(std::string const& line) {
    last_lines.push_back(line);
    if (last_lines.size() > 30) {
        last_lines.pop_front();
    }
}

void EngineStressTest::push(stress_line_t const& line) {
    note(std::to_string(round) + ": " + line.text);
    pending.push_back(line);
    communicator.to_engine(line.text);
}

// The book answers by the position, so that with the book on the next line waits until it is known,
// and none comes behind one whose answer changes it.
void EngineStressTest::push_some() {
    bool const book = model.own_book();
    stress_line_t line = commands.line(model.game());
    if (line.kind == stress_kind::go && book && !model.game().known()) {
        line = commands.position(model.game());
    }
    // Without a search to end, only this leads out of the state.
    if (model.state() == 1 && !model.move_may_come() && commands.one_in(2)) {
        line = {"stop", stress_kind::stop};
    }
    push(line);
    if (book || sets_option(line, "OwnBook")) {
        return;
    }
    while (commands.one_in(3)) {
        line = commands.later_line();
        if (!sets_option(line, "OwnBook")) {
            push(line);
        }
    }
}

std::vector<std::string> EngineStressTest::answers() {
    std::vector<std::string> lines = replies();
    std::erase_if(lines, [](std::string const& line) { return line.starts_with("info depth "); });
    for (std::string const& line : lines) {
        note("    -> " + line);
    }
    return lines;
}

void EngineStressTest::expect_answers() {
    std::vector<std::string> const lines = answers();
    auto line = lines.begin();
    bool refused = false;
    while (!pending.empty() && !refused) {
        stress_line_t const sent = pending.front();
        pending.pop_front();
        for (std::string const& answer : model.act(sent)) {
            ASSERT_NE(line, lines.end()) << where();
            ASSERT_TRUE(line->starts_with(answer)) << *line << "\n" << where();
            if (sent.kind == stress_kind::stop) {
                ++best_moves;
                EXPECT_TRUE(model.stopped_move(split_words(*line).at(1))) << where();
            }
            if (sent.kind == stress_kind::go) {
                EXPECT_EQ(*line, "bestmove e2e4") << where();
            }
            ++line;
        }
        refused = model.refused();
    }
    ASSERT_EQ(line, lines.end()) << *line << "\n" << where();
}

void EngineStressTest::expect_reports() {
    std::vector<std::string> const lines = answers();
    if (lines.empty()) {
        return;
    }
    ASSERT_EQ(lines.size(), 2U) << where();
    EXPECT_TRUE(lines[0].starts_with("info hashfull ")) << where();
    ASSERT_TRUE(lines[1].starts_with("bestmove ")) << where();
    ASSERT_TRUE(model.move_may_come()) << where();
    ++best_moves;
    EXPECT_TRUE(model.reported_move(split_words(lines[1]).at(1))) << where();
}

void EngineStressTest::tick() {
    model.see_status(engine->analysis().get_status());
    engine->from_console();
    expect_answers();
    if (HasFatalFailure()) {
        return;
    }
    engine->to_console();
    expect_reports();
    EXPECT_EQ(engine->engine_state(), model.state()) << where();
}

void EngineStressTest::settle() {
    ++settled;
    EXPECT_TRUE(wait_for([&] {
        tick();
        return model.state() == 0 || HasFailure();
    })) << "no bestmove, "
        << where();
}

void EngineStressTest::wait_a_little() {
    if (commands.one_in(3)) {
        return;
    }
    std::this_thread::sleep_for(std::chrono::microseconds(commands.below(4000)));
}

void EngineStressTest::run(std::size_t rounds) {
    for (round = 0; !HasFailure() && (round < rounds || !seen_enough()); ++round) {
        ASSERT_LT(round, rounds + 2000) << "nothing happens";
        if (pending.empty() && !commands.one_in(3)) {
            push_some();
        }
        watchdog.feed(where());
        tick();
        if (pending.empty() && model.move_must_come() && !commands.one_in(3)) {
            settle();
        }
        wait_a_little();
    }
}

}  // namespace

TEST_P(EngineStressTest, EveryCommandAtAnyMoment) {
    run(stress_rounds(1000));
}

INSTANTIATE_TEST_SUITE_P(Seeds, EngineStressTest, ::testing::Range(1U, 9U));

}  // namespace orvelin::test
