#pragma once

#include <string>

#include "position/chess_position.h"

namespace orvelin::play {

/// The position for a person: board, FEN text, key and legal moves, with line ends.
std::string board_text(ChessPosition const& position, Tables const& tables, bool chess960);

/// The FEN text of the position with the colours exchanged, top to bottom.
std::string flipped_fen(ChessPosition const& position, Tables const& tables);

}  // namespace orvelin::play
