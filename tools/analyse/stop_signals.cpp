#include "analyse/stop_signals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace orvelin::tools {

namespace {

constexpr std::array<int, 3> ending_signals = {SIGINT, SIGTERM, SIGHUP};

std::atomic<bool> signal_came = false;
std::array<int, 2> wake_pipe = {-1, -1};
std::array<struct sigaction, ending_signals.size()> actions_before;
struct sigaction pipe_action_before;

/// A full pipe is readable as it is.
void write_to_pipe() {
    [[maybe_unused]] auto const written = ::write(wake_pipe[1], "x", 1);
}

extern "C" void note_signal(int) {
    int const error = errno;
    signal_came = true;
    write_to_pipe();
    errno = error;
}

}  // namespace

StopSignals::StopSignals() {
    if (::pipe2(wake_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        throw std::runtime_error("no pipe can be made");
    }
    signal_came = false;
    struct sigaction action = {};
    action.sa_handler = note_signal;
    // Reset at once, so that a second one ends what does not end by itself.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < ending_signals.size(); ++i) {
        ::sigaction(ending_signals[i], nullptr, &actions_before[i]);
        // What nohup made the program ignore, it goes on to ignore.
        if (actions_before[i].sa_handler != SIG_IGN) {
            ::sigaction(ending_signals[i], &action, nullptr);
        }
    }
    action.sa_handler = SIG_IGN;
    action.sa_flags = 0;
    ::sigaction(SIGPIPE, &action, &pipe_action_before);
}

StopSignals::~StopSignals() {
    for (std::size_t i = 0; i < ending_signals.size(); ++i) {
        ::sigaction(ending_signals[i], &actions_before[i], nullptr);
    }
    ::sigaction(SIGPIPE, &pipe_action_before, nullptr);
    for (int& end : wake_pipe) {
        ::close(end);
        end = -1;
    }
}

bool StopSignals::stopped() const {
    return signal_came;
}

int StopSignals::descriptor() const {
    return wake_pipe[0];
}

void StopSignals::wake() const {
    write_to_pipe();
}

}  // namespace orvelin::tools
