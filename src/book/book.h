#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "book/bk_move.h"
#include "book/book_record.h"
#include "time/timer.h"

namespace orvelin {

/// Finds a move for a position key in an opening book file of the published Polyglot format.
///
/// Keeps the open file and its size and nothing of its contents: each look-up goes to the file,
/// and nothing is written or learnt. The entries must be sorted by key; in a file that is not, some
/// are not found, and nothing worse happens. One thread only: a look-up moves the place in the
/// file.
class Book {
 public:
    /// No file. The timer that the choice among moves is drawn from runs from here on.
    Book();
    /// Opens the file to see whether that works; `open()` must follow before any move is
    /// found (oddity 35).
    /// @throws std::logic_error as `open()`.
    explicit Book(std::string name);

    /// Opens the file of the stored name, closing another that is open.
    /// @throws std::logic_error when it cannot be opened.
    void open();
    void close() { file_.close(); }
    bool is_open() const { return file_.is_open(); }
    void set_name(std::string name);
    std::string const& get_name() const { return name_; }

    /// A move for the key, drawn by the weights; word 0 when the book has none.
    std::uint16_t get_move(std::uint64_t key);

 private:
    std::int64_t find_start(std::uint64_t key);
    std::vector<Book_record> collect(std::uint64_t key, std::int64_t start);
    BKmove draw(std::vector<Book_record> const& entries);
    void open_stream();

    std::string name_;
    std::ifstream file_;
    /// Bytes in use, a multiple of the size of an entry.
    std::int64_t size_ = 0;
    Timer timer_;
};

}  // namespace orvelin
