#pragma once

#include <string_view>

namespace orvelin {
class ChessPosition;
}

namespace orvelin::play {

/// So many plies without a capture or a pawn move draw the game, unless the last one gives mate.
/// The search counts a draw beyond them.
inline constexpr int last_reversible_ply = 100;

/// Whether the game is drawn whatever is played, as long as a move is left: no side can ever give
/// mate with the pieces on the board (a minor piece at most, or bishops of one square colour), or
/// fifty moves of each side have gone by without progress. Mate and stalemate are not looked for.
bool is_dead_draw(ChessPosition const& position);

/// Whether no side can ever give mate with the pieces of a FEN text, of which only the first field
/// is looked at.
bool is_mate_impossible(std::string_view fen);

}  // namespace orvelin::play
