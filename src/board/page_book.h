#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "book/book_record.h"

namespace orvelin::board {

/// An opening book in memory, which a page has handed over.
class PageBook {
 public:
    /// Replaces the book by one of these bytes.
    /// @throws RequestError when they are no book in the Polyglot format; it is empty then.
    void take(std::string_view bytes);

    /// Number of entries; 0 before there is a book.
    std::size_t size() const { return entries_.size(); }
    /// The entries of a position, in the order of the book.
    std::vector<Book_record> entries_of(std::uint64_t key) const;

 private:
    std::vector<Book_record> entries_;
};

}  // namespace orvelin::board
