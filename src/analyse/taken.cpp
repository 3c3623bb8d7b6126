#include "analyse/taken.h"

namespace orvelin::analyse {

namespace {

/// In the order of `piece_t`.
constexpr std::string_view taken_letters = "pnbrq";

}  // namespace

std::optional<Taken> taken_by(Move const& move) {
    constexpr int kind_bits = 7;
    int const kind = move.capture_id() & kind_bits;
    if (kind < white_pawn || kind > white_queen) {
        return std::nullopt;
    }
    return Taken{static_cast<piece_t>(kind), move.to()};
}

std::string taken_text(Taken const& taken) {
    return {taken_letters[static_cast<std::size_t>(taken.kind - white_pawn)], taken.square.file(),
            taken.square.rank()};
}

std::optional<Taken> parse_taken(std::string_view text) {
    std::size_t const kind =
        text.size() == 3 ? taken_letters.find(text[0]) : std::string_view::npos;
    if (kind == std::string_view::npos || text[1] < 'a' || text[1] > 'h' || text[2] < '1' ||
        text[2] > '8') {
        return std::nullopt;
    }
    return Taken{static_cast<piece_t>(white_pawn + static_cast<int>(kind)),
                 Square(std::string(text.substr(1)))};
}

}  // namespace orvelin::analyse
