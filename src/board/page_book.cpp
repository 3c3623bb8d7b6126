#include "board/page_book.h"

#include <algorithm>

#include "board/request.h"

namespace orvelin::board {

void PageBook::take(std::string_view bytes) {
    entries_.clear();
    std::vector<Book_record> entries;
    for (; bytes.size() >= Book_record::size; bytes.remove_prefix(Book_record::size)) {
        entries.emplace_back(bytes.data());
    }
    if (entries.empty() || !bytes.empty() || !std::is_sorted(entries.begin(), entries.end())) {
        throw RequestError("this is no book in the Polyglot format");
    }
    entries_ = std::move(entries);
}

std::vector<Book_record> PageBook::entries_of(std::uint64_t key) const {
    Book_record wanted;
    wanted.set_key(key);
    auto const [begin, end] = std::equal_range(entries_.begin(), entries_.end(), wanted);
    return {begin, end};
}

}  // namespace orvelin::board
