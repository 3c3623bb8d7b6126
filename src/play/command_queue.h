#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

namespace orvelin::play {

/// A line of input, with the time at which it came.
struct Command {
    std::string line;
    std::chrono::steady_clock::time_point arrival;
    /// What the GUI is to be told about the line, or in its place; mostly empty.
    std::string remark = {};
};

/// The lines that wait for the front, oldest first.
///
/// Filled by the input thread, emptied by the front; the only thing that the two share beside the
/// output. After end() what still waits is handed out, and then nothing any more.
class CommandQueue {
 public:
    void push(Command command);
    /// No more lines will come.
    void end();

    /// Waits for a line until the deadline, without one for ever. Nothing at the deadline and at
    /// the end, which ended() tells apart.
    std::optional<Command> pop(std::optional<std::chrono::steady_clock::time_point> deadline);
    /// The end has come and nothing waits any more.
    bool ended() const;

 private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Command> commands_;
    bool end_ = false;
};

}  // namespace orvelin::play
