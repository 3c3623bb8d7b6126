#pragma once

#include <string>

namespace orvelin {
class ChessPosition;
}  // namespace orvelin

namespace orvelin::tools {

/// The start position of standard chess.
inline constexpr char const* start_fen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

/// Sets the position to a FEN text that a user gave. The fields behind the side to move may be
/// missing: no castling, no en passant, 0 and 1.
///
/// Stricter than `ChessPosition::fen`, which takes any placement: move generation presumes one
/// king a side, no check against the side that has moved and no more pieces than promotions give.
/// @throws UsageError that names the fault; the position is then without meaning.
void set_position(ChessPosition& position, std::string const& fen);

}  // namespace orvelin::tools
