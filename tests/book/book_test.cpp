#include "book/book.h"

#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "support/book_file.h"
#include "support/logic_error_text.h"
#include "support/temporary_directory.h"

namespace orvelin {
namespace {

using test::book_bytes;
using test::book_entry;
using test::BookFile;
using test::logic_error_text;
using test::TemporaryDirectory;

constexpr int e2e4 = 12 << 6 | 28;
constexpr int d2d4 = 11 << 6 | 27;

std::string failure_text(std::string const& name) {
    return "Book::open() open " + name + " failed (1)";
}

TEST(BookTest, StartsWithoutFileAndName) {
    Book book;
    EXPECT_FALSE(book.is_open());
    EXPECT_EQ(book.get_name(), "");
    EXPECT_EQ(book.get_move(0), 0U);
    EXPECT_EQ(book.get_move(1), 0U);
}

TEST(BookTest, SetNameOpensNothing) {
    const BookFile file({book_entry(5, e2e4, 1)});
    Book book;
    book.set_name(file.name());
    EXPECT_EQ(book.get_name(), file.name());
    EXPECT_FALSE(book.is_open());
    EXPECT_EQ(book.get_move(5), 0U);
}

TEST(BookTest, OpenFindsTheMovesOfTheNamedFile) {
    const BookFile file({book_entry(5, e2e4, 1)});
    Book book;
    book.set_name(file.name());
    book.open();
    EXPECT_TRUE(book.is_open());
    EXPECT_EQ(book.get_name(), file.name());
    EXPECT_EQ(book.get_move(5), e2e4);
}

TEST(BookTest, BookOfANameFindsNothingBeforeOpen) {
    const BookFile file({book_entry(5, e2e4, 1)});
    Book book(file.name());
    EXPECT_TRUE(book.is_open());
    EXPECT_EQ(book.get_name(), file.name());
    EXPECT_EQ(book.get_move(5), 0U);
    EXPECT_EQ(book.get_move(5), 0U);
    book.open();
    EXPECT_EQ(book.get_move(5), e2e4);
}

TEST(BookTest, MissingFileFailsWithItsName) {
    const TemporaryDirectory directory;
    const std::string missing = directory.file("no book.bin");
    Book book;
    book.set_name(missing);
    EXPECT_EQ(logic_error_text([&] { book.open(); }), failure_text(missing));
    EXPECT_FALSE(book.is_open());
    EXPECT_EQ(book.get_name(), missing);
    EXPECT_EQ(book.get_move(1), 0U);
    EXPECT_EQ(logic_error_text([&] { Book{missing}; }), failure_text(missing));
    // A book is only read: none is made.
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST(BookTest, MissingFolderFailsWithItsName) {
    const TemporaryDirectory directory;
    const std::string missing = directory.file("no/folder/book.bin");
    Book book;
    book.set_name(missing);
    EXPECT_EQ(logic_error_text([&] { book.open(); }), failure_text(missing));
    EXPECT_EQ(logic_error_text([&] { Book{missing}; }), failure_text(missing));
}

TEST(BookTest, FileTakenForAFolderFailsWithItsName) {
    const BookFile file({book_entry(5, e2e4, 1)});
    const std::string below = file.name() + "/book.bin";
    EXPECT_EQ(logic_error_text([&] { Book{below}; }), failure_text(below));
}

TEST(BookTest, EmptyNameFails) {
    Book book;
    EXPECT_EQ(logic_error_text([&] { book.open(); }), "Book::open() open  failed (1)");
    EXPECT_EQ(logic_error_text([&] { Book{std::string()}; }), "Book::open() open  failed (1)");
}

TEST(BookTest, FailedOpenCanBeRepeatedWithSuccess) {
    const BookFile file({book_entry(5, e2e4, 1)});
    Book book;
    for (int round = 0; round < 2; ++round) {
        book.set_name(file.name() + ".missing");
        EXPECT_EQ(logic_error_text([&] { book.open(); }), failure_text(book.get_name()));
        book.set_name(file.name());
        book.open();
        EXPECT_EQ(book.get_move(5), e2e4);
    }
}

TEST(BookTest, FailedOpenClosesTheFileBefore) {
    const BookFile file({book_entry(5, e2e4, 1)});
    Book book;
    book.set_name(file.name());
    book.open();
    book.set_name(file.name() + ".missing");
    EXPECT_EQ(logic_error_text([&] { book.open(); }), failure_text(book.get_name()));
    EXPECT_FALSE(book.is_open());
    EXPECT_EQ(book.get_move(5), 0U);
}

TEST(BookTest, OpenTwiceIsOpen) {
    const BookFile file({book_entry(5, e2e4, 1)});
    Book book;
    book.set_name(file.name());
    book.open();
    book.open();
    EXPECT_TRUE(book.is_open());
    EXPECT_EQ(book.get_move(5), e2e4);
}

TEST(BookTest, AnotherNameCountsFromTheNextOpenOn) {
    const BookFile first({book_entry(5, e2e4, 1)});
    const BookFile second({book_entry(5, d2d4, 1), book_entry(6, e2e4, 1)});
    Book book;
    book.set_name(first.name());
    book.open();
    book.set_name(second.name());
    EXPECT_EQ(book.get_move(5), e2e4);
    book.open();
    EXPECT_EQ(book.get_move(5), d2d4);
    EXPECT_EQ(book.get_move(6), e2e4);
}

TEST(BookTest, ClosedBookFindsNothingUntilItIsOpenedAgain) {
    const BookFile file({book_entry(5, e2e4, 1)});
    Book book;
    book.set_name(file.name());
    book.open();
    book.close();
    EXPECT_FALSE(book.is_open());
    EXPECT_EQ(book.get_name(), file.name());
    EXPECT_EQ(book.get_move(5), 0U);
    book.open();
    EXPECT_EQ(book.get_move(5), e2e4);
}

TEST(BookTest, CloseOfAClosedBookIsHarmless) {
    const BookFile file({book_entry(5, e2e4, 1)});
    Book book;
    book.close();
    book.close();
    EXPECT_FALSE(book.is_open());
    book.set_name(file.name());
    book.open();
    EXPECT_EQ(book.get_move(5), e2e4);
}

TEST(BookTest, LookUpsBeforeOpenLeaveNoTrace) {
    const BookFile file({book_entry(5, e2e4, 1)});
    Book book;
    EXPECT_EQ(book.get_move(5), 0U);
    book.set_name(file.name());
    book.open();
    EXPECT_EQ(book.get_move(5), e2e4);
}

TEST(BookTest, FailedLookUpSpoilsNoLaterOne) {
    const BookFile file({book_entry(5, e2e4, 1), book_entry(7, d2d4, 1)});
    Book book;
    book.set_name(file.name());
    book.open();
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(book.get_move(0), 0U);
        EXPECT_EQ(book.get_move(6), 0U);
        EXPECT_EQ(book.get_move(~std::uint64_t{0}), 0U);
        EXPECT_EQ(book.get_move(5), e2e4);
        EXPECT_EQ(book.get_move(7), d2d4);
    }
    book.open();
    EXPECT_EQ(book.get_move(5), e2e4);
}

TEST(BookTest, SizeIsThatOfTheTimeOfOpening) {
    const BookFile file({book_entry(5, e2e4, 1)});
    Book book;
    book.set_name(file.name());
    book.open();
    file.write(book_bytes({book_entry(5, e2e4, 1), book_entry(7, d2d4, 1)}));
    EXPECT_EQ(book.get_move(7), 0U);
    EXPECT_EQ(book.get_move(5), e2e4);
    book.open();
    EXPECT_EQ(book.get_move(7), d2d4);
}

}  // namespace
}  // namespace orvelin
