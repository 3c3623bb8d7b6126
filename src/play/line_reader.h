#pragma once

#include <chrono>

#include "play/command_queue.h"
#include "play/line_buffer.h"
#include "play/output.h"

namespace orvelin::play {

/// The input thread: makes lines for the queue of what comes in on standard input, and watches for
/// what ends the process from outside.
///
/// Waits in one place for input, signals and the loss of the output, so that none needs a tick.
/// The signals must be blocked in all threads before the first is started, see block_signals().
class LineReader {
 public:
    /// Never writes to the output itself: that may wait for a reader for ever.
    LineReader(int input, Output const& output, CommandQueue& queue);

    /// Blocks SIGTERM, SIGINT and SIGHUP for this thread and those that it starts, and lets a
    /// write without a reader fail instead of ending the process.
    static void block_signals();

    /// Reads until the input ends, and ends the queue; while too much waits there, it does not
    /// read on. A signal, or the loss of the output, ends the process: with 128 and the number of
    /// the signal, or with 1. An output that nobody reads is lost too, but only `patience` behind
    /// `quit` or the end of the input.
    void operator()();

 private:
    static constexpr std::chrono::milliseconds patience{2000};
    /// How often it is looked whether that is over, once the end is near.
    static constexpr std::chrono::milliseconds look_interval{250};

    enum class input_t { open, hung_up, ended };

    /// Waits until there is something to look at, and looks at it.
    void look(int signals);
    void read();
    [[noreturn]] static void end_process(int status);

    int input_;
    Output const& output_;
    CommandQueue& queue_;
    input_t state_ = input_t::open;
    LineBuffer lines_;
};

}  // namespace orvelin::play
