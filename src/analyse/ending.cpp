#include "analyse/ending.h"

#include <algorithm>
#include <cctype>

namespace orvelin::analyse {

namespace {

/// The pieces of a placement, sorted.
std::string pieces_of(std::string_view placement) {
    std::string pieces(placement);
    std::erase_if(pieces, [](char letter) {
        return std::string_view("PNBRQKpnbrqk").find(letter) == std::string_view::npos;
    });
    std::sort(pieces.begin(), pieces.end());
    return pieces;
}

/// The pieces are those of the ending or fewer, each in its colour.
bool fits(std::string const& pieces, Ending const& ending) {
    std::string_view const all = ending.pieces;
    return std::includes(all.begin(), all.end(), pieces.begin(), pieces.end());
}

std::string exchange_colours(std::string_view placement) {
    std::string exchanged(placement);
    for (char& letter : exchanged) {
        auto const code = static_cast<unsigned char>(letter);
        letter =
            static_cast<char>(std::isupper(code) != 0 ? std::tolower(code) : std::toupper(code));
    }
    return exchanged;
}

}  // namespace

std::optional<EndingPosition> in_colours_of(Ending const& ending, std::string_view placement,
                                            bool white_to_move) {
    if (fits(pieces_of(placement), ending)) {
        return EndingPosition{std::string(placement) + (white_to_move ? " w" : " b") + " - - 0 1",
                              false};
    }
    std::string const exchanged = exchange_colours(placement);
    if (fits(pieces_of(exchanged), ending)) {
        return EndingPosition{exchanged + (white_to_move ? " b" : " w") + " - - 0 1", true};
    }
    return std::nullopt;
}

}  // namespace orvelin::analyse
