#include "play/book_check.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/book_file.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::book_bytes;
using orvelin::test::book_entry;
using orvelin::test::BookFile;

constexpr int e2e4 = 12 << 6 | 28;

BookFaults faults_of(std::string const& bytes) {
    BookFile const file(bytes);
    return check_book(file.name());
}

TEST(BookCheck, ABookHasNoFault) {
    BookFaults const faults = faults_of(book_bytes(
        {book_entry(1, e2e4, 1), book_entry(1, e2e4 | 4 << 12, 1), book_entry(~0ULL, e2e4, 9)}));
    EXPECT_EQ(faults.fatal, "");
    EXPECT_EQ(faults.remark, "");
}

TEST(BookCheck, BytesBehindTheLastEntryAreTold) {
    BookFaults const faults = faults_of(book_bytes({book_entry(1, e2e4, 1)}) + "xy");
    EXPECT_EQ(faults.fatal, "");
    EXPECT_EQ(faults.remark, "has 2 bytes behind its last entry");
}

TEST(BookCheck, EntriesThatAreNotSortedAreNoBook) {
    EXPECT_EQ(faults_of(book_bytes({book_entry(2, e2e4, 1), book_entry(1, e2e4, 1)})).fatal,
              "it is no book in the Polyglot format");
}

TEST(BookCheck, APromotionThatThereIsNoneOfIsNoBook) {
    std::string bytes = book_bytes({book_entry(1, e2e4, 1)});
    bytes[8] = 5 << 4;
    EXPECT_EQ(faults_of(bytes).fatal, "it is no book in the Polyglot format");
}

TEST(BookCheck, AnEmptyFileAndAMissingOneAreNoBook) {
    EXPECT_EQ(faults_of("").fatal, "it has no entry");
    EXPECT_EQ(faults_of("short").fatal, "it has no entry");
    EXPECT_EQ(check_book("/nowhere/at/all").fatal, "it cannot be read");
}

}  // namespace

}  // namespace orvelin::play::test
