#include "support/child_process.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <signal.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace orvelin::test {

namespace {

/// Closes the ends that are still its own.
struct pipe_t {
    pipe_t() {
        // Closed in every child but the one it is duplicated into, or the end of one child's input
        // would be held open by its siblings.
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("pipe failed");
        }
        read_end = ends[0];
        write_end = ends[1];
    }
    ~pipe_t() {
        if (read_end >= 0) {
            close(read_end);
        }
        if (write_end >= 0) {
            close(write_end);
        }
    }
    pipe_t(pipe_t const&) = delete;
    pipe_t& operator=(pipe_t const&) = delete;

    int read_end;
    int write_end;
};

/// This process's environment, in which the sanitizers leave arithmetic faults to the system.
std::vector<std::string> child_environment() {
    std::vector<std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        variables.emplace_back(*entry);
    }
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

/// Pointers to the texts and a null pointer, as the system wants them.
std::vector<char*> pointers_to(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// All that the child needs between its beginning and the program: nothing may be allocated there.
struct child_plan_t {
    std::array<int, 3> streams;
    char const* directory;
    char const* binary;
    char* const* arguments;
    char* const* environment;
    /// Where the child tells that it could not become the program.
    int failure;
    pid_t parent;
};

/// A child of a process that has died in the meantime gets no signal for it.
bool dies_with_parent(pid_t parent) {
    return prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && getppid() == parent;
}

bool take_streams(std::array<int, 3> const& streams) {
    return dup2(streams[0], STDIN_FILENO) >= 0 && dup2(streams[1], STDOUT_FILENO) >= 0 &&
           dup2(streams[2], STDERR_FILENO) >= 0;
}

/// The life of the child up to the program.
[[noreturn]] void become_program(child_plan_t const& plan) {
    if (dies_with_parent(plan.parent) && take_streams(plan.streams) && chdir(plan.directory) == 0) {
        signal(SIGPIPE, SIG_DFL);
        execve(plan.binary, plan.arguments, plan.environment);
    }
    char const word = 0;
    // Without a parent nobody is left to be told.
    [[maybe_unused]] ssize_t const told = write(plan.failure, &word, sizeof word);
    _exit(127);
}

/// -1 when the program cannot be started.
pid_t spawn(launch_t const& launch, int input, int output, int errors) {
    std::vector<std::string> variables = child_environment();
    std::vector<char*> const environment = pointers_to(variables);
    std::vector<std::string> words{launch.binary};
    words.insert(words.end(), launch.arguments.begin(), launch.arguments.end());
    std::vector<char*> const arguments = pointers_to(words);
    std::string const directory = launch.directory.empty() ? "." : launch.directory.string();
    pipe_t failure;
    child_plan_t const plan{{input, output, errors},
                            directory.c_str(),
                            launch.binary.c_str(),
                            arguments.data(),
                            environment.data(),
                            failure.write_end,
                            getpid()};

    pid_t const pid = fork();
    if (pid == 0) {
        become_program(plan);
    }
    close(std::exchange(failure.write_end, -1));
    // The program's beginning closes the other end.
    char word = 0;
    if (pid < 0 || read(failure.read_end, &word, sizeof word) == 0) {
        return pid;
    }
    waitpid(pid, nullptr, 0);
    return -1;
}

}  // namespace

ChildProcess::ChildProcess(launch_t const& launch) {
    // A child that is gone takes no input, and that is no error.
    signal(SIGPIPE, SIG_IGN);
    pipe_t input;
    pipe_t output;
    pipe_t errors;
    pid_ = spawn(launch, input.read_end, output.write_end, errors.write_end);
    if (pid_ < 0) {
        throw std::runtime_error("cannot start " + launch.binary);
    }
    running_ = true;
    input_ = std::exchange(input.write_end, -1);
    output_ = std::exchange(output.read_end, -1);
    errors_ = std::exchange(errors.read_end, -1);
}

ChildProcess::~ChildProcess() {
    close_input();
    kill();
    close(output_);
    close(errors_);
}

void ChildProcess::close_input() {
    if (input_ >= 0) {
        close(input_);
    }
    input_ = -1;
}

void ChildProcess::kill() {
    if (!running_) {
        return;
    }
    ::kill(pid_, SIGKILL);
    poll_end(0);
}

std::optional<process_end_t> ChildProcess::wait(milliseconds timeout) {
    using clock = std::chrono::steady_clock;
    clock::time_point const deadline = clock::now() + timeout;
    while (running_ && !poll_end(WNOHANG)) {
        if (clock::now() >= deadline) {
            return std::nullopt;
        }
        std::this_thread::sleep_for(milliseconds(2));
    }
    return end_;
}

bool ChildProcess::poll_end(int flags) {
    int status = 0;
    if (waitpid(pid_, &status, flags) != pid_) {
        return false;
    }
    running_ = false;
    if (WIFSIGNALED(status)) {
        end_.signal = WTERMSIG(status);
    } else {
        end_.status = WEXITSTATUS(status);
    }
    return true;
}

std::size_t read_some(int descriptor, read_buffer_t& buffer) {
    for (;;) {
        ssize_t const count = ::read(descriptor, buffer.data(), buffer.size());
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (errno != EINTR) {
            return 0;
        }
    }
}

}  // namespace orvelin::test
