#include "support/program.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "support/temporary_directory.h"

namespace orvelin::test {

TEST(RunProgram, gives_both_outputs_and_the_status) {
    program_result_t const result =
        run_program("/bin/sh", {"-c", "echo \"$1\"; echo \"$2\" >&2; exit 5", "sh", "a b", ""});
    EXPECT_EQ(result.output, "a b\n");
    EXPECT_EQ(result.errors, "\n");
    EXPECT_EQ(result.status, 5);
    EXPECT_EQ(result.signal, 0);
}

TEST(RunProgram, gives_the_signal_that_ended_it) {
    EXPECT_EQ(run_program("/bin/sh", {"-c", "kill -TERM $$"}).signal, SIGTERM);
}

TEST(RunProgram, passes_more_text_than_a_pipe_holds) {
    std::string const text(1'000'000, 'x');
    EXPECT_EQ(run_program("/bin/cat", {}, {.input = text}).output, text);
}

TEST(RunProgram, closes_an_empty_input) {
    EXPECT_EQ(run_program("/bin/cat", {}).output, "");
}

TEST(RunProgram, a_program_that_does_not_read_its_input_is_no_error) {
    std::string const text(1'000'000, 'x');
    EXPECT_EQ(run_program("/bin/sh", {"-c", "echo done"}, {.input = text}).output, "done\n");
}

TEST(RunProgram, runs_in_the_given_directory) {
    TemporaryDirectory const directory;
    std::string const output =
        run_program("/bin/sh", {"-c", "pwd -P"}, {.directory = directory.path()}).output;
    EXPECT_EQ(output, std::filesystem::canonical(directory.path()).string() + "\n");
}

TEST(RunProgram, fails_when_it_cannot_start) {
    EXPECT_THROW(run_program("/none/program", {}), std::runtime_error);
    EXPECT_THROW(run_program("/bin/cat", {}, {.directory = "/none"}), std::runtime_error);
}

TEST(RunProgram, fails_when_the_program_takes_too_long) {
    EXPECT_THROW(run_program("/bin/sh", {"-c", "exec sleep 100"}, {.timeout = milliseconds(50)}),
                 std::runtime_error);
}

TEST(TemporaryDirectory, goes_with_its_contents) {
    std::filesystem::path path;
    {
        TemporaryDirectory const directory;
        TemporaryDirectory const other;
        path = directory.path();
        EXPECT_NE(path, other.path());
        EXPECT_TRUE(std::filesystem::create_directories(directory.file("a/b")));
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace orvelin::test
