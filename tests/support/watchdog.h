#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace orvelin::test {

/// Ends the process when the test hangs: a thread that spins or waits forever cannot be stopped
/// in any other way, and the text tells where it was.
class Watchdog {
 public:
    explicit Watchdog(std::chrono::seconds patience)
        : patience_(patience), thread_([this] { watch(); }) {}
    ~Watchdog() {
        {
            std::lock_guard const lock(mutex_);
            done_ = true;
        }
        change_.notify_all();
        thread_.join();
    }
    Watchdog(Watchdog const&) = delete;
    Watchdog& operator=(Watchdog const&) = delete;

    /// The test goes on, with what the text tells; its time begins anew.
    void feed(std::string text) {
        std::lock_guard const lock(mutex_);
        text_ = std::move(text);
        ++feeds_;
        change_.notify_all();
    }

 private:
    void watch() {
        std::unique_lock lock(mutex_);
        while (!done_) {
            auto const before = feeds_;
            if (change_.wait_for(lock, patience_, [&] { return done_ || feeds_ != before; })) {
                continue;
            }
            std::fprintf(stderr, "no progress: %s\n", text_.c_str());
            std::abort();
        }
    }

    std::chrono::seconds patience_;
    std::mutex mutex_;
    std::condition_variable change_;
    std::string text_;
    unsigned long feeds_ = 0;
    bool done_ = false;
    std::thread thread_;
};

}  // namespace orvelin::test
