#include "play/line_reader.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>
#include <utility>

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
    : input_(input), output_(output), queue_(queue) {}

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
            take(buffer.data(), static_cast<std::size_t>(number));
        } else if (number == 0 || (errno != EINTR && errno != EAGAIN)) {
            // A last line may lack its end.
            finish_line();
            queue_.end();
            input_ends = true;
        }
    }
}

void LineReader::take(char const* bytes, std::size_t number) {
    for (std::size_t i = 0; i < number; ++i) {
        if (bytes[i] == '\n') {
            finish_line();
        } else if (line_.size() == longest_line) {
            too_long_ = true;
        } else if (bytes[i] == '\0') {
            had_nul_ = true;
            line_ += ' ';
        } else {
            line_ += bytes[i];
        }
    }
}

void LineReader::finish_line() {
    Command command{std::move(line_), std::chrono::steady_clock::now()};
    if (too_long_) {
        command.remark =
            "a line of more than " + std::to_string(longest_line) + " characters is ignored";
        command.line.clear();
    } else if (had_nul_) {
        command.remark = "NUL characters in a line are taken for blanks";
    }
    if (!command.line.empty() && command.line.back() == '\r') {
        command.line.pop_back();
    }
    if (!command.line.empty() || !command.remark.empty()) {
        queue_.push(std::move(command));
    }
    line_.clear();
    too_long_ = false;
    had_nul_ = false;
}

// Nothing is kept beyond the lines that are written already, so there is nothing to wait for.
void LineReader::end_process(int status) {
    std::_Exit(status);
}

}  // namespace orvelin::play
