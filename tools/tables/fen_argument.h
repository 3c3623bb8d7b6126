#pragma once

#include <string>

#include "tables/ending.h"

namespace orvelin::tools {

/// A position in the colours of an ending.
struct ending_position_t {
    std::string fen;
    /// White of `fen` is Black of the position that was asked for, so that its value has the other
    /// sign.
    bool exchanged;
};

/// Reads a FEN text that a user gave for a table of this ending. The fields behind the side to move
/// may be missing.
///
/// The pieces must be the kings and the others of the ending or fewer, in either colours. The
/// colours are exchanged here rather than by `Egt4Pieces::fen`, which takes a lone second piece for
/// one of the ending's own colour whichever it has.
/// @throws UsageError that names the fault.
ending_position_t read_ending_position(std::string const& fen, ending_t const& ending);

}  // namespace orvelin::tools
