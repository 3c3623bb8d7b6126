#include "time/duration.h"

#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>

namespace orvelin {
namespace {

Duration span(double seconds) {
    return std::chrono::duration<double>(seconds);
}

TEST(Duration, ReadersCutOffTheFraction) {
    Duration const time = span(3725.9876543219);
    EXPECT_EQ(time.microseconds(), 3725987654U);
    EXPECT_EQ(time.milliseconds(), 3725987U);
    EXPECT_EQ(time.centiseconds(), 372598U);
    EXPECT_EQ(time.seconds(), 3725U);
    EXPECT_EQ(time.minutes(), 62U);
    EXPECT_EQ(span(1.5).nanoseconds(), 1500000000U);
}

TEST(Duration, SettersReplaceTheSpan) {
    Duration time = span(99.0);
    time.nanoseconds(2500000000U);
    EXPECT_EQ(time, span(2.5));
    time.milliseconds(1250);
    EXPECT_EQ(time, span(1.25));
    time.centiseconds(325);
    EXPECT_EQ(time, span(3.25));
    time.minutes(3);
    EXPECT_EQ(time, span(180.0));
}

TEST(Duration, SecondsFromFloatKeepWholeMillisecondsOnly) {
    Duration time = span(0.0);
    time.seconds(1.2349F);
    EXPECT_EQ(time, span(1.234));
    time.seconds(0.0009F);
    EXPECT_EQ(time, span(0.0));
    time.seconds(-1.2349F);
    EXPECT_EQ(time, span(-1.234));
}

TEST(Duration, SecondsFromFloatMultiplyInDoublePrecision) {
    // The float next below 0.3 times 1000 rounds up to 300 in single precision only.
    Duration time = span(0.0);
    time.seconds(0.29999998F);
    EXPECT_EQ(time, span(0.299));
}

TEST(Duration, SumAndDifference) {
    Duration time = span(2.0);
    time += span(0.5);
    EXPECT_EQ(time, span(2.5));
    time -= span(2.25);
    EXPECT_EQ(time, span(0.25));
    EXPECT_EQ(span(1.0) + span(0.5), span(1.5));
    EXPECT_EQ(span(1.0) - span(1.5), span(-0.5));
}

TEST(Duration, ComparesExactly) {
    EXPECT_EQ(span(0.1), span(0.1));
    EXPECT_NE(span(0.1) + span(0.2), span(0.3));
    Duration const nan = span(std::numeric_limits<double>::quiet_NaN());
    EXPECT_NE(nan, nan);
    EXPECT_FALSE(nan == nan);
}

TEST(Duration, CopyAndAssignment) {
    Duration const first = span(1.5);
    Duration copy(first);
    EXPECT_EQ(copy, first);
    copy = span(2.5);
    EXPECT_EQ(copy, span(2.5));
    EXPECT_EQ(first, span(1.5));
}

TEST(Duration, TruncationIsDefinedForEveryNumber) {
    constexpr std::uint64_t two_63 = std::uint64_t{1} << 63;
    EXPECT_EQ(truncated(1.99), 1U);
    EXPECT_EQ(truncated(-0.99), 0U);
    EXPECT_EQ(truncated(-3.7), static_cast<std::uint64_t>(-3));
    EXPECT_EQ(truncated(1e19), 10000000000000000000U);
    EXPECT_EQ(truncated(1e30), two_63);
    EXPECT_EQ(truncated(-1e30), two_63);
    EXPECT_EQ(truncated(std::numeric_limits<double>::infinity()), two_63);
    EXPECT_EQ(truncated(std::numeric_limits<double>::quiet_NaN()), two_63);
}

}  // namespace
}  // namespace orvelin
