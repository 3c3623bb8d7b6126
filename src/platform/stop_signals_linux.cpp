#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <optional>

#include "platform/stop_signals.h"

namespace orvelin {

namespace {

constexpr std::array<int, 3> ending_signals = {SIGINT, SIGTERM, SIGHUP};

std::atomic<bool> signal_came = false;
std::optional<WakeUp> stop_flag;
std::array<struct sigaction, ending_signals.size()> actions_before;
struct sigaction pipe_action_before;

extern "C" void note_signal(int) {
    int const error = errno;
    signal_came = true;
    stop_flag->set();
    errno = error;
}

}  // namespace

StopSignals::StopSignals() {
    stop_flag.emplace();
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
    stop_flag.reset();
}

bool StopSignals::stopped() const {
    return signal_came;
}

WakeUp const* StopSignals::flag() const {
    return &*stop_flag;
}

void StopSignals::wake() const {
    stop_flag->set();
}

}  // namespace orvelin
