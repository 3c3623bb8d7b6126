#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/wake_up.h"

namespace orvelin {

/// The one place where an input thread waits: for input, for what ends the process from outside,
/// for the loss of the output, and for a flag.
class InputWatch {
 public:
    /// What is wanted of the input: bytes, only to hear that it is lost, or nothing.
    enum class wanted_t : std::uint8_t { bytes, loss, nothing };

    /// What wait() has seen. More than one thing may have happened, or nothing.
    struct seen_t {
        /// The number of a signal that is to end the process, or 0.
        int signal = 0;
        /// Nobody will read the output any more.
        bool output_lost = false;
        bool flag = false;
        /// There is something to read, or what is wanted of the input has happened.
        bool input = false;
    };

    /// Watches two file descriptors and a flag, which must live on. What block_signals() says must
    /// have been done.
    InputWatch(int input, int output, WakeUp const& flag);
    ~InputWatch();
    InputWatch(InputWatch const&) = delete;
    InputWatch& operator=(InputWatch const&) = delete;

    /// Keeps the signals that end a process for the watch, in this thread and those that it
    /// starts, and lets a write without a reader fail instead of ending the process. To be called
    /// before the first thread is started.
    static void block_signals();

    /// Waits, at most for the given time, until there is something to look at.
    seen_t wait(wanted_t wanted, std::optional<std::chrono::milliseconds> most);
    /// Puts bytes of the input at a place with so much room and returns their number: 0 at its end
    /// or when it is lost, nothing when there are none yet.
    std::optional<std::size_t> read(char* to, std::size_t room);

 private:
    /// What the system needs for it.
    struct State;

    std::unique_ptr<State> state_;
};

}  // namespace orvelin
