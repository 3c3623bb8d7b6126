#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <system_error>
#include <vector>

#include "support/child_process.h"
#include "support/positions.h"
#include "support/program.h"
#include "support/temporary_directory.h"
#include "support/test_config.h"
#include "tools/analyse_files.h"

namespace orvelin::test::analysis {

using texts_t = std::vector<std::string>;
using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

inline constexpr milliseconds patience = 60s;

inline program_result_t analyse(texts_t const& arguments, std::string const& input = "") {
    return run_program(analyse_binary, arguments, {.input = input});
}

/// What it prints; a failure when it does not end well.
inline std::string output_of(texts_t const& arguments, std::string const& input = "") {
    program_result_t const result = analyse(arguments, input);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.signal, 0);
    return result.output;
}

inline void expect_error(texts_t const& arguments, int status, std::string const& text,
                         std::string const& input = "") {
    program_result_t const result = analyse(arguments, input);
    EXPECT_EQ(result.status, status) << text;
    EXPECT_EQ(result.output, "") << text;
    EXPECT_TRUE(result.errors.starts_with("orvelin-analyse: ")) << result.errors;
    EXPECT_NE(result.errors.find(text), std::string::npos) << result.errors << "not: " << text;
}

inline std::size_t lines_in(std::string const& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

/// So many positions, a line each.
inline std::string positions(int count) {
    std::string text;
    texts_t const kinds = {positions::start, positions::kiwipete, positions::rook_ending,
                           positions::quiet_middle_game, positions::promotions};
    for (int i = 0; i < count; ++i) {
        text += kinds[static_cast<std::size_t>(i) % kinds.size()] + '\n';
    }
    return text;
}

/// Reads what the child writes until there are so many lines, or nothing comes any more.
inline std::string read_lines(int descriptor, std::size_t wanted) {
    std::string text;
    read_buffer_t buffer;
    pollfd asked = {descriptor, POLLIN, 0};
    while (lines_in(text) < wanted && ::poll(&asked, 1, static_cast<int>(patience.count())) > 0) {
        std::size_t const count = read_some(descriptor, buffer);
        if (count == 0) {
            break;
        }
        text.append(buffer.data(), count);
    }
    return text;
}

inline std::string read_all(int descriptor) {
    return read_lines(descriptor, std::string::npos);
}

inline std::uint64_t size_of(std::string const& name) {
    std::error_code error;
    auto const size = std::filesystem::file_size(name, error);
    return error ? 0 : size;
}

/// Waits until the file has grown beyond a size, or the child has ended.
inline void wait_for_growth(ChildProcess& child, std::string const& name, std::uint64_t size) {
    auto const end = std::chrono::steady_clock::now() + patience;
    while (size_of(name) <= size && !child.wait(1ms) && std::chrono::steady_clock::now() < end) {
    }
}

/// Runs of orvelin-analyse in a directory of their own.
class AnalyseProcess : public testing::Test {
 protected:
    std::string input(int count) {
        std::string const name = directory_.file("in.fen");
        put_bytes(name, positions(count));
        return name;
    }

    TemporaryDirectory directory_;
    std::string out_ = directory_.file("out.jsonl");
};

}  // namespace orvelin::test::analysis
