#pragma once

#include <atomic>
#include <cstdint>

#include "time/duration.h"

namespace orvelin {

/// A stopwatch on the system clock that adds up intervals.
///
/// A value that can be copied. Each field is a relaxed atomic: the timer of a search is
/// folded by the analysis thread and may be reset by the main thread at the same time. Such
/// a reading may mix old and new fields, which is harmless; nothing more is promised.
class Timer {
 public:
    /// Stopped, with nothing measured.
    Timer() = default;
    Timer(Timer const& other);
    Timer& operator=(Timer const& other);
    ~Timer() = default;

    /// Begins an interval now.
    void start();
    /// Ends the interval, if one is running.
    void stop();
    /// Stops and forgets the intervals measured.
    void reset();

    /// Sum of the intervals. A running interval is ended and a new one begun, so that each
    /// call on a running timer counts as one interval (oddity 44).
    Duration total_time();
    /// Total by number of intervals; 0 without any.
    Duration average_time() const;
    /// Time since the last start, whether stopped or not.
    Duration running_time() const;

 private:
    static std::int64_t now();
    /// Adds the present interval to the total.
    void fold();

    std::atomic<std::int64_t> start_{0};   ///< nanoseconds of the system clock
    std::atomic<double> total_{0.0};       ///< nanoseconds
    std::atomic<std::uint64_t> count_{0};  ///< number of intervals in the total
    std::atomic<bool> stopped_{true};
};

}  // namespace orvelin
