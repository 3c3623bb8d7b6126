#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "book/book_record.h"
#include "support/temporary_directory.h"

namespace orvelin::test {

/// An entry of a book with nothing learnt.
Book_record book_entry(std::uint64_t key, int word, int weight);

/// The bytes of the entries, one behind the other.
std::string book_bytes(std::vector<Book_record> const& entries);

/// A book file in a directory of its own, removed at the end of the object's life.
class BookFile {
 public:
    /// Holds the entries in the order given.
    explicit BookFile(std::vector<Book_record> const& entries);
    /// Holds these bytes, be they a book or not.
    explicit BookFile(std::string const& bytes);

    /// Full name of the file.
    std::string const& name() const { return name_; }
    /// Puts other bytes into the same file, be it open elsewhere or not.
    void write(std::string const& bytes) const;
    /// Shortens the file, be it open elsewhere or not.
    void truncate(std::size_t size) const;

 private:
    TemporaryDirectory directory_;
    std::string name_ = directory_.file("book.bin");
};

/// What a newly opened book on the file gives for the key.
///
/// A young book draws no negative number for its first two seconds, in which the later entries of
/// a key have their chance.
std::uint16_t look_up(BookFile const& file, std::uint64_t key);

}  // namespace orvelin::test
