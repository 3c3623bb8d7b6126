#include "book/book_lookup.h"

#include "book/book_reader.h"

namespace orvelin::tools {

namespace {

/// Where to begin the scan. It is the lower bound of the first hit, not the first entry of the
/// key: the engine begins there too, and in a file that is not sorted that makes a difference.
std::uint64_t start_of_scan(BookReader& book, std::uint64_t key) {
    std::uint64_t low = 0;
    std::uint64_t high = book.size();
    Book_record probe;
    while (high - low > 1) {
        std::uint64_t const middle = low + (high - low) / 2;
        book.seek(middle);
        book.read(probe);
        if (probe.get_key() == key) {
            break;
        }
        (key < probe.get_key() ? high : low) = middle;
    }
    return low;
}

}  // namespace

std::vector<Book_record> entries_of_key(BookReader& book, std::uint64_t key) {
    std::vector<Book_record> entries;
    book.seek(start_of_scan(book, key));
    for (Book_record entry; book.read(entry) && entry.get_key() <= key;) {
        if (entry.get_key() == key) {
            entries.push_back(entry);
        }
    }
    return entries;
}

}  // namespace orvelin::tools
