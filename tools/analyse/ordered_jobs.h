#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace orvelin::tools {

/// Does the same work on one task after the other in several threads, and hands on what came out
/// in the order in which the tasks came, whichever thread ends first.
///
/// There is no thread for input or output: each worker takes a task when no other takes one, and
/// the one that has what is next in order hands it on. No more tasks are taken when `window` of
/// them are taken and not handed on, so that what waits is bounded. An exception counts as what
/// came out of its task: all before it is handed on, nothing behind it is.
template <typename Task, typename Done>
class OrderedJobs {
 public:
    struct Work {
        /// The next task, nothing at the end. By one thread at a time, in order.
        std::function<std::optional<Task>()> take;
        /// By many threads, of which each has a number from 0. Nothing means that it was stopped.
        std::function<std::optional<Done>(Task&, std::size_t worker)> work;
        /// By one thread at a time, in order.
        std::function<void(Done&)> hand_on;
        /// Every now and then by the thread that called run(). True stops the workers.
        std::function<bool()> stop_wanted;
        /// By that thread too, after a stop or an exception, again and again until all workers have
        /// ended: makes them end what they do, or wait for.
        std::function<void()> interrupt;
    };

    OrderedJobs(Work work, std::size_t jobs, std::uint64_t window)
        : work_(std::move(work)), jobs_(jobs), window_(window) {}

    /// Returns when there are no tasks any more, or after a stop.
    /// @throws what the work threw.
    void run() {
        std::vector<std::thread> workers;
        running_ = jobs_;
        try {
            for (std::size_t i = 0; i < jobs_; ++i) {
                workers.emplace_back([this, i] { run_worker(i); });
            }
        } catch (...) {
            end_early(std::current_exception());
            std::lock_guard const lock(mutex_);
            running_ -= jobs_ - workers.size();
        }
        watch();
        for (std::thread& worker : workers) {
            worker.join();
        }
        if (error_) {
            std::rethrow_exception(error_);
        }
    }

 private:
    struct Outcome {
        std::optional<Done> done;
        std::exception_ptr error;
    };

    void watch() {
        using namespace std::chrono_literals;
        std::unique_lock lock(mutex_);
        while (running_ > 0) {
            workers_ended_.wait_for(lock, 50ms, [this] { return running_ == 0 || stopped_; });
            bool const stopped = stopped_;
            lock.unlock();
            bool const stop = work_.stop_wanted() || stopped;
            if (stop) {
                work_.interrupt();
            }
            lock.lock();
            if (stop && !stopped_) {
                stopped_ = true;
                room_.notify_all();
            }
            if (stop && running_ > 0) {
                workers_ended_.wait_for(lock, 2ms);
            }
        }
    }

    void run_worker(std::size_t worker) {
        while (wait_for_room()) {
            Outcome outcome;
            std::optional<Task> task;
            std::uint64_t number = 0;
            {
                std::lock_guard const lock(input_);
                if (input_ended_) {
                    break;
                }
                number = taken_++;
                try {
                    task = work_.take();
                } catch (...) {
                    outcome.error = std::current_exception();
                }
                input_ended_ = !task;
            }
            if (task) {
                try {
                    outcome.done = work_.work(*task, worker);
                } catch (...) {
                    outcome.error = std::current_exception();
                }
            }
            // At the end of the input the number stands for nothing.
            if (task || outcome.error) {
                deliver(number, std::move(outcome));
            }
        }
        std::lock_guard const lock(mutex_);
        --running_;
        workers_ended_.notify_all();
    }

    bool wait_for_room() {
        std::unique_lock lock(mutex_);
        room_.wait(lock, [this] { return stopped_ || taken_ < delivered_ + window_; });
        return !stopped_;
    }

    void deliver(std::uint64_t number, Outcome outcome) {
        std::unique_lock lock(mutex_);
        waiting_.emplace(number, std::move(outcome));
        // One thread hands on; what the others bring meanwhile it finds here.
        if (handing_on_) {
            return;
        }
        handing_on_ = true;
        while (!halted_ && !waiting_.empty() && waiting_.begin()->first == delivered_) {
            Outcome next = std::move(waiting_.begin()->second);
            waiting_.erase(waiting_.begin());
            lock.unlock();
            std::exception_ptr const error = hand_on(next);
            lock.lock();
            ++delivered_;
            if (error || !next.done) {
                halted_ = true;
                stopped_ = true;
                error_ = error;
                workers_ended_.notify_all();
            }
            room_.notify_all();
        }
        handing_on_ = false;
    }

    std::exception_ptr hand_on(Outcome& outcome) {
        if (outcome.error || !outcome.done) {
            return outcome.error;
        }
        try {
            work_.hand_on(*outcome.done);
        } catch (...) {
            return std::current_exception();
        }
        return nullptr;
    }

    void end_early(std::exception_ptr error) {
        std::lock_guard const lock(mutex_);
        error_ = std::move(error);
        halted_ = true;
        stopped_ = true;
        room_.notify_all();
        workers_ended_.notify_all();
    }

    Work work_;
    std::size_t jobs_;
    std::uint64_t window_;

    std::mutex input_;
    bool input_ended_ = false;
    /// Tasks taken; written under `input_`, read under `mutex_` too.
    std::atomic<std::uint64_t> taken_ = 0;

    std::mutex mutex_;
    std::condition_variable room_;
    std::condition_variable workers_ended_;
    std::map<std::uint64_t, Outcome> waiting_;
    std::uint64_t delivered_ = 0;
    std::size_t running_ = 0;
    bool handing_on_ = false;
    /// No more tasks are taken.
    bool stopped_ = false;
    /// Nothing more is handed on.
    bool halted_ = false;
    std::exception_ptr error_;
};

}  // namespace orvelin::tools
