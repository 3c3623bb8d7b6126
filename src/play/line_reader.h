#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "play/command_queue.h"

namespace orvelin::play {

/// The input thread: turns the bytes of standard input into lines for the queue, and watches for
/// what ends the process from outside.
///
/// Waits in one place for input, signals and the loss of the output, so that none needs a tick.
/// The signals must be blocked in all threads before the first is started, see block_signals().
class LineReader {
 public:
    /// The longest line that is taken; of a longer one only a remark is left.
    static constexpr std::size_t longest_line = std::size_t{1} << 20;

    /// Never writes to the output itself: that may wait for a reader for ever.
    LineReader(int input, int output, CommandQueue& queue);

    /// Blocks SIGTERM, SIGINT and SIGHUP for this thread and those that it starts, and lets a
    /// write without a reader fail instead of ending the process.
    static void block_signals();

    /// Reads until the input ends, and ends the queue. A signal, or the loss of the output, ends
    /// the process: with 128 and the number of the signal, or with 1.
    void operator()();

 private:
    void take(char const* bytes, std::size_t number);
    void finish_line();
    [[noreturn]] static void end_process(int status);

    int input_;
    int output_;
    CommandQueue& queue_;
    std::string line_;
    bool too_long_ = false;
    bool had_nul_ = false;
};

}  // namespace orvelin::play
