// The draw among the entries of one key.

#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <thread>
#include <vector>

#include "book/book.h"
#include "book/book_record.h"
#include "support/book_file.h"

namespace orvelin {
namespace {

using std::chrono::steady_clock;
using test::book_entry;
using test::BookFile;
using test::look_up;

constexpr std::uint64_t position_key = 0x463B96181691FC9CU;

/// Entries of one key with the weights, whose moves are the words 1, 2, 3...
std::vector<Book_record> entries_of_weights(std::vector<int> const& weights) {
    std::vector<Book_record> entries;
    for (int word = 1; int weight : weights) {
        entries.push_back(book_entry(position_key, word++, weight));
    }
    return entries;
}

/// How often each word comes in so many draws of one book.
std::map<int, int> draw(std::vector<int> const& weights, int draws) {
    const BookFile file(entries_of_weights(weights));
    Book book;
    book.set_name(file.name());
    book.open();
    std::map<int, int> counts;
    for (int i = 0; i < draws; ++i) {
        ++counts[book.get_move(position_key)];
    }
    return counts;
}

/// Draws until all the words from 1 up to the number of weights have come, those of `never` left
/// out; tells what came.
std::set<int> draw_all(std::vector<int> const& weights, std::set<int> const& never = {}) {
    auto const deadline = steady_clock::now() + std::chrono::seconds(20);
    std::set<int> seen;
    // Each round has a young book, see look_up.
    while (seen.size() + never.size() < weights.size() && steady_clock::now() < deadline) {
        for (auto const& [word, count] : draw(weights, 1000)) {
            seen.insert(word);
        }
    }
    return seen;
}

TEST(BookDrawTest, OnlyEntryIsAlwaysDrawn) {
    for (int const weight : {1, 2, 100, 0x7FFF, 0x8000, 0xFFFF}) {
        EXPECT_EQ(draw({weight}, 50), (std::map<int, int>{{1, 50}})) << weight;
    }
}

TEST(BookDrawTest, EveryListedMoveAppearsAndNothingElse) {
    EXPECT_EQ(draw_all({3, 4}), (std::set<int>{1, 2}));
    EXPECT_EQ(draw_all({5, 3, 3}), (std::set<int>{1, 2, 3}));
    EXPECT_EQ(draw_all({1, 1, 1, 1, 1, 2}), (std::set<int>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(draw_all({0xFFFF, 0xFFFF}), (std::set<int>{1, 2}));
}

TEST(BookDrawTest, LastEntryGetsOneChanceLessThanItsWeight) {
    EXPECT_EQ(draw({1, 1}, 500), (std::map<int, int>{{1, 500}}));
    EXPECT_EQ(draw({100, 1}, 500), (std::map<int, int>{{1, 500}}));
    EXPECT_EQ(draw({0, 1}, 500), (std::map<int, int>{{1, 500}}));
    EXPECT_EQ(draw_all({1, 1, 1}, {3}), (std::set<int>{1, 2}));
    EXPECT_EQ(draw({1, 1, 1}, 500).count(3), 0U);
}

TEST(BookDrawTest, FirstEntryIsFavoured) {
    std::map<int, int> counts = draw({1, 1, 1}, 1500);
    EXPECT_GT(counts[1], counts[2]);
    EXPECT_EQ(counts[1] + counts[2], 1500);
    // Three chances in six to two and one, where the weights say two each.
    counts = draw({2, 2, 2}, 1500);
    EXPECT_GT(counts[1], counts[2]);
    EXPECT_GT(counts[1], counts[3]);
    EXPECT_EQ(counts[1] + counts[2] + counts[3], 1500);
}

TEST(BookDrawTest, EntriesWithoutWeightAreNeverDrawnBehindAnother) {
    EXPECT_EQ(draw_all({3, 0, 4}, {2}), (std::set<int>{1, 3}));
    EXPECT_EQ(draw({3, 0, 4}, 500).count(2), 0U);
    EXPECT_EQ(draw({3, 0}, 500), (std::map<int, int>{{1, 500}}));
}

TEST(BookDrawTest, FirstEntryWithoutWeightHasTheChanceOfARemainderOfZero) {
    EXPECT_EQ(draw_all({0, 3}), (std::set<int>{1, 2}));
}

TEST(BookDrawTest, WeightsAllZeroGiveNoMove) {
    EXPECT_EQ(draw({0}, 20), (std::map<int, int>{{0, 20}}));
    EXPECT_EQ(draw({0, 0}, 20), (std::map<int, int>{{0, 20}}));
    EXPECT_EQ(draw({0, 0, 0, 0, 0}, 20), (std::map<int, int>{{0, 20}}));
}

// The draw is the time in nanoseconds as a signed 32-bit number: negative from 2.1 seconds on, for
// as long again. Then the first entry is drawn, whatever its weight.
TEST(BookDrawTest, NegativeRemainderFallsToTheFirstEntryWithoutWeight) {
    const BookFile file(entries_of_weights({0, 0xFFFF}));
    Book book;
    book.set_name(file.name());
    book.open();
    // By a remainder of zero it comes once in 65535 draws, not many times in a row.
    int in_a_row = 0;
    auto const deadline = steady_clock::now() + std::chrono::seconds(60);
    while (in_a_row < 10 && steady_clock::now() < deadline) {
        int const word = book.get_move(position_key);
        ASSERT_TRUE(word == 1 || word == 2) << word;
        in_a_row = word == 1 ? in_a_row + 1 : 0;
        if (in_a_row == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    EXPECT_EQ(in_a_row, 10);
}

// With a sum of weights above the time passed, the remainder is the time itself, and each entry
// has its own 65535 nanoseconds.
TEST(BookDrawTest, DrawIsTheTimeSinceTheBookWasBuilt) {
    int const entries = 20000;
    const BookFile file(entries_of_weights(std::vector<int>(entries, 0xFFFF)));
    auto const nanoseconds_since = [](steady_clock::time_point start) {
        return std::chrono::nanoseconds(steady_clock::now() - start).count();
    };
    auto const before_building = steady_clock::now();
    Book book;
    auto const after_building = steady_clock::now();
    book.set_name(file.name());
    book.open();
    int last = 0;
    for (int i = 0; i < 20; ++i) {
        const std::int64_t tolerance = 5'000'000;
        const std::int64_t earliest = nanoseconds_since(after_building) - tolerance;
        int const word = book.get_move(position_key);
        const std::int64_t latest = nanoseconds_since(before_building) + tolerance;
        if (latest > std::int64_t{entries} * 0xFFFF) {
            break;
        }
        EXPECT_GE(word, last);
        EXPECT_GE(std::int64_t{word} * 0xFFFF, earliest);
        EXPECT_LE(std::int64_t{word - 1} * 0xFFFF, latest);
        last = word;
    }
    EXPECT_GT(last, 0);
}

TEST(BookDrawTest, SumOfWeightsBeyondThirtyTwoBitsIsSafe) {
    const BookFile file(std::vector<Book_record>(40000, book_entry(position_key, 7, 0xFFFF)));
    EXPECT_EQ(look_up(file, position_key), 7);
    EXPECT_EQ(look_up(file, position_key + 1), 0);
}

TEST(BookDrawTest, SumOfWeightsThatComesToZeroGivesNoMove) {
    // 65537 times 65535 is one less than the sum can hold.
    std::vector<Book_record> entries(65537, book_entry(position_key, 7, 0xFFFF));
    EXPECT_EQ(look_up(BookFile(entries), position_key), 7);
    entries.push_back(book_entry(position_key, 7, 1));
    EXPECT_EQ(look_up(BookFile(entries), position_key), 0);
}

TEST(BookDrawTest, DrawnMoveIsFilteredByItsPromotionField) {
    int const squares = 52 << 6 | 60;
    for (int field = 0; field <= 7; ++field) {
        int const kept = field >= 1 && field <= 4 ? field << 12 : 0;
        for (int const top : {0, 0x8000}) {
            const BookFile file({book_entry(position_key, top | field << 12 | squares, 1)});
            EXPECT_EQ(look_up(file, position_key), kept | squares) << field << " " << top;
        }
    }
}

TEST(BookDrawTest, DrawnMoveMayBeNoMoveAfterTheFilter) {
    EXPECT_EQ(look_up(BookFile({book_entry(position_key, 0, 9)}), position_key), 0);
    EXPECT_EQ(look_up(BookFile({book_entry(position_key, 0xD000, 9)}), position_key), 0);
}

}  // namespace
}  // namespace orvelin
