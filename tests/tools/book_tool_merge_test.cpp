// orvelin-book merge, and how a book is put in its place.

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "book/book_record.h"
#include "support/book_file.h"
#include "support/program.h"
#include "support/temporary_directory.h"
#include "tools/book_tool.h"

namespace orvelin::test {

namespace {

int const g1f3 = move_word(6, 21);

using entries_t = std::vector<Book_record>;

/// The lines that print shows of the books merged into one.
texts_t merged(std::vector<entries_t> const& books) {
    TemporaryDirectory const directory;
    texts_t arguments{"merge"};
    for (entries_t const& entries : books) {
        arguments.push_back(directory.file("book" + std::to_string(arguments.size())));
        write_bytes(arguments.back(), book_bytes(entries));
    }
    std::string const output = directory.file("merged.bin");
    arguments.insert(arguments.end(), {"-o", output});
    EXPECT_EQ(lines_of(arguments).size(), 1U);
    EXPECT_EQ(file_names(directory).size(), books.size() + 1);
    return lines_of({"print", output});
}

/// The first book is refused, and a good one at the target's place stays as it was.
void expect_refused(std::string const& bytes, std::string const& message) {
    BookFile const damaged(bytes);
    BookFile const good(entries_t{book_entry(1, e2e4, 1)});
    TemporaryDirectory const directory;
    std::string const output = directory.file("merged.bin");
    write_bytes(output, "good");
    expect_error({"merge", damaged.name(), good.name(), "-o", output}, 1, damaged.name() + message);
    expect_error({"merge", good.name(), damaged.name(), "-o", output}, 1, damaged.name() + message);
    EXPECT_EQ(read_bytes(output), "good");
    EXPECT_EQ(file_names(directory), texts_t{"merged.bin"});
}

Book_record learnt(Book_record entry, unsigned int learn) {
    entry.set_learn(learn);
    return entry;
}

}  // namespace

TEST(BookToolMerge, HoldsTheEntriesOfAllBooksSorted) {
    EXPECT_EQ(merged({{book_entry(2, e2e4, 1), book_entry(9, e2e4, 1)},
                      {book_entry(1, d2d4, 2), book_entry(9, d2d4, 5)},
                      {book_entry(1ULL << 63, g1f3, 3), book_entry(9, g1f3, 3)}}),
              (texts_t{"0000000000000001 d2d4 2 0", "0000000000000002 e2e4 1 0",
                       "0000000000000009 d2d4 5 0", "0000000000000009 g1f3 3 0",
                       "0000000000000009 e2e4 1 0", "8000000000000000 g1f3 3 0"}));
}

TEST(BookToolMerge, AddsUpTheSameMoveOfTheSameKey) {
    EXPECT_EQ(merged({{book_entry(1, e2e4, 10), book_entry(1, d2d4, 15)},
                      {book_entry(1, e2e4, 20), book_entry(2, e2e4, 40)}}),
              (texts_t{"0000000000000001 e2e4 30 0", "0000000000000001 d2d4 15 0",
                       "0000000000000002 e2e4 40 0"}));
    // Within one book too.
    EXPECT_EQ(merged({{book_entry(1, e2e4, 10), book_entry(1, e2e4, 5)}, {}}),
              texts_t{"0000000000000001 e2e4 15 0"});
}

TEST(BookToolMerge, PromotionsOfOnePawnAreDifferentMoves) {
    EXPECT_EQ(merged({{book_entry(1, move_word(52, 60, 4), 1)},
                      {book_entry(1, move_word(52, 60, 1), 1)}}),
              (texts_t{"0000000000000001 e7e8n 1 0", "0000000000000001 e7e8q 1 0"}));
}

TEST(BookToolMerge, ScalesSumsThatAreTooLarge) {
    EXPECT_EQ(merged({{book_entry(1, e2e4, 65535), book_entry(1, g1f3, 0), book_entry(2, e2e4, 3)},
                      {book_entry(1, e2e4, 65535), book_entry(1, d2d4, 1)}}),
              (texts_t{"0000000000000001 e2e4 65535 0", "0000000000000001 d2d4 1 0",
                       "0000000000000001 g1f3 0 0", "0000000000000002 e2e4 3 0"}));
}

TEST(BookToolMerge, KeepsWhatTheFirstBookHasLearnt) {
    EXPECT_EQ(merged({{learnt(book_entry(1, e2e4, 1), 7), book_entry(2, e2e4, 1)},
                      {learnt(book_entry(1, e2e4, 1), 8), learnt(book_entry(2, e2e4, 1), 9),
                       learnt(book_entry(3, e2e4, 1), 4294967295U)}}),
              (texts_t{"0000000000000001 e2e4 2 7", "0000000000000002 e2e4 2 0",
                       "0000000000000003 e2e4 1 4294967295"}));
}

TEST(BookToolMerge, SortsABookThatIsNotSorted) {
    EXPECT_EQ(merged({{book_entry(5, e2e4, 1), book_entry(1, e2e4, 1), book_entry(5, e2e4, 1)},
                      {book_entry(4, e2e4, 1), book_entry(3, e2e4, 1)}}),
              (texts_t{"0000000000000001 e2e4 1 0", "0000000000000003 e2e4 1 0",
                       "0000000000000004 e2e4 1 0", "0000000000000005 e2e4 2 0"}));
}

TEST(BookToolMerge, EmptyBooksAddNothing) {
    EXPECT_EQ(merged({{}, {book_entry(1, e2e4, 1)}}), texts_t{"0000000000000001 e2e4 1 0"});
    EXPECT_EQ(merged({{}, {}}), texts_t{});
}

TEST(BookToolMerge, TellsHowLargeTheBookIs) {
    BookFile const first(entries_t{book_entry(1, e2e4, 1), book_entry(1, d2d4, 1)});
    BookFile const second(entries_t{book_entry(1, e2e4, 1), book_entry(2, d2d4, 1)});
    TemporaryDirectory const directory;
    std::string const output = directory.file("merged.bin");
    EXPECT_EQ(lines_of({"merge", first.name(), second.name(), "-o", output}),
              texts_t{output + ": 3 entries, 2 positions"});
}

TEST(BookToolMerge, RefusesStrayBytesAndNamesTheFile) {
    std::string const bytes = book_bytes({book_entry(1, e2e4, 1), book_entry(2, e2e4, 1)});
    expect_refused(bytes + '\n', " is damaged: 1 stray byte at the end");
    expect_refused(bytes.substr(0, 31), " is damaged: 15 stray bytes at the end");
    expect_refused("x", " is damaged: 1 stray byte at the end");
}

TEST(BookToolMerge, RefusesUnknownPromotions) {
    expect_refused(book_bytes({book_entry(1, e2e4, 1), book_entry(2, move_word(52, 60, 5), 1)}),
                   " is damaged: unknown promotion in entry 2");
    expect_refused(book_bytes({book_entry(1, 0x8000 | e2e4, 1)}),
                   " is damaged: unknown promotion in entry 1");
}

TEST(BookToolMerge, RefusesBooksThatCannotBeRead) {
    BookFile const good(entries_t{book_entry(1, e2e4, 1)});
    TemporaryDirectory const directory;
    std::string const folder = directory.path().string();
    std::string const missing = directory.file("missing.bin");
    std::string const output = directory.file("merged.bin");
    expect_error({"merge", good.name(), missing, "-o", output}, 1,
                 "cannot read " + missing + ": No such file or directory");
    expect_error({"merge", folder, good.name(), "-o", output}, 1,
                 "cannot read " + folder + ": not a regular file");
    EXPECT_EQ(file_names(directory), texts_t{});
}

TEST(BookToolMerge, RefusesBadArguments) {
    BookFile const good(entries_t{book_entry(1, e2e4, 1)});
    expect_error({"merge"}, 2, "BOOKS is required");
    expect_error({"merge", good.name(), "-o", good.name()}, 2, "BOOKS");
    expect_error({"merge", good.name(), good.name()}, 2, "--output is required");
    expect_error({"merge", good.name(), good.name(), "-o"}, 2, "--output");
}

TEST(BookToolMerge, TargetMayBeOneOfTheBooks) {
    BookFile const first(entries_t{book_entry(1, e2e4, 1)});
    BookFile const second(entries_t{book_entry(2, d2d4, 1)});
    lines_of({"merge", first.name(), second.name(), "-o", first.name()});
    EXPECT_EQ(read_bytes(first.name()),
              book_bytes({book_entry(1, e2e4, 1), book_entry(2, d2d4, 1)}));
}

TEST(BookToolMerge, TargetsThatCannotBeWrittenAreErrorsAndStayAsTheyWere) {
    BookFile const good(entries_t{book_entry(1, e2e4, 1)});
    TemporaryDirectory const directory;
    std::string const folder = directory.path().string();
    std::string const nowhere = directory.file("nowhere/merged.bin");
    for (texts_t const& command :
         {texts_t{"merge", good.name(), good.name(), "-o"}, texts_t{"make", "-", "-o"}}) {
        auto const expect_refusal = [&](std::string const& target, std::string const& reason) {
            texts_t arguments = command;
            arguments.push_back(target);
            expect_error(arguments, 1, "cannot write " + target + ": " + reason, "e2e4\n");
        };
        expect_refusal(nowhere, "No such file or directory");
        expect_refusal(folder, "not a regular file");
        expect_refusal("/proc/self/maps/x", "");
        expect_refusal("/proc/orvelin.bin", "");
        expect_refusal("/dev/null", "not a regular file");
    }
    EXPECT_EQ(file_names(directory), texts_t{});
}

TEST(BookToolMerge, ReadOnlyTargetIsRefusedOrKeepsItsMode) {
    BookFile const good(entries_t{book_entry(1, e2e4, 1)});
    TemporaryDirectory const directory;
    std::string const target = directory.file("merged.bin");
    write_bytes(target, "good");
    chmod(target.c_str(), 0444);
    // Who may write everything may write this too.
    bool const writable = access(target.c_str(), W_OK) == 0;
    program_result_t const result = book_tool({"merge", good.name(), good.name(), "-o", target});
    EXPECT_EQ(result.status, writable ? 0 : 1);
    EXPECT_EQ(read_bytes(target), writable ? book_bytes({book_entry(1, e2e4, 2)}) : "good");
    EXPECT_EQ(std::filesystem::status(target).permissions(), std::filesystem::perms{0444});
    EXPECT_EQ(file_names(directory), texts_t{"merged.bin"});
}

}  // namespace orvelin::test
