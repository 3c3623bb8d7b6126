#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "position/chess_position.h"

namespace orvelin::analyse {

/// The position from which a game or an analysis begins.
struct GameStart {
    /// Why there is none; else empty.
    std::string reason;
    /// Six fields, good for ChessPosition::fen().
    std::string fen;
    /// Whether moves are to be written as those of Chess960.
    bool chess960 = false;
    /// What was put right, a line each.
    std::vector<std::string> remarks;
};

/// The six fields of the start of chess.
std::string const& standard_start();

/// Whether the name of a game's kind means chess or Chess960; the latter is told by `chess960`. No
/// name means chess.
bool read_variant(std::string_view name, bool& chess960);

/// What a FEN text, read by play::check_fen(), and the name of the kind stand for. The position is
/// set up with it when there is no reason against it. Castling rights that only Chess960 knows make
/// it that.
GameStart set_up_start(std::string_view fen, bool chess960, ChessPosition& position);

}  // namespace orvelin::analyse
