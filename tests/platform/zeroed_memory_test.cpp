#include "platform/zeroed_memory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>

namespace orvelin {
namespace {

TEST(ZeroedMemory, IsZeroToItsEndWhateverWasThereBefore) {
    for (std::size_t const bytes : {std::size_t{1}, std::size_t{1000}, std::size_t{3} << 20}) {
        for (int round = 0; round < 3; ++round) {
            std::unique_ptr<void, void (*)(void*)> const memory(zeroed_memory(bytes), std::free);
            auto* const start = static_cast<unsigned char*>(memory.get());
            ASSERT_NE(start, nullptr);
            EXPECT_EQ(std::count(start, start + bytes, 0), static_cast<std::ptrdiff_t>(bytes));
            std::memset(start, 0xa5, bytes);
        }
    }
}

}  // namespace
}  // namespace orvelin
