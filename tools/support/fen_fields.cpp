#include "support/fen_fields.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <sstream>
#include <string>
#include <string_view>

#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

void check_rank(std::string const& rank) {
    int files = 0;
    for (char const letter : rank) {
        if (letter >= '1' && letter <= '8') {
            files += letter - '0';
        } else {
            require_fen(piece_letters.find(letter) != std::string_view::npos,
                        std::string("'") + letter + "' is no piece");
            ++files;
        }
    }
    require_fen(files == 8, "the rank \"" + rank + "\" is not 8 squares long");
}

void check_placement(std::string const& placement) {
    int ranks = 0;
    std::istringstream in(placement + "/");
    for (std::string rank; std::getline(in, rank, '/'); ++ranks) {
        check_rank(rank);
    }
    require_fen(ranks == 8, "the placement has " + std::to_string(ranks) + " ranks, not 8");
}

void check_number(std::string const& text, char const* what) {
    bool const digits = std::all_of(text.begin(), text.end(), [](char letter) {
        return std::isdigit(static_cast<unsigned char>(letter)) != 0;
    });
    require_fen(digits && text.size() <= 4,
                "the " + std::string(what) + " is not a number up to 9999: " + text);
}

void check_fields(fen_fields_t const& fields) {
    check_placement(fields.placement);
    require_fen(fields.side_to_move == "w" || fields.side_to_move == "b",
                "the side to move is not w or b: " + fields.side_to_move);
    std::string const& rights = fields.castling_rights;
    require_fen(
        rights == "-" || rights.find_first_not_of("KQkqABCDEFGHabcdefgh") == std::string::npos,
        "these are no castling rights: " + rights);
    std::string const& target = fields.en_passant;
    require_fen(target == "-" || (target.size() == 2 && target[0] >= 'a' && target[0] <= 'h' &&
                                  target[1] == (fields.side_to_move == "w" ? '6' : '3')),
                "this is no en passant square for the side to move: " + target);
    check_number(fields.halfmove_clock, "half-move clock");
    check_number(fields.move_number, "move number");
}

}  // namespace

void require_fen(bool condition, std::string const& fault) {
    if (!condition) {
        throw UsageError("bad FEN: " + fault);
    }
}

std::string fen_fields_t::text() const {
    return placement + ' ' + side_to_move + ' ' + castling_rights + ' ' + en_passant + ' ' +
           halfmove_clock + ' ' + move_number;
}

fen_fields_t read_fen_fields(std::string const& fen) {
    fen_fields_t fields;
    std::array<std::string*, 6> const places{&fields.placement,       &fields.side_to_move,
                                             &fields.castling_rights, &fields.en_passant,
                                             &fields.halfmove_clock,  &fields.move_number};
    std::size_t count = 0;
    std::istringstream in(fen);
    for (std::string field; in >> field; ++count) {
        require_fen(count < places.size(), "something stands behind the move number: " + field);
        *places[count] = field;
    }
    require_fen(count >= 2, "the placement and the side to move are needed, in quotes");
    check_fields(fields);
    return fields;
}

}  // namespace orvelin::tools
