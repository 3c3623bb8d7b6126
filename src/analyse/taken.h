#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "position/move.h"
#include "position/piece.h"
#include "position/square.h"

namespace orvelin::analyse {

/// What the move before a position took. Who takes back there only gets what is his.
struct Taken {
    /// That of White, white_pawn to white_queen, whatever its colour.
    piece_t kind = white_pawn;
    /// Where the piece stands that took it.
    Square square;
};

/// Nothing for a move that takes nothing, and for the empty move.
std::optional<Taken> taken_by(Move const& move);

/// "nd5" for a knight; "pe3" for a pawn that was taken en passant by one that is on e3 now.
std::string taken_text(Taken const& taken);

/// Nothing for another text.
std::optional<Taken> parse_taken(std::string_view text);

}  // namespace orvelin::analyse
