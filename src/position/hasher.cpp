#include "position/hasher.h"

#include <cstddef>

#include "generation/hash_keys.h"
#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/square.h"

namespace orvelin {

namespace {

constexpr std::size_t start_capacity = 1024;

/// Rights on rooks that do not start in a corner.
constexpr std::uint16_t chess960_rights = 0x7E7E;

constexpr std::size_t index(int id) {
    return static_cast<std::size_t>(id);
}

/// Row of a man's keys. Ids are cut to four bits, as the board does with those that an illegal
/// promotion makes; id 15 shares the row of no man, whose keys are 0.
constexpr std::size_t row(int id) {
    const std::size_t cut = index(id & 15);
    return cut < 15 ? cut : 0;
}

/// Row of the man that a promotion puts on the board.
std::size_t promoted_row(Move const& move) {
    return row(move.piece_id() + 6 - static_cast<int>(move.code()));
}

/// Change of the position key by castling. The word's to is the rook's old square.
std::uint64_t castling_change(HashKeys const& keys, Move const& move) {
    const bool white = move.piece().white_king();
    const bool king_side = move.to() > move.from();
    const std::size_t king = row(move.piece_id());
    const std::size_t rook = white ? 4 : 12;
    const std::size_t first_rank = white ? 0 : 56;
    const std::size_t king_target = first_rank + (king_side ? 6 : 2);
    const std::size_t rook_target = first_rank + (king_side ? 5 : 3);
    return keys.piece[king][index(move.from().id())] ^ keys.piece[rook][index(move.to().id())] ^
           keys.piece[king][king_target] ^ keys.piece[rook][rook_target];
}

}  // namespace

template <int KeySet>
Hasher<KeySet>::Hasher(Tables const& tables) : tables_(tables) {
    keys_.reserve(start_capacity);
    pawn_keys_.reserve(start_capacity);
    keys_.push_back(0);
    pawn_keys_.push_back(0);
}

template <int KeySet>
HashKeys const& Hasher<KeySet>::key_set() const {
    if constexpr (KeySet == 1) {
        return tables_.hash_keys;
    } else {
        return tables_.hash_keys2;
    }
}

template <int KeySet>
void Hasher<KeySet>::init(ChessPosition const* position) {
    position_ = position;
    std::uint64_t key = 0;
    std::uint64_t pawn_key = 0;
    HashKeys const& keys = key_set();
    for (int square = 0; square < 64; ++square) {
        const std::size_t man = row((*position)[square].id());
        key ^= keys.piece[man][index(square)];
        pawn_key ^= keys.pawn[man][index(square)];
    }
    keys_.assign(1, key);
    pawn_keys_.assign(1, pawn_key);
}

template <int KeySet>
std::uint64_t Hasher<KeySet>::hash() const {
    std::uint64_t key = keys_.back();
    if (position_ == nullptr) return key;
    HashKeys const& keys = key_set();
    const std::uint16_t rights = position_->castlingrights();
    if (rights != 0) {
        if (rights & 0x0001) key ^= keys.castling[1];
        if (rights & 0x0080) key ^= keys.castling[0];
        if (rights & 0x0100) key ^= keys.castling[3];
        if (rights & 0x8000) key ^= keys.castling[2];
        // The published keys know corner rooks only; the raw word tells all other rights apart.
        if (rights & chess960_rights) key ^= rights;
    }
    const Square ep = position_->ep();
    if (ep.id() < 64) key ^= keys.en_passant[index(ep.id() & 7)];
    if (position_->stm() == 1) key ^= keys.turn;
    return key;
}

template <int KeySet>
void Hasher<KeySet>::make_move(Move const& move) {
    std::uint64_t key = keys_.back();
    std::uint64_t pawn_key = pawn_keys_.back();
    HashKeys const& keys = key_set();
    const std::size_t from = index(move.from().id() & 63);
    const std::size_t to = index(move.to().id() & 63);
    const std::size_t man = row(move.piece_id());
    const std::size_t captured = row(move.capture_id());

    switch (move.code()) {
        case nullmove:
            break;
        case normal_move:
            key ^= keys.piece[man][from] ^ keys.piece[man][to] ^ keys.piece[captured][to];
            pawn_key ^= keys.pawn[man][from] ^ keys.pawn[man][to] ^ keys.pawn[captured][to];
            break;
        case promo_queen:
        case promo_rook:
        case promo_bishop:
        case promo_knight:
            key ^= keys.piece[man][from] ^ keys.piece[promoted_row(move)][to] ^
                   keys.piece[captured][to];
            pawn_key ^= keys.piece[man][from];
            break;
        case castling:
            key ^= castling_change(keys, move);
            break;
        case en_passant: {
            // Masked, so that a word that is no en passant capture at all stays on the board.
            const std::size_t pawn_square = (to > from ? to - 8 : to + 8) & 63;
            key ^= keys.piece[man][from] ^ keys.piece[man][to] ^ keys.piece[captured][pawn_square];
            pawn_key ^=
                keys.pawn[man][from] ^ keys.pawn[man][to] ^ keys.piece[captured][pawn_square];
            break;
        }
    }
    keys_.push_back(key);
    pawn_keys_.push_back(pawn_key);
}

template class Hasher<1>;

}  // namespace orvelin
