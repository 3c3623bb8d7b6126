#pragma once

#include <string>
#include <string_view>

namespace orvelin::tools {

/// The letters of the pieces in a FEN text.
inline constexpr std::string_view piece_letters = "PNBRQKpnbrqk";

/// A FEN text that a user gave, field by field.
struct fen_fields_t {
    /// Eight ranks of eight squares.
    std::string placement;
    /// w or b.
    std::string side_to_move;
    /// A minus sign, or letters of castling rights.
    std::string castling_rights = "-";
    /// A minus sign, or a square behind which a pawn of the other side may stand.
    std::string en_passant = "-";
    /// Numbers up to 9999.
    std::string halfmove_clock = "0";
    std::string move_number = "1";

    /// All six fields.
    std::string text() const;
};

/// Throws what is wrong with the FEN text unless the condition holds.
/// @throws UsageError
void require_fen(bool condition, std::string const& fault);

/// Reads a FEN text by its form alone, as all tools do; whether the position makes sense is for the
/// caller. The fields behind the side to move may be missing.
/// @throws UsageError that names the fault.
fen_fields_t read_fen_fields(std::string const& fen);

}  // namespace orvelin::tools
