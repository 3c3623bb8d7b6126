#include "platform/sleep.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <thread>

namespace orvelin {
namespace {

using steady_clock = std::chrono::steady_clock;

std::atomic<int> signals_seen{0};

/// Lets SIGUSR1 interrupt what a thread waits for, until the end of a test.
class InterruptingSignal {
 public:
    InterruptingSignal() {
        struct sigaction counting {};
        counting.sa_handler = [](int) { signals_seen.fetch_add(1); };
        sigaction(SIGUSR1, &counting, &former_);
    }
    ~InterruptingSignal() { sigaction(SIGUSR1, &former_, nullptr); }
    InterruptingSignal(InterruptingSignal const&) = delete;
    InterruptingSignal& operator=(InterruptingSignal const&) = delete;

 private:
    struct sigaction former_ {};
};

TEST(Sleep, LastsAtLeastTheGivenTime) {
    auto const before = steady_clock::now();
    sleep_milliseconds(0);
    sleep_milliseconds(20);
    EXPECT_GE(steady_clock::now() - before, std::chrono::milliseconds(20));
}

TEST(Sleep, IsNotShortenedBySignals) {
    InterruptingSignal const signal;
    std::atomic<bool> over{false};
    steady_clock::duration slept{};
    std::thread sleeper([&] {
        // The last sleep is one that a signal fell into.
        do {
            signals_seen.store(0);
            auto const before = steady_clock::now();
            sleep_milliseconds(50);
            slept = steady_clock::now() - before;
        } while (signals_seen.load() == 0);
        over.store(true);
    });
    while (!over.load()) {
        pthread_kill(sleeper.native_handle(), SIGUSR1);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    sleeper.join();
    EXPECT_GE(slept, std::chrono::milliseconds(50));
}

}  // namespace
}  // namespace orvelin
