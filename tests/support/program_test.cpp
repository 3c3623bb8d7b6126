#include "support/program.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "support/temporary_directory.h"

namespace orvelin::test {

TEST(RunProgram, GivesBothOutputsAndTheStatus) {
    program_result_t const result =
        run_program("/bin/sh", {"-c", "echo \"$1\"; echo \"$2\" >&2; exit 5", "sh", "a b", ""});
    EXPECT_EQ(result.output, "a b\n");
    EXPECT_EQ(result.errors, "\n");
    EXPECT_EQ(result.status, 5);
    EXPECT_EQ(result.signal, 0);
}

TEST(RunProgram, GivesTheSignalThatEndedIt) {
    EXPECT_EQ(run_program("/bin/sh", {"-c", "kill -TERM $$"}).signal, SIGTERM);
}

TEST(RunProgram, PassesMoreTextThanAPipeHolds) {
    std::string const text(1'000'000, 'x');
    EXPECT_EQ(run_program("/bin/cat", {}, {.input = text}).output, text);
}

TEST(RunProgram, ClosesAnEmptyInput) {
    EXPECT_EQ(run_program("/bin/cat", {}).output, "");
}

TEST(RunProgram, AProgramThatDoesNotReadItsInputIsNoError) {
    std::string const text(1'000'000, 'x');
    EXPECT_EQ(run_program("/bin/sh", {"-c", "echo done"}, {.input = text}).output, "done\n");
}

TEST(RunProgram, RunsInTheGivenDirectory) {
    TemporaryDirectory const directory;
    std::string const output =
        run_program("/bin/sh", {"-c", "pwd -P"}, {.directory = directory.path()}).output;
    EXPECT_EQ(output, std::filesystem::canonical(directory.path()).string() + "\n");
}

TEST(RunProgram, FailsWhenItCannotStart) {
    EXPECT_THROW(run_program("/none/program", {}), std::runtime_error);
    EXPECT_THROW(run_program("/bin/cat", {}, {.directory = "/none"}), std::runtime_error);
}

TEST(RunProgram, FailsWhenTheProgramTakesTooLong) {
    EXPECT_THROW(run_program("/bin/sh", {"-c", "exec sleep 100"}, {.timeout = milliseconds(50)}),
                 std::runtime_error);
}

TEST(TemporaryDirectory, GoesWithItsContents) {
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
