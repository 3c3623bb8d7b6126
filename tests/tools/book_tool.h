#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/temporary_directory.h"
#include "support/test_config.h"

namespace orvelin::test {

using texts_t = std::vector<std::string>;

/// Runs orvelin-book.
inline program_result_t book_tool(texts_t const& arguments, std::string const& input = "") {
    return run_program(book_binary, arguments, {.input = input});
}

inline texts_t split_lines(std::string const& text) {
    texts_t lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// The lines that the tool prints; a failure when it does not end well.
inline texts_t lines_of(texts_t const& arguments, std::string const& input = "") {
    program_result_t const result = book_tool(arguments, input);
    EXPECT_EQ(result.status, 0) << result.output << result.errors;
    EXPECT_EQ(result.signal, 0);
    return split_lines(result.output);
}

inline texts_t sorted(texts_t lines) {
    std::sort(lines.begin(), lines.end());
    return lines;
}

/// The tool ends with this exit code, prints nothing and tells the error by its own name.
inline void expect_error(texts_t const& arguments, int status, std::string const& text,
                         std::string const& input = "") {
    program_result_t const result = book_tool(arguments, input);
    EXPECT_EQ(result.status, status) << text;
    EXPECT_EQ(result.signal, 0) << text;
    EXPECT_EQ(result.output, "") << text;
    EXPECT_TRUE(result.errors.starts_with("orvelin-book: ")) << result.errors;
    EXPECT_NE(result.errors.find(text), std::string::npos) << result.errors << "not: " << text;
}

/// The bytes of a file; a failure when it cannot be read.
inline std::string read_bytes(std::string const& name) {
    std::ifstream file(name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void write_bytes(std::string const& name, std::string const& bytes) {
    std::ofstream file(name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(file.flush()) << name;
}

/// The names of all files in a directory, sorted.
inline texts_t file_names(TemporaryDirectory const& directory) {
    texts_t names;
    for (auto const& file : std::filesystem::directory_iterator(directory.path())) {
        names.push_back(file.path().filename().string());
    }
    return sorted(names);
}

/// The word of a move in a book by its squares, a1 is 0.
inline int move_word(int from, int to, int promotion = 0) {
    return promotion << 12 | from << 6 | to;
}

inline int const e2e4 = move_word(12, 28);
inline int const d2d4 = move_word(11, 27);

/// Key of the start position of standard chess.
inline constexpr std::uint64_t start_key = 0x463B96181691FC9CU;

}  // namespace orvelin::test
