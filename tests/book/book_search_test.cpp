// How a book finds the entries of a key in its file.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "book/bk_move.h"
#include "book/book.h"
#include "book/book_record.h"
#include "position/chess_position.h"
#include "support/book_file.h"
#include "support/positions.h"
#include "support/shared_tables.h"
#include "support/test_config.h"

namespace orvelin {
namespace {

using test::book_bytes;
using test::book_entry;
using test::BookFile;
using test::look_up;

constexpr std::uint64_t lowest_key = 0;
constexpr std::uint64_t highest_key = ~std::uint64_t{0};

/// One entry for each key, whose move is the number of the entry, from 1.
std::vector<Book_record> entries_of_keys(std::vector<std::uint64_t> const& keys) {
    std::vector<Book_record> entries;
    for (int word = 1; std::uint64_t key : keys) {
        entries.push_back(book_entry(key, word++, 1));
    }
    return entries;
}

TEST(BookSearchTest, EmptyFileGivesNothing) {
    const BookFile file(std::string{});
    for (const std::uint64_t key : {lowest_key, std::uint64_t{1}, highest_key}) {
        EXPECT_EQ(look_up(file, key), 0) << key;
    }
}

TEST(BookSearchTest, FileBelowOneEntryGivesNothing) {
    const std::string entry = book_bytes({book_entry(0x0101010101010101U, 7, 0xFFFF)});
    for (const std::size_t size : {1U, 8U, 10U, 15U}) {
        const BookFile file(entry.substr(0, size));
        EXPECT_EQ(look_up(file, 0x0101010101010101U), 0) << size;
        EXPECT_EQ(look_up(file, lowest_key), 0) << size;
        EXPECT_EQ(look_up(file, highest_key), 0) << size;
    }
}

TEST(BookSearchTest, FileOfOneEntryFindsIt) {
    for (const std::uint64_t key : {lowest_key, std::uint64_t{500}, highest_key}) {
        const BookFile file({book_entry(key, 7, 1)});
        EXPECT_EQ(look_up(file, key), 7) << key;
        EXPECT_EQ(look_up(file, key + 1), 0) << key;
        EXPECT_EQ(look_up(file, key - 1), 0) << key;
    }
}

TEST(BookSearchTest, OnlyWholeEntriesAreUsed) {
    const std::string bytes = book_bytes(entries_of_keys({10, 20, 30}));
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        const BookFile file(bytes.substr(0, size));
        EXPECT_EQ(look_up(file, 10), size >= 16 ? 1 : 0) << size;
        EXPECT_EQ(look_up(file, 20), size >= 32 ? 2 : 0) << size;
        EXPECT_EQ(look_up(file, 30), size >= 48 ? 3 : 0) << size;
    }
}

TEST(BookSearchTest, LastByteOfThirtyThreeIsNeverRead) {
    const std::string bytes = book_bytes(entries_of_keys({10, 20}));
    for (char const stray : {'\0', '\x14', '\n', '\xFF'}) {
        const BookFile file(bytes + stray);
        Book book;
        book.set_name(file.name());
        book.open();
        // Each scan that runs into the end stops before the stray byte: a read of it would fail
        // and end the book for the second round.
        for (int round = 0; round < 2; ++round) {
            EXPECT_EQ(book.get_move(20), 2);
            EXPECT_EQ(book.get_move(21), 0);
            EXPECT_EQ(book.get_move(highest_key), 0);
            EXPECT_EQ(book.get_move(lowest_key), 0);
            EXPECT_EQ(book.get_move(10), 1);
        }
    }
}

TEST(BookSearchTest, EntryBehindTheUsableSizeIsNotFound) {
    const std::string whole = book_bytes(entries_of_keys({10, 20}));
    const BookFile file(whole + book_bytes({book_entry(30, 9, 1)}).substr(0, 15));
    EXPECT_EQ(look_up(file, 30), 0);
    EXPECT_EQ(look_up(file, 20), 2);
}

TEST(BookSearchTest, KeysBeforeBetweenAndBehindTheEntriesGiveNothing) {
    for (int count = 1; count <= 20; ++count) {
        std::vector<std::uint64_t> keys;
        for (int i = 1; i <= count; ++i) {
            keys.push_back(static_cast<std::uint64_t>(10 * i));
        }
        const BookFile file(entries_of_keys(keys));
        for (int i = 1; i <= count; ++i) {
            auto const key = static_cast<std::uint64_t>(10 * i);
            EXPECT_EQ(look_up(file, key), i) << count;
            EXPECT_EQ(look_up(file, key - 1), 0) << count;
            EXPECT_EQ(look_up(file, key + 1), 0) << count;
        }
        EXPECT_EQ(look_up(file, lowest_key), 0) << count;
        EXPECT_EQ(look_up(file, highest_key), 0) << count;
    }
}

TEST(BookSearchTest, KeysAreUnsigned) {
    const std::vector<std::uint64_t> keys = {0,
                                             0x80,
                                             0xFF,
                                             0x7FFFFFFFFFFFFFFFU,
                                             0x8000000000000000U,
                                             0x80000000000000FFU,
                                             0xFF00000000000000U,
                                             highest_key};
    const BookFile file(entries_of_keys(keys));
    for (int word = 1; const std::uint64_t key : keys) {
        EXPECT_EQ(look_up(file, key), word++);
    }
    EXPECT_EQ(look_up(file, 0x8000000000000001U), 0);
}

TEST(BookSearchTest, FourEntriesOfOneKeyAcrossAProbeAreAllCollected) {
    for (int before = 0; before <= 12; ++before) {
        for (int behind = 0; behind <= 12; behind += 3) {
            std::vector<Book_record> entries(static_cast<std::size_t>(before),
                                             book_entry(10, 100, 0xFFFF));
            for (int word = 1; word <= 4; ++word) {
                entries.push_back(book_entry(20, word, 1 + word));
            }
            entries.insert(entries.end(), static_cast<std::size_t>(behind),
                           book_entry(30, 200, 0xFFFF));
            const BookFile file(entries);
            const std::set<int> all = {1, 2, 3, 4};
            std::set<int> seen;
            for (int draw = 0; draw < 2000 && seen != all; ++draw) {
                seen.insert(look_up(file, 20));
            }
            EXPECT_EQ(seen, all) << before << " before, " << behind << " behind";
        }
    }
}

TEST(BookSearchTest, LargeRunOfAnotherKeyInFrontIsPassedOver) {
    std::vector<Book_record> entries(5000, book_entry(10, 100, 1));
    entries.push_back(book_entry(11, 7, 1));
    const BookFile file(entries);
    EXPECT_EQ(look_up(file, 11), 7);
    EXPECT_EQ(look_up(file, 10), 100);
    EXPECT_EQ(look_up(file, 12), 0);
}

/// Different random keys in rising order.
std::set<std::uint64_t> random_keys(std::size_t count) {
    std::mt19937_64 random(20240229);
    std::set<std::uint64_t> keys;
    while (keys.size() < count) {
        keys.insert(random());
    }
    return keys;
}

/// A book in which each key has one to five entries. Only one of them has a weight to speak of,
/// so that it is drawn nearly always: number `heavy`, or the last one. Its move goes into `drawn`.
std::vector<Book_record> heavy_entries(std::set<std::uint64_t> const& keys, int heavy,
                                       std::map<std::uint64_t, int>& drawn) {
    std::vector<Book_record> entries;
    for (int word = 1; const std::uint64_t key : keys) {
        int const count = 1 + static_cast<int>(key % 5);
        for (int i = 0; i < count; ++i, word = word % 0x0FFF + 1) {
            bool const is_heavy = i == std::min(heavy, count - 1);
            entries.push_back(book_entry(key, word, is_heavy ? 0xFFFF : 0));
            if (is_heavy) {
                drawn[key] = word;
            }
        }
    }
    return entries;
}

TEST(BookSearchTest, EveryEntryOfAManyKeyedBookIsFound) {
    const std::set<std::uint64_t> keys = random_keys(test::short_tests ? 300 : 3000);
    for (int heavy = 0; heavy < 5; ++heavy) {
        std::map<std::uint64_t, int> drawn;
        const BookFile file(heavy_entries(keys, heavy, drawn));
        for (auto const& [key, word] : drawn) {
            int found = look_up(file, key);
            // A remainder of zero gives the first entry in its place.
            for (int retry = 0; retry < 5 && found != word; ++retry) {
                found = look_up(file, key);
            }
            ASSERT_EQ(found, word) << key;
        }
    }
}

TEST(BookSearchTest, AbsentKeysOfAManyKeyedBookGiveNothing) {
    const std::set<std::uint64_t> keys = random_keys(test::short_tests ? 300 : 3000);
    std::map<std::uint64_t, int> drawn;
    const BookFile file(heavy_entries(keys, 4, drawn));
    std::uint64_t before = 0;
    for (const std::uint64_t key : keys) {
        const std::uint64_t between = before + (key - before) / 2;
        for (const std::uint64_t absent : {key - 1, key + 1, between}) {
            if (keys.contains(absent)) {
                continue;
            }
            ASSERT_EQ(look_up(file, absent), 0) << absent;
        }
        before = key;
    }
    EXPECT_EQ(look_up(file, lowest_key), 0);
    EXPECT_EQ(look_up(file, highest_key), 0);
}

struct book_case_t {
    std::vector<std::string> moves;
    std::uint64_t key;
    std::string answer;
};

/// The positions of the published description of the format, each with a move for it.
std::vector<book_case_t> published_cases() {
    return {
        {{}, 0x463B96181691FC9CU, "e2e4"},
        {{"e2e4"}, 0x823C9B50FD114196U, "d7d5"},
        {{"e2e4", "d7d5"}, 0x0756B94461C50FB0U, "e4d5"},
        {{"e2e4", "d7d5", "e4e5"}, 0x662FAFB965DB29D4U, "f7f5"},
        {{"e2e4", "d7d5", "e4e5", "f7f5"}, 0x22A48B5A8E47FF78U, "e5f6"},
        {{"e2e4", "d7d5", "e4e5", "f7f5", "e1e2"}, 0x652A607CA3F242C1U, "e8f7"},
        {{"e2e4", "d7d5", "e4e5", "f7f5", "e1e2", "e8f7"}, 0x00FDD303C946BDD9U, "e2e3"},
        {{"a2a4", "b7b5", "h2h4", "b5b4", "c2c4"}, 0x3C8123EA7B067637U, "b4c3"},
        {{"a2a4", "b7b5", "h2h4", "b5b4", "c2c4", "b4c3", "a1a3"}, 0x5C3F9B829B279560U, "c3d2"}};
}

TEST(BookSearchTest, PositionsOfTheBookFormatFindTheirMoves) {
    ChessPosition position(test::shared_tables());
    auto const play = [&](book_case_t const& c) {
        position.newgame();
        for (std::string const& move : c.moves) {
            position.make_move(position.convert_to_move(move));
        }
    };
    std::map<std::uint64_t, Book_record> sorted;
    for (book_case_t const& c : published_cases()) {
        play(c);
        Book_record& entry = sorted[c.key];
        entry = book_entry(c.key, 0, 1);
        entry.set_move(BKmove(position.convert_to_move(c.answer)));
    }
    ASSERT_EQ(sorted.size(), 9U);
    std::vector<Book_record> entries;
    for (auto const& [key, entry] : sorted) {
        entries.push_back(entry);
    }
    const BookFile file(entries);

    for (book_case_t const& c : published_cases()) {
        play(c);
        EXPECT_EQ(position.get_hash(), c.key);
        const BKmove found(look_up(file, position.get_hash()));
        EXPECT_EQ(found(position).algebraic(false), c.answer) << position.fen();
        EXPECT_EQ(found(position).code(), position.convert_to_move(c.answer).code());
    }
    position.fen(positions::bare_kings);
    EXPECT_EQ(look_up(file, position.get_hash()), 0);
}

}  // namespace
}  // namespace orvelin
