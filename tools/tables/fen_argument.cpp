#include "tables/fen_argument.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <sstream>
#include <string_view>
#include <vector>

#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

constexpr std::string_view man_letters = "KkNBRQnbrqPp";

[[noreturn]] void fail(std::string const& fen, std::string const& fault) {
    throw UsageError("bad FEN \"" + fen + "\": " + fault);
}

std::vector<std::string> split_fields(std::string const& fen) {
    std::istringstream in(fen);
    std::vector<std::string> fields;
    for (std::string field; in >> field;) {
        fields.push_back(field);
    }
    return fields;
}

void check_rank(std::string const& fen, std::string const& rank) {
    int files = 0;
    for (char const letter : rank) {
        if (letter >= '1' && letter <= '8') {
            files += letter - '0';
        } else if (man_letters.find(letter) != std::string_view::npos) {
            ++files;
        } else {
            fail(fen, std::string("'") + letter + "' is no man");
        }
    }
    if (files != 8) {
        fail(fen, "the rank \"" + rank + "\" is not 8 squares long");
    }
}

void check_placement(std::string const& fen, std::string const& placement) {
    int ranks = 0;
    std::istringstream in(placement + "/");
    for (std::string rank; std::getline(in, rank, '/'); ++ranks) {
        check_rank(fen, rank);
    }
    if (ranks != 8) {
        fail(fen, "the placement has " + std::to_string(ranks) + " ranks, not 8");
    }
}

/// A table knows neither castling nor pawns; its values would not be true with them.
void check_fields(std::string const& fen, std::vector<std::string> const& fields) {
    if (fields.size() < 2) {
        fail(fen, "the placement and the side to move are needed, in quotes");
    }
    if (fields.size() > 6) {
        fail(fen, "something stands behind the move number");
    }
    check_placement(fen, fields[0]);
    if (fields[1] != "w" && fields[1] != "b") {
        fail(fen, "the side to move is not w or b");
    }
    if (fields.size() > 2 && fields[2] != "-") {
        fail(fen, "a table knows no castling");
    }
    if (fields.size() > 3 && fields[3] != "-") {
        fail(fen, "a table knows no en passant");
    }
    for (std::size_t i = 4; i < fields.size(); ++i) {
        bool const number = std::all_of(fields[i].begin(), fields[i].end(), [](char letter) {
            return std::isdigit(static_cast<unsigned char>(letter)) != 0;
        });
        if (!number) {
            fail(fen, "\"" + fields[i] + "\" is no number");
        }
    }
}

/// The men of a placement, sorted.
std::string men_of(std::string placement) {
    std::erase_if(placement,
                  [](char letter) { return man_letters.find(letter) == std::string_view::npos; });
    std::sort(placement.begin(), placement.end());
    return placement;
}

/// The men are those of the ending or fewer, each in its colour.
bool fits(std::string const& men, ending_t const& ending) {
    std::string_view const all = ending.men;
    return std::includes(all.begin(), all.end(), men.begin(), men.end());
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
    std::vector<std::string> const fields = split_fields(fen);
    check_fields(fen, fields);
    std::string const& placement = fields[0];
    std::string const men = men_of(placement);
    if (std::count(men.begin(), men.end(), 'K') != 1) {
        fail(fen, "White has not exactly one king");
    }
    if (std::count(men.begin(), men.end(), 'k') != 1) {
        fail(fen, "Black has not exactly one king");
    }
    if (fits(men, ending)) {
        return {placement + ' ' + fields[1] + " - - 0 1", false};
    }
    std::string const exchanged = exchange_colours(placement);
    if (!fits(men_of(exchanged), ending)) {
        fail(fen, std::string("its men are not those of ") + ending.name);
    }
    return {exchanged + (fields[1] == "w" ? " b" : " w") + " - - 0 1", true};
}

}  // namespace orvelin::tools
