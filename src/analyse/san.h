#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "position/chess_position.h"
#include "position/move.h"

namespace orvelin {
struct Tables;
}

namespace orvelin::analyse {

/// What became of a move text.
enum class san_result : std::uint8_t {
    found,
    /// The text has not the form of a move.
    no_move,
    /// The text stands for a null move, which no game has.
    null_move,
    illegal,
    /// Several legal moves are meant.
    ambiguous,
};

/// The move that a text means, and the empty move when it is not found.
struct FoundMove {
    Move move;
    san_result result = san_result::no_move;
};

/// The one of the legal moves that the text means; see parse_san() for what is understood. The
/// squares of castling may be given as those of the king, or of the king and its rook.
FoundMove find_san(std::span<Move const> legal, std::string_view text);

/// Why a text was not found, as the end of a sentence that begins with the text: "is not legal in
/// <FEN>".
std::string why_not_found(san_result result, std::string const& fen);

/// What to add where the text may have a German, Dutch or French letter for its piece; else
/// nothing.
std::string letters_hint(san_result result, std::string_view text);

/// The generator's own form of a move, whose check bit is true; the empty move when there is none.
Move legal_form(ChessPosition const& position, Tables const& tables, Move const& move);

/// The move in standard algebraic notation, with no more than the disambiguation that it needs and
/// with the sign of check or mate. Empty for a move that is not legal. The move is made and unmade
/// where it gives check.
std::string san(ChessPosition& position, Tables const& tables, Move const& move);

/// The moves of a line, up to the first that is not legal. The position is as before.
std::vector<std::string> san_line(ChessPosition& position, Tables const& tables,
                                  std::span<Move const> moves);
/// The same from a FEN text, which must be one that play::check_fen() takes.
std::vector<std::string> san_line(std::string const& fen, Tables const& tables,
                                  std::span<Move const> moves);

/// "18." before a move of White, "18..." before one of Black.
std::string move_number_text(ChessPosition const& position);

/// A line as a sentence has it: "18.Bd6 Qxb2 19.Rb1", "18...Qxb2 19.Rb1".
std::string numbered_line(ChessPosition& position, Tables const& tables,
                          std::span<Move const> moves);
/// The same from a FEN text, which must be one that play::check_fen() takes.
std::string numbered_line(std::string const& fen, Tables const& tables,
                          std::span<Move const> moves);

}  // namespace orvelin::analyse
