#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "analyse/ordered_jobs.h"

namespace orvelin::test::analysis {

namespace {

using jobs_t = tools::OrderedJobs<int, int>;
using std::chrono_literals::operator""ms;

/// Squares of 0 to count - 1; the first of each ten takes long.
struct Squares {
    int count = 100;
    int next = 0;
    std::vector<int> seen{};
    std::atomic<int> most_ahead = 0;
    std::atomic<int> handed_on = 0;
    std::atomic<bool> interrupted = false;

    jobs_t::Work work() {
        return {[this]() -> std::optional<int> {
                    most_ahead = std::max<int>(most_ahead, next - handed_on);
                    return next < count ? std::optional<int>(next++) : std::nullopt;
                },
                [](int& task, std::size_t) -> std::optional<int> {
                    if (task % 10 == 0) {
                        std::this_thread::sleep_for(3ms);
                    }
                    return task * task;
                },
                [this](int& square) {
                    seen.push_back(square);
                    ++handed_on;
                },
                [] { return false; }, [this] { interrupted = true; }};
    }
    bool in_order() const {
        for (std::size_t i = 0; i < seen.size(); ++i) {
            if (seen[i] != static_cast<int>(i * i)) {
                return false;
            }
        }
        return true;
    }
};

}  // namespace

TEST(OrderedJobs, HandsOnInTheOrderOfTheTasks) {
    for (std::size_t const jobs : {1U, 2U, 7U}) {
        Squares squares;
        jobs_t(squares.work(), jobs, 16).run();
        EXPECT_EQ(squares.seen.size(), 100U) << jobs;
        EXPECT_TRUE(squares.in_order()) << jobs;
        EXPECT_FALSE(squares.interrupted);
    }
}

TEST(OrderedJobs, HoldsNoMoreThanTheWindow) {
    Squares squares{.count = 400};
    auto work = squares.work();
    work.work = [](int& task, std::size_t) -> std::optional<int> {
        if (task == 0) {
            std::this_thread::sleep_for(100ms);
        }
        return task * task;
    };
    jobs_t(work, 3, 10).run();
    EXPECT_EQ(squares.seen.size(), 400U);
    // Each worker may have passed the gate at once.
    EXPECT_LE(squares.most_ahead, 10 + 3);
    EXPECT_GE(squares.most_ahead, 9);
}

TEST(OrderedJobs, HandsOnWhatIsBeforeAnException) {
    for (std::size_t const jobs : {1U, 4U}) {
        Squares squares;
        auto work = squares.work();
        work.work = [](int& task, std::size_t) -> std::optional<int> {
            if (task == 40) {
                throw std::runtime_error("forty");
            }
            std::this_thread::sleep_for(1ms);
            return task * task;
        };
        EXPECT_THROW(jobs_t(work, jobs, 16).run(), std::runtime_error);
        EXPECT_EQ(squares.seen.size(), 40U);
        EXPECT_TRUE(squares.in_order());
    }
}

TEST(OrderedJobs, HandsOnWhatIsBeforeAFaultOfTheInput) {
    Squares squares;
    auto work = squares.work();
    work.take = [&squares]() -> std::optional<int> {
        if (squares.next == 30) {
            throw std::runtime_error("input");
        }
        return squares.next++;
    };
    EXPECT_THROW(jobs_t(work, 3, 16).run(), std::runtime_error);
    EXPECT_EQ(squares.seen.size(), 30U);
}

TEST(OrderedJobs, EndsWhenHandingOnFails) {
    Squares squares{.count = 1000000};
    auto work = squares.work();
    work.hand_on = [&squares](int& square) {
        if (squares.seen.size() == 20) {
            throw std::runtime_error("full");
        }
        squares.seen.push_back(square);
        ++squares.handed_on;
    };
    EXPECT_THROW(jobs_t(work, 3, 16).run(), std::runtime_error);
    EXPECT_EQ(squares.seen.size(), 20U);
    EXPECT_LT(squares.next, 100);
}

TEST(OrderedJobs, AWorkerThatWaitsForInputIsInterruptedWhenAnotherFails) {
    std::atomic<bool> interrupted = false;
    int next = 0;
    jobs_t::Work work;
    work.take = [&]() -> std::optional<int> {
        while (next == 1 && !interrupted) {
            std::this_thread::sleep_for(1ms);
        }
        return next == 1 ? std::nullopt : std::optional<int>(next++);
    };
    work.work = [](int& task, std::size_t) { return std::optional<int>(task); };
    work.hand_on = [](int&) { throw std::runtime_error("full"); };
    work.stop_wanted = [] { return false; };
    work.interrupt = [&] { interrupted = true; };
    EXPECT_THROW(jobs_t(work, 2, 16).run(), std::runtime_error);
    EXPECT_TRUE(interrupted);
}

TEST(OrderedJobs, AStopInterruptsAndHandsOnNothingThatWasCutShort) {
    Squares squares{.count = 1000000};
    auto work = squares.work();
    work.work = [&squares](int& task, std::size_t) -> std::optional<int> {
        std::this_thread::sleep_for(1ms);
        if (task < 25) {
            return task * task;
        }
        while (!squares.interrupted) {
            std::this_thread::sleep_for(1ms);
        }
        return std::nullopt;
    };
    work.stop_wanted = [&squares] { return squares.handed_on >= 25; };
    jobs_t(work, 3, 16).run();
    EXPECT_EQ(squares.seen.size(), 25U);
    EXPECT_TRUE(squares.in_order());
}

}  // namespace orvelin::test::analysis
