#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "position/piece.h"

namespace orvelin::analyse {

/// An ending that a table can be built for: White's king and piece 1, Black's king, and piece 2 on
/// the side that its id names.
struct Ending {
    char const* name;
    piece_t piece1;
    piece_t piece2;
    /// The FEN letters of all four, in the order of the character set.
    char const* pieces;
};

inline constexpr std::array<Ending, 3> endings{{{"KBNK", white_knight, white_bishop, "BKNk"},
                                                {"KQKR", white_queen, black_rook, "KQkr"},
                                                {"KRKN", white_rook, black_knight, "KRkn"}}};

/// A position in the colours of an ending.
struct EndingPosition {
    std::string fen;
    /// White of `fen` is Black of the position that was asked for, so that its value has the other
    /// sign.
    bool exchanged = false;
};

/// The first field of a FEN text in the colours of an ending, nothing when its pieces are not those
/// of the ending or fewer. There must be one king of each side; castling and en passant are left
/// out, since a table knows neither.
///
/// The colours are exchanged here rather than by `Egt4Pieces::fen`, which takes a lone second piece
/// for one of the ending's own colour whichever it has.
std::optional<EndingPosition> in_colours_of(Ending const& ending, std::string_view placement,
                                            bool white_to_move);

}  // namespace orvelin::analyse
