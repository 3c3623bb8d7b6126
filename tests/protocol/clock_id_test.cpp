#include "protocol/clock_id.h"

#include <chrono>
#include <gtest/gtest.h>

namespace orvelin::test {

namespace {

int id_of(std::chrono::system_clock::rep ticks) {
    return clock_id(
        std::chrono::system_clock::time_point(std::chrono::system_clock::duration(ticks)));
}

}  // namespace

TEST(ClockIdTest, IsTheLowNineBitsOfTheTickCount) {
    EXPECT_EQ(id_of(0), 0);
    EXPECT_EQ(id_of(511), 511);
    EXPECT_EQ(id_of(512), 0);
    EXPECT_EQ(id_of(0x123456789abcdeff), 0xff);
    EXPECT_EQ(id_of(0x1234567890123), 0x123);
}

}  // namespace orvelin::test
