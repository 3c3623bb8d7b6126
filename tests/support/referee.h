#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "position/move_list.h"

namespace orvelin::test {

/// Follows a game beside the players: tells which moves are legal and when the game is over.
/// Works on the shared tables, which it only reads.
class Referee {
 public:
    explicit Referee(std::string const& fen);

    /// Makes the move that reads so; false, and nothing made, when no legal move does.
    bool play(std::string const& move);

    /// The texts of all legal moves, in the order of generation.
    std::vector<std::string> legal_moves() const;

    /// How the game ended: "checkmate", "stalemate", "repetition", "fifty moves" or "material";
    /// empty while it goes on.
    std::string verdict() const;

    std::string fen() const { return position_.fen(); }

 private:
    void generate();
    bool insufficient_material() const;

    ChessPosition position_;
    MoveGenerator generator_;
    MoveList moves_;
    std::map<std::uint64_t, int> seen_;
};

}  // namespace orvelin::test
