#pragma once

#include <cstdint>
#include <string>

#include "book/book_record.h"

namespace orvelin::tools {

/// Whether the entry's move has one of the promotion fields of the format, 0 to 4, and no bit
/// above it. The engine ignores any other.
bool has_known_promotion(Book_record const& entry);

/// The move as it stands in the entry: both squares, then the letter of the promotion, or '?' for
/// one that the format does not know. "0000" for the word that means no move.
std::string move_text(Book_record const& entry);

/// A key as 16 hexadecimal digits.
std::string key_text(std::uint64_t key);

/// "N entries, M positions".
std::string size_text(std::uint64_t entries, std::uint64_t positions);

}  // namespace orvelin::tools
