#include "position/board_tables.h"

#include "generation/attacks.h"
#include "generation/connections.h"

namespace orvelin {

BitBoard const& BoardTables::knight(Square const& square) const {
    return attacks.knight(square);
}

BitBoard const& BoardTables::king(Square const& square) const {
    return attacks.king(square);
}

BitBoard const& BoardTables::bishop(Square const& square, BitBoard const& occupied) const {
    return attacks.bishop(square, occupied);
}

BitBoard const& BoardTables::rook(Square const& square, BitBoard const& occupied) const {
    return attacks.rook(square, occupied);
}

BitBoard BoardTables::queen(Square const& square, BitBoard const& occupied) const {
    return attacks.queen(square, occupied);
}

BitBoard const& BoardTables::empty_board_bishop(Square const& square) const {
    return connections.bishop_attacks(square);
}

BitBoard const& BoardTables::empty_board_rook(Square const& square) const {
    return connections.rook_attacks(square);
}

BitBoard const& BoardTables::line_segment(Square const& a, Square const& b) const {
    return connections.line_segment(a, b);
}

}  // namespace orvelin
