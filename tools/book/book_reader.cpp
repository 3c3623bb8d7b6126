#include "book/book_reader.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <system_error>

#include "platform/path.h"
#include "support/progress.h"

namespace orvelin::tools {

namespace {

[[noreturn]] void fail(std::string const& name, std::string const& reason) {
    throw std::runtime_error("cannot read " + name + ": " + reason);
}

}  // namespace

BookReader::BookReader(std::string const& name) : name_(name) {
    std::error_code error;
    std::filesystem::file_status const status = std::filesystem::status(path_of(name), error);
    if (!std::filesystem::exists(status)) {
        fail(name, error.message());
    }
    // A folder opens as a file, and a pipe has no size.
    if (!std::filesystem::is_regular_file(status)) {
        fail(name, "not a regular file");
    }
    file_.open(path_of(name), std::ios::binary);
    if (!file_) {
        fail(name, std::strerror(errno));
    }
    std::uint64_t const bytes = std::filesystem::file_size(path_of(name));
    size_ = bytes / Book_record::size;
    stray_bytes_ = bytes % Book_record::size;
}

bool BookReader::read(Book_record& entry) {
    if (next_ >= size_) {
        return false;
    }
    ++next_;
    if (!file_.read(entry.bytes(), Book_record::size)) {
        fail(name_, "entry " + std::to_string(next_) + " cannot be read");
    }
    return true;
}

void BookReader::seek(std::uint64_t index) {
    next_ = index;
    file_.seekg(static_cast<std::streamoff>(index * Book_record::size));
}

void for_each_entry(BookReader& book,
                    std::function<void(std::uint64_t, Book_record const&)> const& visit) {
    constexpr std::uint64_t interval = 1 << 16;
    Progress progress;
    std::uint64_t number = 0;
    for (Book_record entry; book.read(entry);) {
        visit(++number, entry);
        if (number % interval != 0) {
            continue;
        }
        progress.show(std::to_string(number) + " of " + std::to_string(book.size()) + " entries");
    }
}

void warn_of_stray_bytes(BookReader const& book) {
    if (book.stray_bytes() == 0) {
        return;
    }
    std::cerr << "warning: " << book.name() << " ends in " << book.stray_bytes()
              << " stray bytes, which are ignored" << std::endl;
}

}  // namespace orvelin::tools
