#include "position/random64.h"

#include <cstdint>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/test_config.h"

namespace orvelin::test {

TEST(Random64, HoldsThePublishedNumbersInTheirOrder) {
    std::ifstream file(std::string(data_folder) + "/random64.txt");
    std::vector<std::uint64_t> published;
    std::uint64_t number = 0;
    while (file >> std::hex >> number) {
        published.push_back(number);
    }
    ASSERT_EQ(published.size(), 781U);
    ASSERT_EQ(rndh.size(), 781U);
    for (std::size_t i = 0; i < rndh.size(); ++i) {
        EXPECT_EQ(rndh[i], published[i]) << i;
    }
}

TEST(Random64, BeginsAndEndsAsPublished) {
    EXPECT_EQ(rndh[0], 0x9D39247E33776D41);
    EXPECT_EQ(rndh[780], 0xF8D626AAAF278509);
}

}  // namespace orvelin::test
