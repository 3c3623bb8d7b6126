#pragma once

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

/// Runs orvelin-tables, with a fresh directory for its files.
class TablesToolTest : public testing::Test {
 protected:
    using lines_t = std::vector<std::string>;

    static program_result_t run(lines_t const& arguments) {
        // Building a table takes long under sanitizers.
        return run_program(tables_binary, arguments, {.timeout = milliseconds(300000)});
    }

    /// What the tool prints; a failure when it does not end well.
    static std::string output_of(lines_t const& arguments) {
        program_result_t const result = run(arguments);
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(result.signal, 0);
        return result.output;
    }

    static lines_t lines_of(std::string const& text) {
        lines_t lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    /// The tool ends with the status, prints nothing and tells this text on standard error.
    static void expect_error(lines_t const& arguments, int status, std::string const& text) {
        program_result_t const result = run(arguments);
        EXPECT_EQ(result.status, status) << text;
        EXPECT_EQ(result.signal, 0) << text;
        EXPECT_EQ(result.output, "") << text;
        EXPECT_NE(result.errors.find(text), std::string::npos) << result.errors;
    }

    static std::string content(std::string const& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    std::string path(std::string const& name) const { return directory_.file(name); }

    TemporaryDirectory directory_;
};

}  // namespace orvelin::test
