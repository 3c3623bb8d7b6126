#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "position/move_list.h"

namespace orvelin::test {

/// The game position as an interface knows it, beside the engine. It is lost when the engine makes
/// a move that the rules do not know, and known again from the next start.
class TrackedGame {
 public:
    /// The start position.
    TrackedGame();

    /// Begins from a position, with no moves made yet.
    void start(std::string const& fen);
    /// Makes the legal move that reads so, castling in either notation. Any other text, and one
    /// that two moves share, loses the position.
    void play(std::string const& move);
    void lose() { known_ = false; }

    bool known() const { return known_; }
    std::string fen() const { return position_->fen(); }
    /// The texts of all legal moves, castling as the king's step.
    std::vector<std::string> legal_moves() const;
    /// Whether a legal move reads so, castling in either notation.
    bool legal(std::string const& move) const { return count(move) > 0; }
    bool over() const { return moves_.size() == 0; }
    /// The `position` command that leads here.
    std::string command() const;
    std::size_t length() const { return played_.size(); }

 private:
    std::size_t count(std::string const& move) const;
    void generate();

    MoveGenerator generator_;
    std::optional<ChessPosition> position_;
    MoveList moves_;
    std::string start_;
    std::vector<std::string> played_;
    bool known_ = true;
};

}  // namespace orvelin::test
