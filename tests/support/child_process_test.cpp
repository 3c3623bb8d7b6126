#include "support/child_process.h"

#include <array>
#include <csignal>
#include <gtest/gtest.h>
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
    ChildProcess const engine({engine_binary, {}, {}});
    pid_t const id = engine.id();
    if (write(report, &id, sizeof id) != sizeof id) {
        _exit(1);
    }
    for (;;) {
        pause();
    }
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
    pid_t engine = 0;
    EXPECT_EQ(read(report[0], &engine, sizeof engine), static_cast<ssize_t>(sizeof engine));
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
