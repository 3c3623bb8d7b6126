#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "book/bk_move.h"
#include "book/book_record.h"

namespace orvelin::tools {

/// The entries of a book that is being put together: one for each key and move.
class BookContents {
 public:
    /// Adds to the weight of an entry. What was learnt stays as it came first.
    void add(std::uint64_t key, BKmove const& move, std::uint64_t weight, std::uint32_t learn = 0);
    /// Sets the weight of an entry, whatever is added to it. False, and nothing is changed, when
    /// it was set to another one before.
    bool set_weight(std::uint64_t key, BKmove const& move, std::uint16_t weight);
    /// Removes the entries with less weight added than this, those with a set weight excepted.
    void remove_below(std::uint64_t weight);

    std::size_t size() const { return entries_.size(); }
    /// Number of keys.
    std::size_t positions() const;
    /// The entries in the order of a book: by key, then the heaviest first, then by move. Where a
    /// weight of a key is too large for the format, all weights of the key are scaled down, and
    /// none that is not 0 becomes 0.
    std::vector<Book_record> records() const;

 private:
    struct entry_t {
        std::uint64_t added = 0;
        std::optional<std::uint16_t> set{};
        std::uint32_t learn = 0;

        std::uint64_t weight() const { return set ? *set : added; }
    };
    /// Key and move word.
    using place_t = std::pair<std::uint64_t, std::uint16_t>;

    std::map<place_t, entry_t> entries_;
};

/// Replaces a file by a book of these entries and tells on standard output how large it is.
/// @throws std::runtime_error when it cannot be written; the file is then as it was.
void write_book(std::string const& name, BookContents const& contents);

}  // namespace orvelin::tools
