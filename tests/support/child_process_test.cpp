#include "support/child_process.h"

#include <array>
#include <csignal>
#include <exception>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/test_config.h"

namespace orvelin::test {

namespace {

/// While one exists, the children of killed children are this process's own.
class Guardian {
 public:
    Guardian() { prctl(PR_SET_CHILD_SUBREAPER, 1); }
    ~Guardian() { prctl(PR_SET_CHILD_SUBREAPER, 0); }
    Guardian(Guardian const&) = delete;
    Guardian& operator=(Guardian const&) = delete;
};

/// The life of a parent: starts an engine, tells its id, and waits to be killed.
[[noreturn]] void be_parent(int report) {
    try {
        ChildProcess const engine({engine_binary, {}, {}});
        pid_t const id = engine.id();
        while (write(report, &id, sizeof id) == sizeof id) {
            pause();
        }
    } catch (std::exception const&) {
        // The tests belong to the process that forked.
    }
    _exit(1);
}

/// What a parent tells in time, or 0.
pid_t told_engine(int report) {
    pollfd waiting{report, POLLIN, 0};
    pid_t engine = 0;
    if (poll(&waiting, 1, 60000) != 1 || read(report, &engine, sizeof engine) != sizeof engine) {
        return 0;
    }
    return engine;
}

/// The signal that ends the child within the time, or 0.
int signal_that_ends(pid_t child, milliseconds timeout) {
    for (milliseconds left = timeout; left > milliseconds(0); left -= milliseconds(5)) {
        int status = 0;
        if (waitpid(child, &status, WNOHANG) == child) {
            return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
        }
        usleep(5000);
    }
    return 0;
}

}  // namespace

// Left alone, the engine would spin for minutes on the end of its input.
TEST(ChildProcessTest, AnEngineDiesWithItsParent) {
    Guardian const guardian;
    std::array<int, 2> report{};
    ASSERT_EQ(pipe(report.data()), 0);
    pid_t const parent = fork();
    ASSERT_GE(parent, 0);
    if (parent == 0) {
        be_parent(report[1]);
    }
    close(report[1]);
    pid_t const engine = told_engine(report[0]);
    close(report[0]);
    kill(parent, SIGKILL);
    EXPECT_EQ(waitpid(parent, nullptr, 0), parent);
    ASSERT_GT(engine, 0);
    int const signal = signal_that_ends(engine, milliseconds(5000));
    EXPECT_EQ(signal, SIGKILL);
    if (signal == 0) {
        kill(engine, SIGKILL);
        waitpid(engine, nullptr, 0);
    }
}

}  // namespace orvelin::test
