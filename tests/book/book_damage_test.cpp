// Files that are no book, or no longer one. By contract nothing worse happens than that moves are
// not found.

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "book/book.h"
#include "book/book_record.h"
#include "support/book_file.h"
#include "support/temporary_directory.h"

namespace orvelin {
namespace {

using test::book_bytes;
using test::book_entry;
using test::BookFile;
using test::look_up;

constexpr std::uint64_t highest_key = ~std::uint64_t{0};

/// A book that stands open on the file.
class OpenBook {
 public:
    explicit OpenBook(BookFile const& file) { open(file.name()); }
    explicit OpenBook(std::string const& name) { open(name); }

    int get_move(std::uint64_t key) { return book_.get_move(key); }
    void open_again() { book_.open(); }

 private:
    void open(std::string const& name) {
        book_.set_name(name);
        book_.open();
    }

    Book book_;
};

/// Entries with the keys in this order, the moves 1, 2, 3... and enough weight for each.
std::vector<Book_record> entries_of_keys(std::vector<std::uint64_t> const& keys) {
    std::vector<Book_record> entries;
    for (int word = 1; std::uint64_t key : keys) {
        entries.push_back(book_entry(key, word++, 7));
    }
    return entries;
}

TEST(BookDamageTest, UnsortedFileHidesWhatTheSearchPassesBy) {
    const BookFile falling(entries_of_keys({40, 30, 20, 10}));
    for (const std::uint64_t key : {10U, 20U, 30U, 40U}) {
        EXPECT_EQ(look_up(falling, key), 0);
    }

    const BookFile mixed(entries_of_keys({10, 40, 20, 30}));
    EXPECT_EQ(look_up(mixed, 10), 1);
    EXPECT_EQ(look_up(mixed, 20), 0);
    EXPECT_EQ(look_up(mixed, 30), 4);
    EXPECT_EQ(look_up(mixed, 40), 0);
}

TEST(BookDamageTest, ScanStopsAtTheFirstKeyAbove) {
    // The search hits the third entry with its lower bound at 0.
    const BookFile file(entries_of_keys({5, 20, 20, 30, 20}));
    std::set<int> seen;
    for (int i = 0; i < 2000; ++i) {
        seen.insert(look_up(file, 20));
    }
    EXPECT_EQ(seen, (std::set<int>{2, 3}));
}

TEST(BookDamageTest, AllZeroFileGivesNothing) {
    for (const std::size_t size : {1U, 16U, 17U, 48U, 100000U}) {
        const BookFile file(std::string(size, '\0'));
        for (const std::uint64_t key : {std::uint64_t{0}, std::uint64_t{1}, highest_key}) {
            EXPECT_EQ(look_up(file, key), 0) << size;
        }
    }
}

TEST(BookDamageTest, FileOfOnesGivesItsSquaresForTheHighestKey) {
    const BookFile file(std::string(1001, '\xFF'));
    EXPECT_EQ(look_up(file, highest_key), 0x0FFF);
    EXPECT_EQ(look_up(file, 0), 0);
    EXPECT_EQ(look_up(file, highest_key - 1), 0);
}

TEST(BookDamageTest, RubbishGivesNothingThatIsNotInItsEntries) {
    std::mt19937 random(77);
    for (const std::size_t size : {3U, 31U, 64U, 250U, 1600U, 20011U}) {
        std::string bytes(size, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        const BookFile file(bytes);
        OpenBook book(file);
        for (std::size_t offset = 0; offset + Book_record::size <= size;
             offset += Book_record::size) {
            const Book_record entry(bytes.data() + offset);
            int const found = book.get_move(entry.get_key());
            EXPECT_TRUE(found == 0 || found == entry.get_move().dump()) << size << " " << offset;
            EXPECT_EQ(book.get_move(entry.get_key() ^ 1), 0) << size << " " << offset;
        }
        for (const std::uint64_t key : {std::uint64_t{0}, highest_key}) {
            EXPECT_EQ(book.get_move(key), 0) << size;
        }
    }
}

TEST(BookDamageTest, TextGivesNothing) {
    std::string text;
    for (int i = 0; i < 500; ++i) {
        text += "1. e4 e5 2. Nf3 Nc6\n";
    }
    const BookFile file(text);
    EXPECT_EQ(look_up(file, 0), 0);
    EXPECT_EQ(look_up(file, 0x312E206534206536U), 0);
    EXPECT_EQ(look_up(file, highest_key), 0);
}

TEST(BookDamageTest, FolderInPlaceOfAFileGivesNothing) {
    const test::TemporaryDirectory folder;
    OpenBook book(folder.path().string());
    for (int round = 0; round < 2; ++round) {
        for (const std::uint64_t key : {std::uint64_t{0}, std::uint64_t{1}, highest_key}) {
            EXPECT_EQ(book.get_move(key), 0) << key;
        }
        book.open_again();
    }
}

TEST(BookDamageTest, DeviceInPlaceOfAFileGivesNothing) {
    for (char const* device : {"/dev/null", "/dev/zero"}) {
        OpenBook book{std::string(device)};
        EXPECT_EQ(book.get_move(0), 0) << device;
        EXPECT_EQ(book.get_move(highest_key), 0) << device;
    }
}

TEST(BookDamageTest, FileEmptiedAfterOpenGivesNothing) {
    const std::vector<Book_record> entries = entries_of_keys({0, 10, 20, 30, 40, 50, 60});
    for (const std::uint64_t key : {0U, 10U, 30U, 60U, 70U}) {
        const BookFile file(entries);
        OpenBook book(file);
        file.truncate(0);
        EXPECT_EQ(book.get_move(key), 0) << key;
        EXPECT_EQ(book.get_move(key), 0) << key;
    }
}

TEST(BookDamageTest, EntriesCollectedBeforeAFailedReadCount) {
    // The middle of the file, where the search hits, is whole; the end is not.
    for (const std::size_t size : {48U, 53U, 63U}) {
        const BookFile file(
            {book_entry(5, 1, 2), book_entry(5, 1, 2), book_entry(5, 1, 2), book_entry(5, 2, 9)});
        OpenBook book(file);
        file.truncate(size);
        EXPECT_EQ(book.get_move(5), 1) << size;
    }
}

TEST(BookDamageTest, FailedReadEndsTheBookUntilItIsOpenedAgain) {
    const std::vector<Book_record> entries = entries_of_keys({10, 20, 30, 40});
    const BookFile file(entries);
    OpenBook book(file);
    file.truncate(0);
    EXPECT_EQ(book.get_move(10), 0);
    file.write(book_bytes(entries));
    EXPECT_EQ(book.get_move(10), 0);
    EXPECT_EQ(book.get_move(30), 0);
    book.open_again();
    EXPECT_EQ(book.get_move(10), 1);
    EXPECT_EQ(book.get_move(30), 3);
}

TEST(BookDamageTest, FileReplacedAfterOpenIsReadAsItIsNow) {
    const BookFile file(entries_of_keys({10, 20, 30, 40}));
    OpenBook book(file);
    EXPECT_EQ(book.get_move(20), 2);
    file.write(book_bytes({book_entry(10, 11, 1), book_entry(25, 12, 1), book_entry(30, 13, 1),
                           book_entry(40, 14, 1)}));
    EXPECT_EQ(book.get_move(20), 0);
    EXPECT_EQ(book.get_move(25), 12);
}

}  // namespace
}  // namespace orvelin
