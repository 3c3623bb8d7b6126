#include "tables/fen_argument.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

#include "support/fen_fields.h"

namespace orvelin::tools {

namespace {

/// A table knows neither castling nor pawns; its values would not be true with them.
fen_fields_t read_fields(std::string const& fen) {
    fen_fields_t fields = read_fen_fields(fen);
    require_fen(fields.castling_rights == "-", "a table knows no castling");
    require_fen(fields.en_passant == "-", "a table knows no en passant");
    return fields;
}

/// The pieces of a placement, sorted.
std::string pieces_of(std::string placement) {
    std::erase_if(placement,
                  [](char letter) { return piece_letters.find(letter) == std::string_view::npos; });
    std::sort(placement.begin(), placement.end());
    return placement;
}

/// The pieces are those of the ending or fewer, each in its colour.
bool fits(std::string const& pieces, ending_t const& ending) {
    std::string_view const all = ending.pieces;
    return std::includes(all.begin(), all.end(), pieces.begin(), pieces.end());
}

std::string exchange_colours(std::string placement) {
    for (char& letter : placement) {
        auto const code = static_cast<unsigned char>(letter);
        letter =
            static_cast<char>(std::isupper(code) != 0 ? std::tolower(code) : std::toupper(code));
    }
    return placement;
}

}  // namespace

ending_position_t read_ending_position(std::string const& fen, ending_t const& ending) {
    fen_fields_t const fields = read_fields(fen);
    std::string const& placement = fields.placement;
    std::string const pieces = pieces_of(placement);
    require_fen(std::count(pieces.begin(), pieces.end(), 'K') == 1,
                "White has not exactly one king");
    require_fen(std::count(pieces.begin(), pieces.end(), 'k') == 1,
                "Black has not exactly one king");
    bool const white = fields.side_to_move == "w";
    if (fits(pieces, ending)) {
        return {placement + (white ? " w" : " b") + " - - 0 1", false};
    }
    std::string const exchanged = exchange_colours(placement);
    require_fen(fits(pieces_of(exchanged), ending),
                std::string("its pieces are not those of ") + ending.name);
    return {exchanged + (white ? " b" : " w") + " - - 0 1", true};
}

}  // namespace orvelin::tools
