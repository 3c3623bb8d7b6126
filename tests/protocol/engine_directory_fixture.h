#pragma once

#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "support/engine_process.h"
#include "support/temporary_directory.h"
#include "support/test_config.h"

namespace orvelin::test {

/// The real engine in a fresh directory of its own.
class EngineDirectoryFixture : public ::testing::Test {
 protected:
    using lines_t = std::vector<std::string>;

    /// Starts an engine in the directory, ending one that still runs.
    void start() { engine = std::make_unique<EngineProcess>(engine_binary, directory.path()); }

    /// All lines up to the first one that begins so.
    lines_t answers_until(std::string const& start) {
        lines_t lines;
        for (auto const& line : engine->read_until(start)) {
            lines.push_back(line.text);
        }
        return lines;
    }

    /// Sends the lines and waits until the engine has acted on them; returns all that came back.
    lines_t say(lines_t const& lines) {
        engine->send_all(lines);
        engine->send("isready");
        return answers_until("readyok");
    }

    /// Sends the lines and returns all that comes back up to the `bestmove` line.
    lines_t search(lines_t const& lines) {
        engine->send_all(lines);
        return answers_until("bestmove");
    }

    /// Ends the engine, which must end well and must not have complained.
    void quit() {
        engine->send("quit");
        auto const end = engine->wait();
        ASSERT_TRUE(end.has_value());
        EXPECT_EQ(end->status, 0);
        EXPECT_EQ(end->signal, 0);
        EXPECT_EQ(engine->error_text(), "");
    }

    static lines_t read_lines(std::string const& file) {
        std::ifstream stream(file);
        lines_t lines;
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    TemporaryDirectory directory;
    std::unique_ptr<EngineProcess> engine;
};

}  // namespace orvelin::test
