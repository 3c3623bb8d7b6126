#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "position/chess_position.h"

namespace orvelin {
struct Tables;
}

namespace orvelin::play {

/// What became of a text: the value, or the reason why there is none.
struct Refusal {
    /// Empty when nothing is wrong; else one line that says what is wrong and where.
    std::string reason;

    bool refused() const { return !reason.empty(); }
};

/// What was read of a `position` line.
struct PositionText {
    Refusal refusal;
    /// What was put right or left out without a refusal, a line each.
    std::vector<std::string> remarks;
    /// Half-moves of the game: those of the FEN text's move number and those made since.
    int game_ply = 0;
    /// The number of moves made since the start position of the line.
    int moves_made = 0;
};

/// A FEN text that is wrong is refused with the reason, which names the field and the place; see
/// docs/play.md for what is put right. What is put right adds a remark, and `repaired` is then a
/// text of six fields for ChessPosition::fen(); it is left alone when the text is refused. Nothing
/// is thrown.
Refusal check_fen(std::string_view fen, std::vector<std::string>& remarks, std::string& repaired);

/// The legal move of the position that the text means: e2e4, e7e8q (in any case of the last
/// letter), castling as the king's step to its target square or onto its own rook. A step that is
/// also a king move without castling means that. The move is the generator's own, with its check
/// bit; the empty move when there is none.
Move find_legal_move(ChessPosition const& position, Tables const& tables, std::string_view text);

/// The same among the legal moves of a position.
Move find_move(std::vector<Move> const& legal, std::string_view text);

/// What to add to a message about a text that is no legal move, where only the letter of a
/// promotion is missing; else nothing.
std::string promotion_hint(std::vector<Move> const& legal, std::string_view text);

/// All legal moves, in the generator's order.
std::vector<Move> legal_moves(ChessPosition const& position, Tables const& tables);

/// Reads what follows the word `position`: `startpos` or `fen` with 4 to 6 fields, then perhaps
/// `moves` and moves. Sets `position` up when nothing is refused; else leaves it in some valid
/// state, not to be played from.
PositionText read_position(std::string_view arguments, Tables const& tables,
                           ChessPosition& position);

}  // namespace orvelin::play
