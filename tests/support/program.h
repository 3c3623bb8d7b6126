#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/child_process.h"

namespace orvelin::test {

/// How run_program() runs a program.
struct program_options_t {
    /// What stands on standard input.
    std::string input{};
    /// Where the program runs; empty stands for this process's own directory.
    std::filesystem::path directory{};
    /// Wide enough for a sanitizer build on a busy machine.
    milliseconds timeout{60000};
};

/// What a program left behind.
struct program_result_t {
    /// Exit status, when `signal` is 0.
    int status = 0;
    /// The signal that ended the program, or 0.
    int signal = 0;
    std::string output;
    std::string errors;
};

/// Runs a program to its end. The path of the binary must be absolute. A program that does not
/// read its input is no error.
/// @throws std::runtime_error when it cannot be started or does not end in time.
program_result_t run_program(std::string const& binary, std::vector<std::string> const& arguments,
                             program_options_t const& options = {});

}  // namespace orvelin::test
