// The subcommands of orvelin-book that read: look and print, and what all of them share.

#include "tools/book_tool.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "book/book_record.h"
#include "support/book_file.h"
#include "support/program.h"
#include "support/temporary_directory.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

int const g1f3 = move_word(6, 21);
int const e2e5 = move_word(12, 36);

/// Three moves of the start position between other keys.
std::vector<Book_record> good_entries() {
    return {book_entry(1, e2e4, 5), book_entry(start_key, e2e4, 40), book_entry(start_key, d2d4, 2),
            book_entry(start_key, g1f3, 18), book_entry(start_key + 1, move_word(52, 60, 4), 1)};
}

Book_record learnt(Book_record entry, std::uint32_t learn) {
    entry.set_learn(learn);
    return entry;
}

}  // namespace

TEST(BookTool, LookListsMovesWeightsAndPercentagesInTheOrderOfTheFile) {
    BookFile const book(good_entries());
    EXPECT_EQ(lines_of({"look", book.name()}), (texts_t{"e2e4     40  66.7%",  //
                                                        "d2d4      2   3.3%",  //
                                                        "g1f3     18  30.0%"}));
}

TEST(BookTool, LookFindsThePositionOfAFen) {
    BookFile const book({book_entry(0x823C9B50FD114196U, move_word(52, 36), 3)});
    EXPECT_EQ(lines_of({"look", book.name(), "--fen",
                        "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"}),
              texts_t{"e7e5      3 100.0%"});
}

TEST(BookTool, LookMarksMovesThatAreIllegalInThePosition) {
    // The king's own move is no castling in a book.
    BookFile const book({book_entry(start_key, e2e5, 1), book_entry(start_key, e2e4, 1),
                         book_entry(start_key, move_word(12, 28, 4), 1),
                         book_entry(start_key, 0, 1), book_entry(start_key, move_word(4, 6), 0),
                         book_entry(start_key, 0xF000, 0)});
    EXPECT_EQ(lines_of({"look", book.name()}),
              (texts_t{"e2e5      1  25.0%  illegal", "e2e4      1  25.0%",
                       "e2e4q     1  25.0%  illegal", "0000      1  25.0%  illegal",
                       "e1g1      0   0.0%  illegal", "0000      0   0.0%  illegal"}));
}

TEST(BookTool, LookWritesCastlingAsTheInterfaceWantsIt) {
    // King e1, rook h1, both sides may castle.
    BookFile const book({book_entry(0x99E48752953716C1U, move_word(4, 7), 1)});
    std::string const fen = "r1bqkbnr/1ppp1ppp/p1n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 0 4";
    EXPECT_EQ(lines_of({"look", book.name(), "--fen", fen}), texts_t{"e1g1      1 100.0%"});
    EXPECT_EQ(lines_of({"look", book.name(), "--chess960", "--fen", fen}),
              texts_t{"e1h1      1 100.0%"});
}

TEST(BookTool, LookWarnsWhenNoMoveHasWeight) {
    BookFile const book({book_entry(start_key, e2e4, 0), book_entry(start_key, d2d4, 0)});
    program_result_t const result = book_tool({"look", book.name()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "e2e4      0   0.0%\nd2d4      0   0.0%\n");
    EXPECT_EQ(result.errors, "warning: all weights are 0, the engine plays none of these moves\n");
}

TEST(BookTool, LookFailsWhenThereIsNoMove) {
    for (std::vector<Book_record> const& entries :
         {std::vector<Book_record>{}, {book_entry(start_key + 1, e2e4, 1)}}) {
        BookFile const book(entries);
        expect_error({"look", book.name()}, 1, book.name() + " has no move for the position");
    }
}

TEST(BookTool, LookUsesWholeEntriesOnlyAndSaysSo) {
    std::string const bytes = book_bytes(good_entries());
    for (std::size_t const size : {33U, 47U}) {
        BookFile const book(bytes.substr(0, size));
        program_result_t const result = book_tool({"look", book.name()});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output, "e2e4     40 100.0%\n");
        EXPECT_EQ(result.errors, "warning: " + book.name() + " ends in " +
                                     std::to_string(size - 32) +
                                     " stray bytes, which are ignored\n");
    }
}

TEST(BookTool, PrintHasALineForEachEntry) {
    // A key of few digits, a promotion of each kind, castling, no move, unknown promotions.
    BookFile const book(
        {learnt(book_entry(1, e2e4, 65535), 4294967295U), book_entry(2, move_word(52, 60, 1), 1),
         book_entry(2, move_word(52, 60, 2), 2), book_entry(2, move_word(52, 60, 3), 3),
         book_entry(2, move_word(52, 60, 4), 4), book_entry(3, move_word(4, 7), 0),
         book_entry(4, 0, 7), book_entry(5, move_word(52, 60, 5), 8),
         book_entry(5, 0x8000 | e2e4, 9), book_entry(~std::uint64_t{0}, d2d4, 10)});
    EXPECT_EQ(lines_of({"print", book.name()}),
              (texts_t{"0000000000000001 e2e4 65535 4294967295", "0000000000000002 e7e8n 1 0",
                       "0000000000000002 e7e8b 2 0", "0000000000000002 e7e8r 3 0",
                       "0000000000000002 e7e8q 4 0", "0000000000000003 e1h1 0 0",
                       "0000000000000004 0000 7 0", "0000000000000005 e7e8? 8 0",
                       "0000000000000005 e2e4? 9 0", "ffffffffffffffff d2d4 10 0"}));
}

