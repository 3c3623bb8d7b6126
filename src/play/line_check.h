#pragma once

#include <vector>

#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "position/move.h"
#include "search/principal_variation.h"

namespace orvelin::play {

/// Cuts lines of the search down to what is true of them.
///
/// Behind a repetition, or where a mate bounds the window, the search leaves moves of another line
/// at the end of one. Plays each line out on a position of its own. One thread at a time.
class LineCheck {
 public:
    LineCheck(Tables const& tables, ChessPosition const& root);

    /// The moves of the line up to the first that is not legal, or to the end of the game as the
    /// search sees it: mate, stalemate, a repetition, or fifty moves without progress.
    std::vector<Move> true_part(PrincipalVariation const& line);

    /// Whether the game is over behind these moves of the root, in the same sense.
    bool ends_game(std::vector<Move> const& moves);

    /// All legal moves of the root.
    std::vector<Move> const& root_moves() const { return root_moves_; }

 private:
    std::vector<Move> legal_moves();
    bool is_drawn() const;

    ChessPosition position_;
    MoveGenerator generator_;
    std::vector<Move> root_moves_;
};

}  // namespace orvelin::play
