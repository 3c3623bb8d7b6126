#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace orvelin::test::analysis {

inline std::string bytes_of(std::string const& name) {
    std::ifstream file(name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void put_bytes(std::string const& name, std::string const& bytes) {
    std::ofstream file(name, std::ios::binary);
    file << bytes;
    ASSERT_TRUE(file.flush()) << name;
}

/// What the call throws; empty when it throws nothing.
template <typename Call>
std::string reason_from(Call const& call) {
    try {
        call();
    } catch (std::exception const& error) {
        return error.what();
    }
    return "";
}

}  // namespace orvelin::test::analysis
