#include <sstream>

#include "position/chess_position.h"
#include "search/analysis.h"
#include "search/tt_move.h"

namespace orvelin {

void Analysis::make_move(Move const& move) {
    position_.make_move(move);
    evaluation_.make_move(move);
    evaluation_.prefetch_pawns();
    ++counters_.ply;
    if (move.xcode() == mate_attack) {
        ++counters_.mate_attack_count;
    }
}

void Analysis::unmake_move(Move const& move) {
    position_.unmake_move();
    evaluation_.unmake_move(move);
    --counters_.ply;
    if (move.xcode() == mate_attack) {
        --counters_.mate_attack_count;
    }
}

void Analysis::make_nullmove() {
    position_.make_move(Move());
    ++counters_.ply;
}

void Analysis::unmake_nullmove() {
    position_.unmake_move();
    --counters_.ply;
}

// A screen and no test of legality (oddity 71).
bool Analysis::is_legal(TTmove& ttmove) const {
    if (ttmove.nomove()) {
        return false;
    }
    Square const from = ttmove.from();
    Square const to = ttmove.to();
    if (from == to) {
        return false;
    }
    bool const white = position_.stm() == 1;
    BitBoard const& own_pieces = white ? position_.white_pieces() : position_.black_pieces();
    BitBoard const& enemy_king = white ? position_.black_king() : position_.white_king();
    return (from.bitboard() & own_pieces) && !(to.bitboard() & enemy_king);
}

std::string Analysis::dump_line() const {
    std::ostringstream text;
    text << '(' << position_.get_make_move_counter() << ") " << position_.history_str() << '\n';
    return text.str();
}

}  // namespace orvelin
