// Who attacks what, pins and check.

#include "position/chess_position.h"
#include "position/set_steps.h"
#include "position/side.h"

namespace orvelin {

template <int Side>
BitBoard ChessPosition::pawn_attackers(BitBoard const& target) const {
    // Where an enemy pawn on the target would attack.
    return pawn_attacks<enemy_of<Side>>(target) & piece(SideOf<Side>::pawn);
}

template <int Side>
BitBoard ChessPosition::attackers(BitBoard const& target, BitBoard const& occupied) const {
    using own = SideOf<Side>;
    const Square square = target.get_unique_square();
    BitBoard const& queens = piece(own::queen);
    return pawn_attackers<Side>(target) | (board_tables_.knight(square) & piece(own::knight)) |
           (board_tables_.bishop(square, occupied) & (piece(own::bishop) | queens)) |
           (board_tables_.rook(square, occupied) & (piece(own::rook) | queens)) |
           (board_tables_.king(square) & piece(own::king));
}

template <int Side>
Square ChessPosition::weakest_attacker(Square const& square) const {
    using own = SideOf<Side>;
    if (const BitBoard found = pawn_attackers<Side>(square.bitboard())) {
        return found.get_first_square();
    }
    if (const BitBoard found = board_tables_.knight(square) & piece(own::knight)) {
        return found.get_first_square();
    }
    const BitBoard diagonals_seen = board_tables_.bishop(square, pieces());
    if (const BitBoard found = diagonals_seen & piece(own::bishop)) {
        return found.get_first_square();
    }
    const BitBoard lines_seen = board_tables_.rook(square, pieces());
    if (const BitBoard found = lines_seen & piece(own::rook)) {
        return found.get_first_square();
    }
    if (const BitBoard found = (diagonals_seen | lines_seen) & piece(own::queen)) {
        return found.get_first_square();
    }
    return (board_tables_.king(square) & piece(own::king)).get_first_square();
}

Square ChessPosition::white_weakest_attacker(Square const& square) const {
    return weakest_attacker<side::white>(square);
}

Square ChessPosition::black_weakest_attacker(Square const& square) const {
    return weakest_attacker<side::black>(square);
}

BitBoard ChessPosition::white_attackers(BitBoard const& target) const {
    return attackers<side::white>(target, pieces());
}

BitBoard ChessPosition::black_attackers(BitBoard const& target) const {
    return attackers<side::black>(target, pieces());
}

BitBoard ChessPosition::white_blocked_attackers(BitBoard const& target) const {
    return attackers<side::white>(target, BitBoard());
}

BitBoard ChessPosition::black_blocked_attackers(BitBoard const& target) const {
    return attackers<side::black>(target, BitBoard());
}

bool ChessPosition::white_attacks(BitBoard const& target) const {
    return static_cast<bool>(white_attackers(target));
}

bool ChessPosition::black_attacks(BitBoard const& target) const {
    return static_cast<bool>(black_attackers(target));
}

template <int Side>
void ChessPosition::find_pins_to_king() {
    using enemy = SideOf<enemy_of<Side>>;
    history_t& current = record();
    const Square king = Side == side::white ? current.white_kingsfield : current.black_kingsfield;
    BitBoard const& enemy_pieces = Side == side::white ? black_pieces() : white_pieces();
    BitBoard const& enemy_queens = piece(enemy::queen);
    BitBoard sliders =
        (board_tables_.empty_board_rook(king) & (piece(enemy::rook) | enemy_queens)) |
        (board_tables_.empty_board_bishop(king) & (piece(enemy::bishop) | enemy_queens));
    while (sliders) {
        const Square slider = sliders.take_first_square();
        const BitBoard between = board_tables_.line_segment(slider, king) & pieces();
        BitBoard others = between;
        others.get_reset_square();
        if (!between || others) {
            continue;
        }
        // Where a text has put pieces of both colours on one square, that of the slider counts.
        if (between & enemy_pieces) {
            current.discovering_pieces |= between;
        } else {
            current.pinned_pieces |= between;
        }
    }
}

void ChessPosition::find_pinned_pieces() {
    history_t& current = record();
    current.pinned_pieces.clear();
    current.discovering_pieces.clear();
    current.black_kingsfield = black_king().get_unique_square();
    current.white_kingsfield = white_king().get_unique_square();
    find_pins_to_king<side::black>();
    find_pins_to_king<side::white>();
    current.white_queencheck_squares = board_tables_.queen(current.black_kingsfield, pieces());
    current.black_queencheck_squares = board_tables_.queen(current.white_kingsfield, pieces());
}

void ChessPosition::look_for_check() {
    record().check = white_to_move() ? black_attacks(white_king()) : white_attacks(black_king());
}

}  // namespace orvelin
