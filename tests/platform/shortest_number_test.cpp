#include "platform/shortest_number.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

#include "platform/language.h"
#include "support/test_config.h"

namespace orvelin {
namespace {

template <typename Number>
std::string plain(Number value) {
    std::array<char, 32> text{};
    return {text.data(), write_shortest_plainly(text.data(), value)};
}

template <typename Number>
std::string of_library(Number value) {
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

template <typename Number>
void expect_same(Number value) {
    EXPECT_EQ(plain(value), of_library(value));
    EXPECT_EQ(plain(-value), of_library(-value));
}

TEST(ShortestNumber, NumbersOfEveryForm) {
    EXPECT_EQ(plain(0.0F), "0");
    EXPECT_EQ(plain(-0.0F), "-0");
    EXPECT_EQ(plain(0.1F), "0.1");
    EXPECT_EQ(plain(0.1), "0.1");
    EXPECT_EQ(plain(-12.5F), "-12.5");
    EXPECT_EQ(plain(1e-5F), "1e-05");
    EXPECT_EQ(plain(100000.0F), "1e+05");
    EXPECT_EQ(plain(123456.0F), "123456");
    EXPECT_EQ(plain(16777216.0F), "16777216");
}

// Where the numbers begin to lie farther apart.
TEST(ShortestNumber, PowersOfTwo) {
    for (int power = -149; power < 128; ++power) {
        expect_same(std::ldexp(1.0F, power));
    }
    for (int power = -1074; power < 1024; ++power) {
        expect_same(std::ldexp(1.0, power));
    }
}

TEST(ShortestNumber, TheLibraryWritesTheSame) {
    std::mt19937_64 random(1);
    int const numbers = test::whole_tests() ? 20000 : 4000;
    for (int i = 0; i < numbers; ++i) {
        std::uint64_t const bits = random();
        auto const single = bit_cast<float>(static_cast<std::uint32_t>(bits));
        auto const twice = bit_cast<double>(bits);
        if (std::isfinite(single) && std::isfinite(twice)) {
            expect_same(single);
            expect_same(twice);
        }
        // Of the size of an evaluation.
        expect_same(static_cast<float>(static_cast<double>(bits % 4000000) / 1024.0 / 3.0));
        expect_same(static_cast<double>(bits % 4000000) / 1024.0 / 3.0);
    }
}

TEST(ShortestNumber, WhatIsNoNumber) {
    expect_same(std::numeric_limits<float>::infinity());
    EXPECT_EQ(plain(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(ShortestNumber, TheLibraryIsUsed) {
    std::array<char, 32> text{};
    EXPECT_EQ(std::string(text.data(), write_shortest(text.data(), 0.3F)), "0.3");
}

}  // namespace
}  // namespace orvelin
