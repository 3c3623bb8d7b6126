#pragma once

#include <chrono>
#include <optional>

#include "platform/input_watch.h"
#include "play/command_queue.h"
#include "play/line_buffer.h"
#include "play/output.h"

namespace orvelin::play {

/// The input thread: makes lines for the queue of what comes in on standard input, and watches for
/// what ends the process from outside.
///
/// Waits in one place for input, signals and the loss of the output, so that none needs a tick.
class LineReader {
 public:
    /// Never writes to the output itself: that may wait for a reader for ever.
    /// InputWatch::block_signals() must have been called.
    LineReader(int input, Output const& output, CommandQueue& queue);

    /// Reads until the input ends, and ends the queue; while too much waits there, it does not
    /// read on. A signal, or the loss of the output, ends the process: with 128 and the number of
    /// the signal, or with 1. An output that nobody reads is lost too, but only `patience` behind
    /// `quit` or the end of the input.
    void operator()();
    /// Waits for input until the deadline, and takes what there is: for a front without input
    /// thread.
    void look_until(std::optional<std::chrono::steady_clock::time_point> deadline);

 private:
    static constexpr std::chrono::milliseconds patience{2000};
    /// How often it is looked whether that is over, once the end is near.
    static constexpr std::chrono::milliseconds look_interval{250};

    enum class input_t { open, hung_up, ended };

    /// Waits until there is something to look at, at most for the given time, and looks at it.
    void look(std::optional<std::chrono::milliseconds> most);
    void read();
    [[noreturn]] static void end_process(int status);

    InputWatch watch_;
    Output const& output_;
    CommandQueue& queue_;
    input_t state_ = input_t::open;
    LineBuffer lines_;
};

}  // namespace orvelin::play
