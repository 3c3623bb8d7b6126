#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <string>

#include "book/book_record.h"

namespace orvelin::tools {

/// Reads the entries of a book file one by one, from the first or from any other.
///
/// Only whole entries are read. Bytes behind the last one are counted and left alone, as the
/// engine does. The file is not held in memory.
class BookReader {
 public:
    /// @throws std::runtime_error when the file cannot be opened.
    explicit BookReader(std::string const& name);

    std::string const& name() const { return name_; }
    /// Number of whole entries.
    std::uint64_t size() const { return size_; }
    /// Bytes behind the last whole entry.
    std::size_t stray_bytes() const { return stray_bytes_; }

    /// Reads the next entry; false behind the last.
    /// @throws std::runtime_error when the file does not give what it should hold.
    bool read(Book_record& entry);
    /// Makes the entry of this index, from 0, the next one.
    void seek(std::uint64_t index);

 private:
    std::string name_;
    std::ifstream file_;
    std::uint64_t size_ = 0;
    std::size_t stray_bytes_ = 0;
    std::uint64_t next_ = 0;
};

/// Calls `visit` with each entry and its number, from 1, and shows the progress.
void for_each_entry(BookReader& book,
                    std::function<void(std::uint64_t, Book_record const&)> const& visit);

/// Tells on standard error of bytes behind the last whole entry, if there are any.
void warn_of_stray_bytes(BookReader const& book);

}  // namespace orvelin::tools
