#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "position/move_list.h"

namespace orvelin::test {

/// Follows a game beside the players: tells which moves are legal and when the game is over.
///
/// Moves are named by their texts, castling in either notation. The position is lost when a text
/// names no legal move, and known again from the next start. Works on the shared tables, which it
/// only reads.
class Referee {
 public:
    /// From the start position.
    Referee();
    explicit Referee(std::string const& fen);

    /// Begins from a position, with no moves made yet.
    void start(std::string const& fen);
    /// Makes the legal move that reads so; false, and nothing made, when none does.
    bool play(std::string const& move);
    void lose() { known_ = false; }

    /// The position is that of the players.
    bool known() const { return known_; }
    std::string fen() const { return position_.fen(); }
    /// The `position` command that leads here.
    std::string command() const;
    /// Number of moves made.
    std::size_t length() const { return played_.size(); }

    /// The texts of all legal moves, castling as the king's step, in the order of generation.
    std::vector<std::string> legal_moves() const;
    /// Whether a legal move reads so.
    bool legal(std::string const& move) const;
    /// No legal move is left.
    bool over() const { return moves_.size() == 0; }
    /// How the game ended: "checkmate", "stalemate", "repetition", "fifty moves" or "material";
    /// empty while it goes on.
    std::string verdict() const;

 private:
    void generate();
    bool insufficient_material() const;

    ChessPosition position_;
    MoveGenerator generator_;
    MoveList moves_;
    std::map<std::uint64_t, int> seen_;
    std::string start_;
    std::vector<std::string> played_;
    bool known_ = true;
};

}  // namespace orvelin::test
