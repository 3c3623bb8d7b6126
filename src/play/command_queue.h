#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/wake_up.h"

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
    /// When lines of about so many bytes wait, no more should be read.
    static constexpr std::size_t most_waiting = std::size_t{1} << 24;

    /// @throws std::runtime_error when the system has no descriptor left.
    explicit CommandQueue(std::size_t most = most_waiting);

    // For the input thread.

    void push(Command command);
    /// No more lines will come.
    void end();
    /// So much waits that no more should be pushed now. Whoever has seen this finds the flag room()
    /// set when there is room again; take_room() sets it back.
    bool full() const;
    WakeUp const& room() const { return room_; }
    void take_room() { room_.take(); }
    /// `quit` has come in, or the end.
    bool ending() const;

    // For the front.

    /// Waits for a line until the deadline, without one for ever. Nothing at the deadline and at
    /// the end, which ended() tells apart.
    std::optional<Command> pop(std::optional<std::chrono::steady_clock::time_point> deadline);
    /// Where the front has no input thread beside it, pop() gets lines by this, which waits for
    /// some until the deadline.
    using fill_t = std::function<void(std::optional<std::chrono::steady_clock::time_point>)>;
    void fill_by(fill_t fill) { fill_ = std::move(fill); }
    /// Takes the lines that there are, where pop() is not called.
    void fill();
    /// The end has come and nothing waits any more.
    bool ended() const;
    /// Calls back, on whichever thread, when `stop` waits or comes in: for what keeps the front
    /// from taking it. Without a function never again, and then no call runs any more.
    void on_stop(std::function<void()> call);

 private:
    bool is_full() const { return waiting_ >= most_; }

    std::size_t most_;
    WakeUp room_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Command> commands_;
    /// What the lines that wait take, in bytes.
    std::size_t waiting_ = 0;
    std::function<void()> on_stop_;
    fill_t fill_;
    bool end_ = false;
    bool quit_ = false;
};

}  // namespace orvelin::play
