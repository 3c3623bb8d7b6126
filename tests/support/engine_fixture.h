#pragma once

#include <chrono>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "position/chess_position.h"
#include "protocol/communicator.h"
#include "protocol/engine.h"
#include "search/action.h"
#include "search/analysis.h"
#include "support/positions.h"

namespace orvelin::test {

inline std::string const debug_on = "setoption name Debug value true";
inline std::string const debug_off = "setoption name Debug value false";

/// An engine without the process around it: the test hands it lines and steps its ticks.
class EngineFixture : public ::testing::Test {
 protected:
    EngineFixture() : engine(std::make_unique<Engine>(communicator, log)) {}

    ~EngineFixture() override {
        communicator.clear();
        command("quit");
        engine.reset();
        if (!log_name.empty()) {
            std::remove(log_name.c_str());
        }
    }

    /// Hands the engine one line and lets it work off its queue.
    void command(std::string const& line) {
        communicator.to_engine(line);
        engine->from_console();
    }

    /// All lines that wait for the GUI.
    std::vector<std::string> replies() {
        std::vector<std::string> lines;
        for (std::string line = communicator.from_engine(); !line.empty();
             line = communicator.from_engine()) {
            lines.push_back(line);
        }
        return lines;
    }

    /// Waits for a status without reporting anything; false when it does not come in time.
    bool wait_for_status(status_t status) {
        return wait_for([&] { return engine->analysis().get_status() == status; });
    }

    /// Waits until the search has reached the iteration.
    bool wait_for_iteration(int iteration) {
        return wait_for([&] { return engine->analysis().get_iteration() >= iteration; });
    }

    /// Waits until the search is a millisecond old: before that nothing is reported.
    bool wait_for_report_time() {
        return wait_for([&] { return engine->analysis().get_running_time() > 0; });
    }

    template <typename Condition>
    static bool wait_for(Condition condition) {
        for (int left = 60000; left > 0; --left) {
            if (condition()) {
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return false;
    }

    /// Steps ticks until the `bestmove` line is queued; returns all lines queued since.
    std::vector<std::string> search_to_end() {
        std::vector<std::string> lines;
        wait_for([&] {
            engine->from_console();
            engine->to_console();
            for (std::string& line : replies()) {
                lines.push_back(std::move(line));
            }
            return !lines.empty() && lines.back().starts_with("bestmove");
        });
        return lines;
    }

    /// Sends the line, steps to the end of the search and returns the `bestmove` line.
    std::string best_move_of(std::string const& go) {
        command(go);
        std::vector<std::string> const lines = search_to_end();
        return lines.empty() ? "" : lines.back();
    }

    std::string fen() const { return engine->position().fen(); }

    /// From here on the engine's log goes into a file of this test.
    void open_log() {
        auto const* const info = ::testing::UnitTest::GetInstance()->current_test_info();
        log_name = ::testing::TempDir() + info->test_suite_name() + "_" + info->name() + "_" +
                   std::to_string(getpid()) + ".log";
        log.clear();
        log.open(log_name);
    }

    std::string log_text() const {
        std::ifstream file(log_name);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    std::ofstream log;
    std::string log_name;
    Communicator communicator;
    std::unique_ptr<Engine> engine;
};

}  // namespace orvelin::test
