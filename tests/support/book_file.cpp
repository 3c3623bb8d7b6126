#include "support/book_file.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "book/bk_move.h"
#include "book/book.h"

namespace orvelin::test {

Book_record book_entry(std::uint64_t key, int word, int weight) {
    Book_record entry;
    entry.set_key(key);
    entry.set_move(BKmove(static_cast<std::uint16_t>(word)));
    entry.set_weight(static_cast<std::uint16_t>(weight));
    return entry;
}

std::string book_bytes(std::vector<Book_record> const& entries) {
    std::string bytes;
    bytes.reserve(entries.size() * Book_record::size);
    for (Book_record const& entry : entries) {
        bytes.append(entry.bytes(), Book_record::size);
    }
    return bytes;
}

BookFile::BookFile(std::vector<Book_record> const& entries) : BookFile(book_bytes(entries)) {}

BookFile::BookFile(std::string const& bytes) {
    write(bytes);
}

void BookFile::write(std::string const& bytes) const {
    std::ofstream file(name_, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + name_);
    }
}

void BookFile::truncate(std::size_t size) const {
    std::filesystem::resize_file(name_, size);
}

std::uint16_t look_up(BookFile const& file, std::uint64_t key) {
    Book book;
    book.set_name(file.name());
    book.open();
    return book.get_move(key);
}

}  // namespace orvelin::test
