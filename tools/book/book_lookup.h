#pragma once

#include <cstdint>
#include <vector>

#include "book/book_record.h"

namespace orvelin::tools {

class BookReader;

/// The entries of a key that the engine draws from, in the order of the file.
///
/// Exactly these even in a file that is not sorted, where the engine misses some.
std::vector<Book_record> entries_of_key(BookReader& book, std::uint64_t key);

}  // namespace orvelin::tools
