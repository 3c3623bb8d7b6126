#include "book/book_lookup.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "book/bk_move.h"
#include "book/book.h"
#include "book/book_reader.h"
#include "book/book_record.h"
#include "support/book_file.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

using std::chrono::steady_clock;

std::vector<int> words_of_key(std::string const& name, std::uint64_t key) {
    tools::BookReader book(name);
    std::vector<int> words;
    for (Book_record const& entry : tools::entries_of_key(book, key)) {
        words.push_back(entry.get_move().dump());
    }
    return words;
}

/// What the engine draws for the key, until everything expected has come.
std::set<int> drawn_words(BookFile const& file, std::uint64_t key, std::set<int> const& expected) {
    auto const deadline = steady_clock::now() + std::chrono::seconds(20);
    std::set<int> drawn;
    do {
        // Each round has a young book, see look_up.
        Book book;
        book.set_name(file.name());
        book.open();
        for (int i = 0; i < 20; ++i) {
            drawn.insert(book.get_move(key));
        }
    } while (drawn.size() < expected.size() && steady_clock::now() < deadline);
    return drawn;
}

/// Entries of random keys from a few, whose moves are the number of the entry, from 1.
std::vector<Book_record> random_entries(std::mt19937& random, std::uint64_t keys) {
    std::vector<Book_record> entries(random() % 20);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        entries[i] = book_entry(random() % keys, static_cast<int>(i + 1), 2);
    }
    return entries;
}

}  // namespace

TEST(BookLookup, ListsWhatTheEngineDrawsFromEvenWhenTheBookIsNotSorted) {
    constexpr std::uint64_t keys = 6;
    std::mt19937 random(1);
    int listed = 0;
    int missed = 0;
    for (int i = 0; i < (short_tests ? 10 : 40); ++i) {
        std::vector<Book_record> const entries = random_entries(random, keys);
        BookFile const file(entries);
        for (std::uint64_t key = 0; key < keys; ++key) {
            std::vector<int> const words = words_of_key(file.name(), key);
            std::set<int> expected(words.begin(), words.end());
            listed += static_cast<int>(expected.size());
            missed -= static_cast<int>(expected.size());
            for (Book_record const& entry : entries) {
                missed += entry.get_key() == key ? 1 : 0;
            }
            if (expected.empty()) {
                expected = {0};
            }
            EXPECT_EQ(drawn_words(file, key, expected), expected) << i << " " << key;
        }
    }
    EXPECT_GT(listed, 0);
    EXPECT_GT(missed, 0);
}

TEST(BookLookup, FindsEveryKeyOfSortedBooksOfAnySize) {
    for (int size = 0; size <= 40; ++size) {
        std::vector<Book_record> entries;
        for (int i = 0; i < size; ++i) {
            entries.push_back(book_entry(static_cast<std::uint64_t>(i / 3) * 2 + 1, i + 1, 1));
        }
        BookFile const file(entries);
        for (int i = 0; i < size; i += 3) {
            std::uint64_t const key = static_cast<std::uint64_t>(i / 3) * 2 + 1;
            std::vector<int> words;
            for (int word = i + 1; word <= size && word <= i + 3; ++word) {
                words.push_back(word);
            }
            EXPECT_EQ(words_of_key(file.name(), key), words) << size;
            EXPECT_EQ(words_of_key(file.name(), key + 1), std::vector<int>{}) << size;
        }
        EXPECT_EQ(words_of_key(file.name(), 0), std::vector<int>{}) << size;
        EXPECT_EQ(words_of_key(file.name(), ~std::uint64_t{0}), std::vector<int>{}) << size;
    }
}

}  // namespace orvelin::test
