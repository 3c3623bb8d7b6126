#pragma once

#include <cstdint>
#include <string_view>

#include "position/castling_targets.h"
#include "position/move.h"

namespace orvelin::analyse {

/// What a move text says, before the board is looked at.
struct SanText {
    enum class form : std::uint8_t {
        /// Neither a move nor a null move.
        none,
        /// "--", "Z0" and their like.
        null_move,
        /// A piece, perhaps where it comes from, and where it goes.
        step,
        short_castling,
        long_castling,
    };

    form what = form::none;
    /// The piece as the low three bits of its id, 0 when the text leaves it open as "g1f3" does.
    int piece = 0;
    /// Where the piece comes from, -1 for what the text does not say.
    int from_file = -1;
    int from_rank = -1;
    int to = 0;
    /// A promotion, or normal_move.
    move_t promotion = normal_move;
};

/// Reads a move of standard algebraic notation, as the export format writes it or as the games of
/// real databases do: with or without signs of check, capture and praise, "0-0", "e8Q", "e8(Q)",
/// "Ng1-f3", "exd6e.p.", and the moves of UCI.
SanText parse_san(std::string_view text);

/// Whether a legal move is what the text says.
inline bool is_meant(SanText const& text, Move const& move) {
    bool const castles = move.code() == castling;
    if (text.what != SanText::form::step) {
        return castles && (text.what == SanText::form::short_castling) == (move.to() > move.from());
    }
    Square const from = move.from();
    if (move.to().id() != text.to ||
        (text.from_file >= 0 && from.file_number() != text.from_file) ||
        (text.from_rank >= 0 && from.rank_number() != text.from_rank)) {
        return false;
    }
    bool const promotes = move.code() >= promo_queen && move.code() <= promo_knight;
    if ((promotes ? move.code() : normal_move) != text.promotion) {
        return false;
    }
    if (text.piece == 0) {
        return true;
    }
    // Without its file a pawn goes straight on: a capture names it.
    return (move.piece_id() & 7) == text.piece && !castles &&
           (text.piece != white_pawn || text.from_file >= 0 ||
            from.file_number() == move.to().file_number());
}

}  // namespace orvelin::analyse
