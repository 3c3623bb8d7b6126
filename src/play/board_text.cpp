#include "play/board_text.h"

#include <iomanip>
#include <sstream>
#include <string_view>

#include "play/position_reader.h"

namespace orvelin::play {

namespace {

/// By piece id.
constexpr std::string_view board_letters = " PNBRQK  pnbrqk ";

}  // namespace

std::string board_text(ChessPosition const& position, Tables const& tables, bool chess960) {
    std::ostringstream text;
    std::string_view constexpr rule = "  +---+---+---+---+---+---+---+---+\n";
    text << rule;
    for (int rank = 7; rank >= 0; --rank) {
        text << rank + 1 << " |";
        for (int file = 0; file < 8; ++file) {
            int const id = position.get_piece_id_from(Square(8 * rank + file));
            text << ' ' << board_letters[static_cast<std::size_t>(id & 15)] << " |";
        }
        text << '\n' << rule;
    }
    text << "    a   b   c   d   e   f   g   h\n\nFEN: " << position.fen() << "\nKey: " << std::hex
         << std::uppercase << std::setw(16) << std::setfill('0') << position.get_hash()
         << "\nMoves:";
    for (Move const& move : legal_moves(position, tables)) {
        text << ' ' << move.algebraic(chess960);
    }
    text << '\n';
    return text.str();
}

std::string flipped_fen(ChessPosition const& position, Tables const& tables) {
    ChessPosition other(tables);
    other.fen(position.fen());
    other.flip();
    return other.fen();
}

}  // namespace orvelin::play
