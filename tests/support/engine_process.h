#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <thread>
#include <vector>

#include "support/child_process.h"

namespace orvelin::test {

/// The real engine binary behind pipes.
///
/// Owns the child process and two reader threads, which collect its output lines, each with the
/// time of its arrival, and its error text. The destructor kills a child that still runs. One
/// thread at a time may use an object.
class EngineProcess {
 public:
    using clock = std::chrono::steady_clock;

    struct timed_line_t {
        std::string text;
        clock::time_point time;
    };

    /// Starts the binary; throws std::runtime_error when that fails.
    explicit EngineProcess(std::string const& binary);
    /// Starts the binary in a directory, where it looks for its files and leaves its logs.
    EngineProcess(std::string const& binary, std::filesystem::path const& directory);
    /// Starts the engine under test.
    EngineProcess();
    ~EngineProcess();
    EngineProcess(EngineProcess const&) = delete;
    EngineProcess& operator=(EngineProcess const&) = delete;

    pid_t id() const { return child_.id(); }

    /// Writes the text and a newline.
    void send(std::string const& line) { write(line + "\n"); }
    /// Writes several lines in one go.
    void send_all(std::vector<std::string> const& lines);
    /// Writes the text as it is; a child that is gone takes nothing and is no error.
    void write(std::string const& text);
    /// Closes the child's standard input.
    void close_input() { child_.close_input(); }

    /// The oldest line not yet read, or nothing when none comes in time.
    std::optional<timed_line_t> read_line(milliseconds timeout = default_timeout);
    /// Reads up to and with the first line that begins with the text. Without such a line the
    /// result ends in another one.
    std::vector<timed_line_t> read_until(std::string_view start,
                                         milliseconds timeout = default_timeout);
    /// The first line that begins with the text, skipping those before it; empty when none comes.
    std::string find(std::string_view start, milliseconds timeout = default_timeout);
    /// All lines that arrive within the time.
    std::vector<timed_line_t> read_for(milliseconds time);
    /// What stands behind the last newline of the output so far.
    std::string unfinished_line();

    /// Waits for the end of the process; nothing when it runs on.
    std::optional<process_end_t> wait(milliseconds timeout = default_timeout);
    /// All lines left; to be asked for after the end of the process.
    std::vector<std::string> rest();
    /// The error text so far; whole after the end of the process.
    std::string error_text();

    /// Wide enough for a sanitizer build on a busy machine.
    static constexpr milliseconds default_timeout{60000};

 private:
    void collect_output();
    void collect_errors();
    void join_readers();

    ChildProcess child_;
    std::mutex mutex_;
    std::condition_variable arrival_;
    std::deque<timed_line_t> lines_;
    std::string unfinished_;
    std::string errors_;
    bool output_ended_ = false;
    std::thread output_reader_;
    std::thread error_reader_;
};

}  // namespace orvelin::test
