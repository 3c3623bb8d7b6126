#include "play/line_reader.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace orvelin::play {

namespace {

sigset_t ending_signals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (int const signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, signal);
    }
    return signals;
}

}  // namespace

LineReader::LineReader(int input, int output, CommandQueue& queue)
    : input_(input), output_(output), lines_(queue) {}

void LineReader::block_signals() {
    sigset_t const signals = ending_signals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

void LineReader::operator()() {
    sigset_t const signals = ending_signals();
    int const arrived = signalfd(-1, &signals, SFD_CLOEXEC);
    std::array<char, 1 << 16> buffer;
    bool input_ends = false;
    for (;;) {
        // Nothing is asked of the output: a lost reader is reported unasked. After the end of the
        // input only signals and the output are waited for.
        std::array<pollfd, 3> sources{
            {{arrived, POLLIN, 0}, {output_, 0, 0}, {input_ends ? -1 : input_, POLLIN, 0}}};
        if (::poll(sources.data(), sources.size(), -1) < 0) {
            continue;
        }
        if (sources[0].revents != 0) {
            signalfd_siginfo signal{};
            if (::read(arrived, &signal, sizeof signal) == sizeof signal) {
                end_process(128 + static_cast<int>(signal.ssi_signo));
            }
        }
        if (sources[1].revents != 0) {
            end_process(1);
        }
        if (sources[2].revents == 0) {
            continue;
        }
        ssize_t const number = ::read(input_, buffer.data(), buffer.size());
        if (number > 0) {
            lines_.take({buffer.data(), static_cast<std::size_t>(number)});
        } else if (number == 0 || (errno != EINTR && errno != EAGAIN)) {
            lines_.end();
            input_ends = true;
        }
    }
}

// Nothing is kept beyond the lines that are written already, so there is nothing to wait for.
void LineReader::end_process(int status) {
    std::_Exit(status);
}

}  // namespace orvelin::play
