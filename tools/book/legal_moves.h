#pragma once

#include <optional>
#include <string>

#include "position/move.h"

namespace orvelin {
class ChessPosition;
class MoveGenerator;
}  // namespace orvelin

namespace orvelin::tools {

/// Whether the move is legal in the position. Its check bit does not count.
bool is_legal(MoveGenerator& generator, ChessPosition const& position, Move move);

/// The legal move of a UCI text, with castling in either notation; nothing when there is none.
std::optional<Move> find_legal_move(MoveGenerator& generator, ChessPosition const& position,
                                    std::string const& text);

}  // namespace orvelin::tools
