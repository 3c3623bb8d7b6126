#pragma once

#include <chrono>
#include <cstdint>

namespace orvelin {

/// Cuts off the fraction. Defined for every input: a negative number wraps around as a
/// two's complement word, what does not fit at all gives 2^63.
std::uint64_t truncated(double number);

/// A span of time, held as a number of seconds. A plain value.
class Duration {
 public:
    Duration(Duration const&) = default;
    Duration(std::chrono::duration<double> const& span) : seconds_(span.count()) {}
    Duration& operator=(Duration const&) = default;
    ~Duration() = default;

    Duration& operator+=(Duration const& other) {
        seconds_ += other.seconds_;
        return *this;
    }
    Duration& operator-=(Duration const& other) {
        seconds_ -= other.seconds_;
        return *this;
    }

    /// Exact comparison; a NaN is unequal to all.
    bool operator==(Duration const& other) const { return seconds_ == other.seconds_; }
    bool operator!=(Duration const& other) const { return seconds_ != other.seconds_; }

    // The span in whole units, the fraction cut off.

    std::uint64_t nanoseconds() const { return truncated(seconds_ * 1e9); }
    std::uint64_t microseconds() const { return truncated(seconds_ * 1e6); }
    std::uint64_t milliseconds() const { return truncated(seconds_ * 1000.0); }
    std::uint64_t centiseconds() const { return truncated(seconds_ * 1000.0 / 10.0); }
    std::uint64_t seconds() const { return truncated(seconds_ * 1000.0 / 1000.0); }
    std::uint64_t minutes() const { return truncated(seconds_ * 1000.0 / 60000.0); }

    // Set the span to so many units.

    void nanoseconds(std::uint64_t count) { seconds_ = static_cast<double>(count) / 1e9; }
    void milliseconds(std::uint64_t count) { seconds_ = static_cast<double>(count) / 1000.0; }
    void centiseconds(std::uint64_t count) {
        seconds_ = static_cast<double>(count) * 10.0 / 1000.0;
    }
    void minutes(std::uint64_t count) { seconds_ = static_cast<double>(count) * 60.0; }
    /// Whole milliseconds only; the rest is cut off.
    void seconds(float count);

 private:
    double seconds_;
};

inline Duration operator+(Duration a, Duration const& b) {
    return a += b;
}
inline Duration operator-(Duration a, Duration const& b) {
    return a -= b;
}

}  // namespace orvelin
