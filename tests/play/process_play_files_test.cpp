// The files that options name, and an output that takes nothing.

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "book/bk_move.h"
#include "play/play_process.h"
#include "support/book_file.h"
#include "support/installed_book.h"
#include "support/program.h"
#include "support/temporary_directory.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::book_bytes;
using orvelin::test::book_entry;
using orvelin::test::book_in_the_way;
using orvelin::test::BookFile;
using orvelin::test::installed_book_in_sight;
using orvelin::test::TemporaryDirectory;
using texts_t = std::vector<std::string>;

/// The published key of the start position, and e2e4.
constexpr std::uint64_t start_key = 0x463b96181691fc9c;
constexpr int e2e4 = 12 << 6 | 28;

std::string book_option(std::string const& name) {
    return "setoption name Book File value " + name;
}

TEST(ProcessPlayFiles, ABookMoveIsToldAsOneWithoutAScore) {
    BookFile const book({book_entry(start_key, e2e4, 1)});
    PlayProcess process;
    // Whichever of the two comes first.
    EXPECT_EQ(process.told({"setoption name OwnBook value true", book_option(book.name())}),
              texts_t{});
    EXPECT_EQ(process.ask("go depth 3"), (texts_t{"info string book move", "bestmove e2e4"}));
}

TEST(ProcessPlayFiles, AMissingBookIsToldOnceAndWhenItIsWanted) {
    ASSERT_FALSE(installed_book_in_sight()) << book_in_the_way;
    TemporaryDirectory const directory;
    PlayProcess process(directory.path());
    process.set_option("OwnBook", "true");
    process.send("position startpos moves e2e4");
    std::string const missing = "info string no book is installed, moves are searched";
    EXPECT_TRUE(process.told({}).empty());
    EXPECT_EQ(process.ask("go depth 1").at(0), missing);
    EXPECT_NE(process.ask("go depth 1").at(0), missing);
}

TEST(ProcessPlayFiles, MessagesNameTheFile) {
    PlayProcess process;
    EXPECT_EQ(process.told({book_option("/nowhere/at all.bin")}),
              texts_t{"info string the book file cannot be opened: \"/nowhere/at all.bin\""});
    EXPECT_EQ(process.told({"setoption name Log File value /nowhere/at all.log"}),
              texts_t{"info string the log file cannot be opened: \"/nowhere/at all.log\""});
}

TEST(ProcessPlayFiles, AFileThatIsNoBookIsToldAndNotUsed) {
    BookFile const text(std::string("1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 4. Ba4 Nf6 5. O-O"));
    PlayProcess process;
    std::string const refused =
        "info string the book file is not used, it is no book in the Polyglot format: \"" +
        text.name() + '"';
    EXPECT_EQ(process.told({book_option(text.name())}), texts_t{refused});
    BookFile const cut(book_bytes({book_entry(start_key, e2e4, 1)}) + "abc");
    EXPECT_EQ(process.told({"setoption name OwnBook value true", book_option(cut.name())}),
              (texts_t{refused, "info string the book file has 3 bytes behind its last entry: \"" +
                                    cut.name() + '"'}));
    EXPECT_EQ(best_move(process.ask("go depth 3")), "e2e4");
}

TEST(ProcessPlayFiles, AnOutputThatTakesNothingIsTold) {
    using orvelin::test::run_program;
    std::string const& binary = orvelin::test::play_binary;
    for (std::string const command : {"\"$0\" --help", "\"$0\" --version", "\"$0\" perft 2",
                                      "\"$0\" bench 1", "echo uci | \"$0\""}) {
        EXPECT_EQ(run_program("/bin/sh", {"-c", command + " > /dev/full", binary}).status, 1)
            << command;
        EXPECT_EQ(run_program("/bin/sh", {"-c", command + " > /dev/null", binary}).status, 0)
            << command;
    }
}

}  // namespace

}  // namespace orvelin::play::test
