#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "position/chess_position.h"
#include "position/move.h"

namespace orvelin {
struct Tables;
}

namespace orvelin::board {

class Request;

/// How a game is over by the rules.
struct GameEnd {
    enum class kind : std::uint8_t {
        checkmate,
        stalemate,
        /// The position is there for the third time.
        repetition,
        /// Fifty moves of each side without progress.
        fifty,
        /// No side can ever give mate.
        material,
    };

    kind what = kind::checkmate;
    /// "1-0", "0-1" or "1/2-1/2".
    std::string result;
};

/// A game as a page tells it: where it begins, and the moves made since. One thread at a time; the
/// tables must outlive it.
class BoardGame {
 public:
    /// Half-moves. Longer games are no games of people.
    static constexpr std::size_t most_moves = 4000;

    /// Reads the fields "start", "chess960" and "moves".
    /// @throws RequestError when the start is no position, or a move is not legal.
    BoardGame(Request const& request, Tables const& tables);

    /// Six fields.
    std::string const& start_fen() const { return start_fen_; }
    bool chess960() const { return chess960_; }
    std::vector<Move> const& moves() const { return moves_; }
    /// What was put right in the text of the start, a line each.
    std::vector<std::string> const& remarks() const { return remarks_; }
    /// Behind the moves.
    ChessPosition& position() { return position_; }

    /// All moves as players write them.
    std::vector<std::string> sans() const;
    std::vector<Move> legal_moves() const;
    /// The position behind so many of the moves.
    std::string fen_at(std::size_t ply) const;
    /// Nothing while the game goes on.
    std::optional<GameEnd> end() const;

    /// Makes a move, of which the number is told in messages.
    /// @throws RequestError when it is not legal.
    void make(std::string_view text, std::size_t number);

 private:
    void note_position();

    Tables const& tables_;
    ChessPosition position_;
    std::string start_fen_;
    bool chess960_ = false;
    std::vector<std::string> remarks_;
    std::vector<Move> moves_;
    /// Each position since the last capture or move of a pawn, as a text that two positions share
    /// when they are the same by the rules.
    std::vector<std::string> reversible_;
};

}  // namespace orvelin::board
