// orvelin-book verify.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "book/book_record.h"
#include "support/book_file.h"
#include "support/program.h"
#include "tools/book_tool.h"

namespace orvelin::test {

namespace {

std::vector<Book_record> sorted_entries() {
    return {book_entry(1, e2e4, 5), book_entry(2, e2e4, 40), book_entry(2, d2d4, 2),
            book_entry(2, move_word(6, 21), 0), book_entry(3, move_word(52, 60, 4), 1)};
}

/// What verify says of a faulty book.
texts_t faults_of(BookFile const& book) {
    program_result_t const result = book_tool({"verify", book.name()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "");
    return split_lines(result.output);
}

}  // namespace

TEST(BookToolVerify, TellsTheSizeOfAGoodBook) {
    EXPECT_EQ(lines_of({"verify", BookFile(sorted_entries()).name()}),
              texts_t{"5 entries, 3 positions"});
    EXPECT_EQ(lines_of({"verify", BookFile({book_entry(0, e2e4, 1)}).name()}),
              texts_t{"1 entry, 1 position"});
    EXPECT_EQ(lines_of({"verify", BookFile(std::string{}).name()}),
              texts_t{"0 entries, 0 positions"});
}

TEST(BookToolVerify, ReportsStrayBytes) {
    std::string const bytes = book_bytes(sorted_entries());
    EXPECT_EQ(faults_of(BookFile(bytes + '\n')),
              (texts_t{"1 stray byte behind the last of 5 entries", "5 entries, 1 fault"}));
    EXPECT_EQ(faults_of(BookFile(bytes.substr(0, bytes.size() - 1))),
              (texts_t{"15 stray bytes behind the last of 4 entries", "4 entries, 1 fault"}));
    EXPECT_EQ(faults_of(BookFile(bytes.substr(0, 15))),
              (texts_t{"15 stray bytes behind the last of 0 entries", "0 entries, 1 fault"}));
}

TEST(BookToolVerify, ReportsKeysOutOfOrder) {
    EXPECT_EQ(faults_of(BookFile({book_entry(5, e2e4, 1), book_entry(4, e2e4, 1),
                                  book_entry(9, e2e4, 1), book_entry(4, e2e4, 1)})),
              (texts_t{"entry 2: key 0000000000000004 behind the larger key 0000000000000005, not "
                       "sorted",
                       "entry 4: key 0000000000000004 behind the larger key 0000000000000009, not "
                       "sorted",
                       "4 entries, 2 faults"}));
    // Unsigned: the key with the top bit is the larger one.
    EXPECT_EQ(
        lines_of(
            {"verify", BookFile({book_entry(1, e2e4, 1), book_entry(1ULL << 63, e2e4, 1)}).name()}),
        texts_t{"2 entries, 2 positions"});
}

TEST(BookToolVerify, ReportsAMoveThatIsTwiceInAKey) {
    EXPECT_EQ(
        faults_of(BookFile({book_entry(1, e2e4, 1), book_entry(2, e2e4, 1), book_entry(2, d2d4, 1),
                            book_entry(2, e2e4, 7)})),
        (texts_t{"entry 4: same move e2e4 of the same key as in entry 2", "4 entries, 1 fault"}));
}

TEST(BookToolVerify, ReportsAKeyWithoutWeight) {
    EXPECT_EQ(
        faults_of(BookFile({book_entry(1, e2e4, 0), book_entry(2, e2e4, 0), book_entry(2, d2d4, 1),
                            book_entry(3, e2e4, 0), book_entry(3, d2d4, 0)})),
        (texts_t{"entry 1: all weights of the key 0000000000000001 are 0",
                 "entry 4: all weights of the key 0000000000000003 are 0", "5 entries, 2 faults"}));
}

TEST(BookToolVerify, ReportsUnknownPromotionsAndEntriesWithoutAMove) {
    EXPECT_EQ(faults_of(BookFile({book_entry(1, move_word(52, 60, 5), 1),
                                  book_entry(2, move_word(52, 60, 7), 1),
                                  book_entry(3, 0x8000 | e2e4, 1), book_entry(4, 0, 1)})),
              (texts_t{"entry 1: unknown promotion in the move e7e8?",
                       "entry 2: unknown promotion in the move e7e8?",
                       "entry 3: unknown promotion in the move e2e4?", "entry 4: no move",
                       "4 entries, 4 faults"}));
}

TEST(BookToolVerify, OfRubbishStopsListingButCountsOn) {
    std::string bytes;
    for (int i = 0; i < 3200; ++i) {
        bytes += static_cast<char>(255 - i / 16);
    }
    texts_t const lines = faults_of(BookFile(bytes));
    ASSERT_EQ(lines.size(), 52U);
    EXPECT_EQ(lines[50].substr(0, 7), "... and");
    EXPECT_EQ(lines[51].substr(0, 13), "200 entries, ");
}

}  // namespace orvelin::test
