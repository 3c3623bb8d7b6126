#include "book/book_contents.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <limits>

#include "book/entry_text.h"
#include "platform/path.h"
#include "support/file_replacement.h"

namespace orvelin::tools {

namespace {

constexpr std::uint64_t largest_weight = std::numeric_limits<std::uint16_t>::max();

/// Sums stop here, so that one times `largest_weight` fits a word.
constexpr std::uint64_t largest_sum = (std::uint64_t{1} << 48) - 1;

std::uint16_t scaled(std::uint64_t weight, std::uint64_t heaviest) {
    if (heaviest > largest_weight && weight > 0) {
        weight = std::max(weight * largest_weight / heaviest, std::uint64_t{1});
    }
    return static_cast<std::uint16_t>(weight);
}

}  // namespace

void BookContents::add(std::uint64_t key, BKmove const& move, std::uint64_t weight,
                       std::uint32_t learn) {
    auto const [place, is_new] = entries_.try_emplace({key, move.dump()});
    entry_t& entry = place->second;
    if (is_new) {
        entry.learn = learn;
    }
    entry.added += std::min(weight, largest_sum - entry.added);
}

bool BookContents::set_weight(std::uint64_t key, BKmove const& move, std::uint16_t weight) {
    std::optional<std::uint16_t>& set = entries_[{key, move.dump()}].set;
    if (set && *set != weight) {
        return false;
    }
    set = weight;
    return true;
}

void BookContents::remove_below(std::uint64_t weight) {
    std::erase_if(entries_,
                  [&](auto const& item) { return !item.second.set && item.second.added < weight; });
}

std::size_t BookContents::positions() const {
    std::size_t count = 0;
    std::optional<std::uint64_t> last;
    for (auto const& [place, entry] : entries_) {
        if (place.first != last) {
            ++count;
        }
        last = place.first;
    }
    return count;
}

std::vector<Book_record> BookContents::records() const {
    std::vector<Book_record> records;
    records.reserve(entries_.size());
    for (auto begin = entries_.begin(); begin != entries_.end();) {
        std::uint64_t const key = begin->first.first;
        std::uint64_t heaviest = 0;
        auto end = begin;
        for (; end != entries_.end() && end->first.first == key; ++end) {
            heaviest = std::max(heaviest, end->second.weight());
        }
        auto const first_of_key = static_cast<std::ptrdiff_t>(records.size());
        for (; begin != end; ++begin) {
            Book_record& record = records.emplace_back();
            record.set_key(key);
            record.set_move(BKmove(begin->first.second));
            record.set_weight(scaled(begin->second.weight(), heaviest));
            record.set_learn(begin->second.learn);
        }
        // Stable: the moves are in order already.
        std::stable_sort(records.begin() + first_of_key, records.end(),
                         [](Book_record const& left, Book_record const& right) {
                             return left.get_weight() > right.get_weight();
                         });
    }
    return records;
}

void write_book(std::string const& name, BookContents const& contents) {
    std::string bytes;
    bytes.reserve(contents.size() * Book_record::size);
    for (Book_record const& record : contents.records()) {
        bytes.append(record.bytes(), Book_record::size);
    }
    write_file(path_of(name), bytes);
    std::cout << name << ": " << size_text(contents.size(), contents.positions()) << '\n';
}

}  // namespace orvelin::tools
