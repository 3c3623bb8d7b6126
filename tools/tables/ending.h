#pragma once

#include <array>
#include <string>

#include "position/piece.h"

namespace orvelin::tools {

/// An ending that a table can be built for: White's king and piece 1, Black's king, and piece 2 on
/// the side that its id names.
struct ending_t {
    char const* name;
    piece_t piece1;
    piece_t piece2;
    /// The FEN letters of all four, in the order of the character set.
    char const* pieces;
};

inline constexpr std::array<ending_t, 3> endings{{{"KBNK", white_knight, white_bishop, "BKNk"},
                                                  {"KQKR", white_queen, black_rook, "KQkr"},
                                                  {"KRKN", white_rook, black_knight, "KRkn"}}};

/// All names, for help and error texts.
inline constexpr char const* ending_names = "KBNK, KQKR or KRKN";

/// The ending of this name, in any case; nullptr when there is none.
ending_t const* find_ending(std::string const& name);

}  // namespace orvelin::tools