TEST(BookTool, PrintOfOneKeyFindsItEvenInABookThatIsNotSorted) {
    BookFile const book({book_entry(9, e2e4, 1), book_entry(3, e2e4, 2), book_entry(0xAB, g1f3, 3),
                         book_entry(3, d2d4, 4)});
    texts_t const lines{"0000000000000003 e2e4 2 0", "0000000000000003 d2d4 4 0"};
    for (char const* key : {"3", "0x3", "0000000000000003"}) {
        EXPECT_EQ(lines_of({"print", book.name(), "--key", key}), lines) << key;
    }
    for (char const* key : {"ab", "AB", "0xAb"}) {
        EXPECT_EQ(lines_of({"print", book.name(), "--key", key}),
                  texts_t{"00000000000000ab g1f3 3 0"});
    }
    expect_error({"print", book.name(), "--key", "4"}, 1,
                 book.name() + " has no entry of the key 0000000000000004");
}

TEST(BookTool, PrintRefusesAKeyThatIsNone) {
    BookFile const book(good_entries());
    for (char const* key : {"0x", "g", "3 ", "-3", "+3", "10000000000000000"}) {
        expect_error({"print", book.name(), std::string("--key=") + key}, 2,
                     "the key is not a hexadecimal number of 64 bits: ");
    }
}

TEST(BookTool, PrintOfAnEmptyBookPrintsNothing) {
    EXPECT_EQ(lines_of({"print", BookFile(std::string{}).name()}), texts_t{});
}

TEST(BookTool, PrintStopsWhenItsOutputCannotBeWritten) {
    BookFile const book(good_entries());
    program_result_t const result = run_program(
        "/bin/sh", {"-c", "exec \"$0\" print \"$1\" >/dev/full", book_binary, book.name()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "orvelin-book: cannot write to standard output\n");
}

TEST(BookTool, FilesThatCannotBeReadAreErrors) {
    TemporaryDirectory const directory;
    std::string const missing = directory.file("missing.bin");
    std::string const folder = directory.path().string();
    BookFile const book(good_entries());
    for (char const* command : {"look", "print", "verify"}) {
        expect_error({command, missing}, 1,
                     "cannot read " + missing + ": No such file or directory");
        expect_error({command, folder}, 1, "cannot read " + folder + ": not a regular file");
        expect_error({command, book.name() + "/x"}, 1, "Not a directory");
        expect_error({command, ""}, 1, "cannot read : No such file or directory");
    }
}

TEST(BookTool, BookInAnUnreadableFolderIsAnErrorUnlessOneMayReadEverything) {
    TemporaryDirectory const directory;
    std::filesystem::path const folder = directory.path() / "closed";
    std::filesystem::create_directory(folder);
    std::string const book = (folder / "book.bin").string();
    write_bytes(book, book_bytes(good_entries()));
    std::filesystem::permissions(folder, std::filesystem::perms::none);
    bool const readable = access(book.c_str(), R_OK) == 0;
    program_result_t const result = book_tool({"verify", book});
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    EXPECT_EQ(result.status, readable ? 0 : 1);
    EXPECT_EQ(result.errors,
              readable ? "" : "orvelin-book: cannot read " + book + ": Permission denied\n");
}

TEST(BookTool, RubbishOfAnyLengthIsSurvived) {
    std::string bytes;
    std::uint32_t state = 1;
    for (std::size_t size = 0; size <= 80; size += short_tests ? 23 : 5) {
        while (bytes.size() < size) {
            bytes += static_cast<char>((state = state * 69069 + 1) >> 24);
        }
        BookFile const book(bytes);
        for (char const* command : {"look", "print", "verify"}) {
            program_result_t const result = book_tool({command, book.name()});
            EXPECT_EQ(result.signal, 0) << command << " " << size;
            EXPECT_LE(result.status, 1) << command << " " << size;
        }
    }
}

TEST(BookTool, HelpOfEachSubcommandNamesItsArgumentsAndEndsWell) {
    std::vector<texts_t> const expected{
        {"look", "BOOK", "--fen", "--chess960"},
        {"print", "BOOK", "--key"},
        {"verify", "BOOK"},
        {"merge", "BOOKS", "--output"},
        {"make", "LINES", "--output", "--max-ply", "--min-count", "--fen"}};
    texts_t const all = lines_of({"--help"});
    for (texts_t const& words : expected) {
        EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&](std::string const& line) {
            return line.starts_with("  " + words[0] + " ");
        })) << words[0];
        program_result_t const result = book_tool({words[0], "--help"});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.errors, "");
        for (std::string const& word : words) {
            EXPECT_NE(result.output.find(word), std::string::npos) << words[0] << " " << word;
        }
    }
}

TEST(BookTool, RefusesBadArguments) {
    BookFile const book(good_entries());
    expect_error({}, 2, "A subcommand is required");
    expect_error({"burn"}, 2, "A subcommand is required");
    expect_error({"look"}, 2, "BOOK is required");
    expect_error({"look", book.name(), "more"}, 2, "more");
    expect_error({"look", book.name(), "--fen"}, 2, "--fen");
    expect_error({"look", book.name(), "--fen", "8/8 w"}, 2, "bad FEN: ");
    expect_error({"print"}, 2, "BOOK is required");
    expect_error({"verify"}, 2, "BOOK is required");
    expect_error({"verify", book.name(), "--fen", "x"}, 2, "--fen");
}

}  // namespace orvelin::test
