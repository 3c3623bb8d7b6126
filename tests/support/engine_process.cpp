#include "support/engine_process.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

#include "support/test_config.h"

namespace orvelin::test {

namespace {

struct pipe_t {
    pipe_t() {
        // Closed in every child but the one it is duplicated into, or the end of one child's input
        // would be held open by its siblings.
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe failed");
        read_end = ends[0];
        write_end = ends[1];
    }
    int read_end;
    int write_end;
};

/// This process's environment, in which the sanitizers leave arithmetic faults to the system.
std::vector<std::string> child_environment() {
    std::vector<std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) variables.emplace_back(*entry);
    for (std::string const name : {"ASAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        char const* const old_value = std::getenv(name.c_str());
        std::string const old_text = old_value == nullptr ? "" : std::string(old_value) + ":";
        std::erase_if(variables,
                      [&](std::string const& text) { return text.starts_with(name + "="); });
        variables.push_back(
            std::string(name).append("=").append(old_text).append("handle_sigfpe=0"));
    }
    return variables;
}

pid_t spawn(std::string const& binary, int input, int output, int errors) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    std::vector<std::string> variables = child_environment();
    std::vector<char*> environment;
    environment.reserve(variables.size() + 1);
    for (std::string& variable : variables) environment.push_back(variable.data());
    environment.push_back(nullptr);
    std::string name = binary;
    std::array<char*, 2> arguments{name.data(), nullptr};

    pid_t pid = -1;
    int const error = posix_spawn(&pid, binary.c_str(), &actions, &attributes, arguments.data(),
                                  environment.data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? pid : -1;
}

/// Reads what there is; 0 at the end.
std::size_t read_some(int descriptor, std::array<char, 4096>& buffer) {
    for (;;) {
        ssize_t const count = ::read(descriptor, buffer.data(), buffer.size());
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR) return 0;
    }
}

}  // namespace

EngineProcess::EngineProcess(std::string const& binary) {
    start(binary);
}

EngineProcess::EngineProcess() {
    start(engine_binary);
}

EngineProcess::~EngineProcess() {
    close_input();
    if (running_) {
        kill(pid_, SIGKILL);
        int status = 0;
        waitpid(pid_, &status, 0);
    }
    join_readers();
}

void EngineProcess::start(std::string const& binary) {
    signal(SIGPIPE, SIG_IGN);
    pipe_t const input;
    pipe_t const output;
    pipe_t const errors;
    pid_ = spawn(binary, input.read_end, output.write_end, errors.write_end);
    close(input.read_end);
    close(output.write_end);
    close(errors.write_end);
    input_ = input.write_end;
    if (pid_ < 0) {
        close(input.write_end);
        close(output.read_end);
        close(errors.read_end);
        throw std::runtime_error("cannot start " + binary);
    }
    running_ = true;
    output_reader_ = std::thread([this, end = output.read_end] { collect_output(end); });
    error_reader_ = std::thread([this, end = errors.read_end] { collect_errors(end); });
}

void EngineProcess::collect_output(int descriptor) {
    std::array<char, 4096> buffer{};
    while (std::size_t const count = read_some(descriptor, buffer)) {
        clock::time_point const now = clock::now();
        std::lock_guard<std::mutex> const guard(mutex_);
        for (std::size_t i = 0; i < count; ++i) {
            if (buffer[i] == '\n') {
                lines_.push_back({unfinished_, now});
                unfinished_.clear();
            } else {
                unfinished_ += buffer[i];
            }
        }
        arrival_.notify_all();
    }
    close(descriptor);
    std::lock_guard<std::mutex> const guard(mutex_);
    output_ended_ = true;
    arrival_.notify_all();
}

void EngineProcess::collect_errors(int descriptor) {
    std::array<char, 4096> buffer{};
    while (std::size_t const count = read_some(descriptor, buffer)) {
        std::lock_guard<std::mutex> const guard(mutex_);
        errors_.append(buffer.data(), count);
    }
    close(descriptor);
}

void EngineProcess::join_readers() {
    if (output_reader_.joinable()) output_reader_.join();
    if (error_reader_.joinable()) error_reader_.join();
}

void EngineProcess::send_all(std::vector<std::string> const& lines) {
    std::string text;
    for (std::string const& line : lines) text += line + "\n";
    write(text);
}

void EngineProcess::write(std::string const& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        ssize_t const count = ::write(input_, text.data() + done, text.size() - done);
        if (count < 0 && errno != EINTR) return;
        if (count > 0) done += static_cast<std::size_t>(count);
    }
}

void EngineProcess::close_input() {
    if (input_ >= 0) close(input_);
    input_ = -1;
}

std::optional<EngineProcess::timed_line_t> EngineProcess::read_line(milliseconds timeout) {
    std::unique_lock<std::mutex> lock(mutex_);
    arrival_.wait_until(lock, clock::now() + timeout,
                        [this] { return !lines_.empty() || output_ended_; });
    if (lines_.empty()) return std::nullopt;
    timed_line_t line = lines_.front();
    lines_.pop_front();
    return line;
}

std::vector<EngineProcess::timed_line_t> EngineProcess::read_until(std::string_view start,
                                                                   milliseconds timeout) {
    clock::time_point const deadline = clock::now() + timeout;
    std::vector<timed_line_t> lines;
    while (std::optional<timed_line_t> const line =
               read_line(std::chrono::duration_cast<milliseconds>(deadline - clock::now()))) {
        lines.push_back(*line);
        if (line->text.starts_with(start)) break;
    }
    return lines;
}

std::string EngineProcess::find(std::string_view start, milliseconds timeout) {
    std::vector<timed_line_t> const lines = read_until(start, timeout);
    if (lines.empty() || !lines.back().text.starts_with(start)) return "";
    return lines.back().text;
}

std::vector<EngineProcess::timed_line_t> EngineProcess::read_for(milliseconds time) {
    std::this_thread::sleep_for(time);
    std::lock_guard<std::mutex> const guard(mutex_);
    std::vector<timed_line_t> lines(lines_.begin(), lines_.end());
    lines_.clear();
    return lines;
}

std::string EngineProcess::unfinished_line() {
    std::lock_guard<std::mutex> const guard(mutex_);
    return unfinished_;
}

std::optional<process_end_t> EngineProcess::wait(milliseconds timeout) {
    clock::time_point const deadline = clock::now() + timeout;
    while (running_) {
        int status = 0;
        if (waitpid(pid_, &status, WNOHANG) == pid_) {
            running_ = false;
            if (WIFSIGNALED(status)) {
                end_.signal = WTERMSIG(status);
            } else {
                end_.status = WEXITSTATUS(status);
            }
        } else if (clock::now() >= deadline) {
            return std::nullopt;
        } else {
            std::this_thread::sleep_for(milliseconds(2));
        }
    }
    join_readers();
    return end_;
}

std::vector<std::string> EngineProcess::rest() {
    std::lock_guard<std::mutex> const guard(mutex_);
    std::vector<std::string> texts;
    for (timed_line_t const& line : lines_) texts.push_back(line.text);
    lines_.clear();
    return texts;
}

std::string EngineProcess::error_text() {
    std::lock_guard<std::mutex> const guard(mutex_);
    return errors_;
}

}  // namespace orvelin::test
