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

LineReader::LineReader(int input, Output const& output, CommandQueue& queue)
    : input_(input), output_(output), queue_(queue), lines_(queue) {}

void LineReader::block_signals() {
    sigset_t const signals = ending_signals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

void LineReader::operator()() {
    sigset_t const signals = ending_signals();
    int const arrived = signalfd(-1, &signals, SFD_CLOEXEC);
    for (;;) {
        look(arrived);
    }
}

// Nothing is asked of the output: a lost reader is reported unasked, and so is the loss of an input
// that is not read on. Behind its end only signals and the output are waited for.
void LineReader::look(int signals) {
    bool const full = queue_.full();
    bool const ignored = state_ == input_t::ended || (full && state_ == input_t::hung_up);
    std::array<pollfd, 4> sources{
        {{signals, POLLIN, 0},
         {output_.descriptor(), 0, 0},
         {ignored ? -1 : input_, static_cast<short>(full ? 0 : POLLIN), 0},
         {queue_.room(), POLLIN, 0}}};
    bool const ending = queue_.ending() || state_ != input_t::open;
    int const time = ending ? static_cast<int>(look_interval.count()) : -1;
    if (::poll(sources.data(), sources.size(), time) < 0) {
        return;
    }
    if (sources[0].revents != 0) {
        signalfd_siginfo signal{};
        if (::read(signals, &signal, sizeof signal) == sizeof signal) {
            end_process(128 + static_cast<int>(signal.ssi_signo));
        }
    }
    if (sources[1].revents != 0 || (ending && output_.stuck_for(patience))) {
        end_process(1);
    }
    if (sources[3].revents != 0) {
        queue_.take_room();
    }
    if (sources[2].revents == 0) {
        return;
    }
    if (full) {
        state_ = input_t::hung_up;
    } else {
        read();
    }
}

void LineReader::read() {
    std::array<char, 1 << 16> buffer;
    ssize_t const number = ::read(input_, buffer.data(), buffer.size());
    if (number > 0) {
        lines_.take({buffer.data(), static_cast<std::size_t>(number)});
    } else if (number == 0 || (errno != EINTR && errno != EAGAIN)) {
        lines_.end();
        state_ = input_t::ended;
    }
}

// Nothing is kept beyond the lines that are written already, so there is nothing to wait for.
void LineReader::end_process(int status) {
    std::_Exit(status);
}

}  // namespace orvelin::play
