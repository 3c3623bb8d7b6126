#include "tables/fen_argument.h"

#include <algorithm>
#include <string>

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

}  // namespace

ending_position_t read_ending_position(std::string const& fen, ending_t const& ending) {
    fen_fields_t const fields = read_fields(fen);
    std::string const& placement = fields.placement;
    require_fen(std::count(placement.begin(), placement.end(), 'K') == 1,
                "White has not exactly one king");
    require_fen(std::count(placement.begin(), placement.end(), 'k') == 1,
                "Black has not exactly one king");
    auto const position = analyse::in_colours_of(ending, placement, fields.side_to_move == "w");
    require_fen(position.has_value(), std::string("its pieces are not those of ") + ending.name);
    return *position;
}

}  // namespace orvelin::tools
