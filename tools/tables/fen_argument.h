#pragma once

#include <string>

#include "tables/ending.h"

namespace orvelin::tools {

using ending_position_t = analyse::EndingPosition;

/// Reads a FEN text that a user gave for a table of this ending. The fields behind the side to move
/// may be missing.
///
/// The pieces must be the kings and the others of the ending or fewer, in either colours.
/// @throws UsageError that names the fault.
ending_position_t read_ending_position(std::string const& fen, ending_t const& ending);

}  // namespace orvelin::tools
