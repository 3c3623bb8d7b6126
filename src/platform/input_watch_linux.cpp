#include <array>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "platform/input_watch.h"

namespace orvelin {

namespace {

sigset_t ending_signals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (int const signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, signal);
    }
    return signals;
}

/// The number of the signal that has come, 0 when there is none.
int taken_signal(int signals) {
    signalfd_siginfo signal{};
    return ::read(signals, &signal, sizeof signal) == sizeof signal
               ? static_cast<int>(signal.ssi_signo)
               : 0;
}

}  // namespace

struct InputWatch::State {
    int input;
    int output;
    int flag;
    int signals;
};

InputWatch::InputWatch(int input, int output, WakeUp const& flag)
    : state_(std::make_unique<State>()) {
    sigset_t const signals = ending_signals();
    *state_ = {input, output, static_cast<int>(flag.handle()), signalfd(-1, &signals, SFD_CLOEXEC)};
}

InputWatch::~InputWatch() {
    ::close(state_->signals);
}

void InputWatch::block_signals() {
    sigset_t const signals = ending_signals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

// Nothing is asked of the output: a lost reader is reported unasked, and so is the loss of an input
// that is not read on.
InputWatch::seen_t InputWatch::wait(wanted_t wanted,
                                    std::optional<std::chrono::milliseconds> most) {
    std::array<pollfd, 4> sources{{{state_->signals, POLLIN, 0},
                                   {state_->output, 0, 0},
                                   {wanted == wanted_t::nothing ? -1 : state_->input,
                                    static_cast<short>(wanted == wanted_t::bytes ? POLLIN : 0), 0},
                                   {state_->flag, POLLIN, 0}}};
    int const time = most ? static_cast<int>(most->count()) : -1;
    seen_t seen;
    if (::poll(sources.data(), sources.size(), time) < 0) {
        return seen;
    }
    if (sources[0].revents != 0) {
        seen.signal = taken_signal(state_->signals);
    }
    seen.output_lost = sources[1].revents != 0;
    seen.input = sources[2].revents != 0;
    seen.flag = sources[3].revents != 0;
    return seen;
}

std::optional<std::size_t> InputWatch::read(char* to, std::size_t room) {
    ssize_t const number = ::read(state_->input, to, room);
    if (number < 0) {
        bool const again = errno == EINTR || errno == EAGAIN;
        return again ? std::nullopt : std::optional<std::size_t>(0);
    }
    return static_cast<std::size_t>(number);
}

}  // namespace orvelin
