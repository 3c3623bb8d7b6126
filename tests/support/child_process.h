#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace orvelin::test {

using std::chrono::milliseconds;

/// How a process ended: by `signal` when that is not 0, else with `status`.
struct process_end_t {
    int status = 0;
    int signal = 0;
};

/// What to start, and where; no directory stands for this process's own.
struct launch_t {
    std::string binary;
    std::vector<std::string> arguments;
    std::filesystem::path directory;
};

/// A child process and the ends of the pipes to its standard streams, which the object owns. The
/// destructor kills a child that still runs, and the system one whose parent is killed. The thread
/// that makes the object must outlive the child: the system takes its end for the parent's.
class ChildProcess {
 public:
    /// Starts the binary, whose path must be absolute; throws std::runtime_error when that fails.
    explicit ChildProcess(launch_t const& launch);
    ~ChildProcess();
    ChildProcess(ChildProcess const&) = delete;
    ChildProcess& operator=(ChildProcess const&) = delete;

    pid_t id() const { return pid_; }
    /// Where the child's standard input is written; -1 after close_input().
    int input() const { return input_; }
    /// Where the child's standard output is read.
    int output() const { return output_; }
    /// Where the child's standard error is read.
    int errors() const { return errors_; }
    void close_input();

    /// Ends a child that still runs by SIGKILL.
    void kill();
    /// Waits for the end of the process; nothing when it runs on.
    std::optional<process_end_t> wait(milliseconds timeout);

 private:
    bool poll_end(int flags);

    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    int errors_ = -1;
    bool running_ = false;
    process_end_t end_;
};

/// Room for one read from a pipe.
using read_buffer_t = std::array<char, 4096>;

/// Reads what there is, waiting for it if need be; 0 at the end.
std::size_t read_some(int descriptor, read_buffer_t& buffer);

}  // namespace orvelin::test
