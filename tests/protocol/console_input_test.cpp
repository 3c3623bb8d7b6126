#include "protocol/console_input.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "protocol/communicator.h"

namespace orvelin {
namespace {

/// What the reader forwards of an input.
std::vector<std::string> forwarded(std::string const& text, int limit) {
    Communicator communicator;
    std::istringstream input(text);
    ConsoleInput console_input(communicator, input, limit);
    console_input();
    std::vector<std::string> lines;
    for (std::string line = communicator.from_interface(); !line.empty();
         line = communicator.from_interface()) {
        lines.push_back(line);
    }
    return lines;
}

using lines_t = std::vector<std::string>;

TEST(ConsoleInputTest, LinesAreForwardedInOrderUpToQuit) {
    EXPECT_EQ(forwarded("uci\nisready\nquit\n", 100), (lines_t{"uci", "isready", "quit"}));
}

TEST(ConsoleInputTest, NothingIsReadBehindQuit) {
    Communicator communicator;
    std::istringstream input("quit\nisready\n");
    ConsoleInput console_input(communicator, input, 100);
    console_input();
    std::string rest;
    std::getline(input, rest);
    EXPECT_EQ(rest, "isready");
}

TEST(ConsoleInputTest, AnEmptyLineIsNotForwardedButCounts) {
    EXPECT_EQ(forwarded("\n\n\nuci\n", 4), (lines_t{"uci", "quit"}));
    EXPECT_EQ(forwarded("\n\n\nuci\n", 3), (lines_t{"quit"}));
}

TEST(ConsoleInputTest, TheReadThatPassesTheLimitIsReplacedByQuit) {
    EXPECT_EQ(forwarded("one\ntwo\nthree\n", 2), (lines_t{"one", "two", "quit"}));
}

TEST(ConsoleInputTest, EndOfInputSpinsToTheLimitAndSaysQuit) {
    EXPECT_EQ(forwarded("isready\n", 100000), (lines_t{"isready", "quit"}));
    EXPECT_EQ(forwarded("", 0), (lines_t{"quit"}));
}

TEST(ConsoleInputTest, ALastLineWithoutNewlineIsForwarded) {
    EXPECT_EQ(forwarded("uci\nisready", 100), (lines_t{"uci", "isready", "quit"}));
}

TEST(ConsoleInputTest, QuitWithATrailingBlankEndsNothing) {
    EXPECT_EQ(forwarded("quit \nisready\nquit\n", 100), (lines_t{"quit ", "isready", "quit"}));
}

TEST(ConsoleInputTest, BlanksAloneAreForwarded) {
    EXPECT_EQ(forwarded("  \nquit\n", 100), (lines_t{"  ", "quit"}));
}

TEST(ConsoleInputTest, TheLimitIsTwoThousandMillionReads) {
    EXPECT_EQ(ConsoleInput::default_limit, 2000000000);
}

}  // namespace
}  // namespace orvelin
