#include "platform/language.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>

namespace orvelin {
namespace {

TEST(Language, TheBitsOfANumberAreKept) {
    EXPECT_EQ(bit_cast<std::uint32_t>(1.0F), 0x3f800000U);
    // By value it equals the zero without a sign.
    EXPECT_TRUE(std::signbit(bit_cast<float>(0x80000000U)));
    EXPECT_EQ(bit_cast<float>(0x80000000U), 0.0F);
    EXPECT_EQ(bit_cast<std::uint32_t>(-0.0F), 0x80000000U);
}

TEST(Language, APlainWordIsReadAndWritten) {
    std::uint64_t word = 1;
    atomic_ref<std::uint64_t>(word).store(2, std::memory_order_release);
    EXPECT_EQ(word, 2U);
    EXPECT_EQ(atomic_ref<std::uint64_t>(word).load(std::memory_order_relaxed), 2U);
}

}  // namespace
}  // namespace orvelin
