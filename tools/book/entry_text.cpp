#include "book/entry_text.h"

#include <cstddef>
#include <iomanip>
#include <sstream>
#include <string_view>

#include "book/bk_move.h"
#include "support/counted.h"

namespace orvelin::tools {

namespace {

/// The word before the entry's accessor drops what the engine does not use.
std::uint16_t stored_word(Book_record const& entry) {
    constexpr std::size_t offset = 8;
    auto const high = static_cast<unsigned char>(entry.bytes()[offset]);
    auto const low = static_cast<unsigned char>(entry.bytes()[offset + 1]);
    return static_cast<std::uint16_t>(high << 8 | low);
}

}  // namespace

bool has_known_promotion(Book_record const& entry) {
    return entry.get_move().dump() == stored_word(entry);
}

std::string move_text(Book_record const& entry) {
    constexpr std::string_view letters = "nbrq";
    if (stored_word(entry) == 0) {
        return "0000";
    }
    BKmove const move = entry.get_move();
    std::string text = move.from().name() + move.to().name();
    if (!has_known_promotion(entry)) {
        text += '?';
    } else if (move.code() != 0) {
        text += letters[static_cast<std::size_t>(move.code() - 1)];
    }
    return text;
}

std::string key_text(std::uint64_t key) {
    std::ostringstream out;
    out << std::hex << std::setw(16) << std::setfill('0') << key;
    return out.str();
}

std::string size_text(std::uint64_t entries, std::uint64_t positions) {
    return counted(entries, "entry", "entries") + ", " +
           counted(positions, "position", "positions");
}

}  // namespace orvelin::tools
