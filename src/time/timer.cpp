#include "time/timer.h"

#include <chrono>

namespace orvelin {

namespace {

constexpr auto relaxed = std::memory_order_relaxed;
constexpr double nanoseconds_per_second = 1e9;

Duration from_nanoseconds(double count) {
    return std::chrono::duration<double>(count / nanoseconds_per_second);
}

}  // namespace

Timer::Timer(Timer const& other)
    : start_(other.start_.load(relaxed)),
      total_(other.total_.load(relaxed)),
      count_(other.count_.load(relaxed)),
      stopped_(other.stopped_.load(relaxed)) {}

Timer& Timer::operator=(Timer const& other) {
    start_.store(other.start_.load(relaxed), relaxed);
    total_.store(other.total_.load(relaxed), relaxed);
    count_.store(other.count_.load(relaxed), relaxed);
    stopped_.store(other.stopped_.load(relaxed), relaxed);
    return *this;
}

std::int64_t Timer::now() {
    auto const since_epoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(since_epoch).count();
}

void Timer::start() {
    stopped_.store(false, relaxed);
    start_.store(now(), relaxed);
}

void Timer::stop() {
    if (stopped_.load(relaxed)) {
        return;
    }
    stopped_.store(true, relaxed);
    fold();
}

void Timer::fold() {
    auto const interval = static_cast<double>(now() - start_.load(relaxed));
    total_.store(total_.load(relaxed) + interval, relaxed);
    count_.store(count_.load(relaxed) + 1, relaxed);
}

void Timer::reset() {
    stopped_.store(true, relaxed);
    total_.store(0.0, relaxed);
    count_.store(0, relaxed);
}

Duration Timer::total_time() {
    if (!stopped_.load(relaxed)) {
        // Not by stop() and start(), which would revive a timer that another thread resets
        // between the two.
        fold();
        start_.store(now(), relaxed);
    }
    return from_nanoseconds(total_.load(relaxed));
}

Duration Timer::average_time() const {
    std::uint64_t const count = count_.load(relaxed);
    if (count == 0) {
        return from_nanoseconds(0.0);
    }
    return from_nanoseconds(total_.load(relaxed) / static_cast<double>(count));
}

Duration Timer::running_time() const {
    return from_nanoseconds(static_cast<double>(now() - start_.load(relaxed)));
}

}  // namespace orvelin
