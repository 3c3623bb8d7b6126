#include "position/hasher.h"

#include <cstddef>

#include "position/board_tables.h"
#include "position/castling_targets.h"
#include "position/chess_position.h"
#include "position/hash_keys.h"
#include "position/history.h"
#include "position/square.h"

namespace orvelin {

namespace {

constexpr std::size_t start_capacity = 1024;

constexpr std::size_t index(int id) {
    return static_cast<std::size_t>(id);
}

/// Row of a piece's keys. Ids are cut to four bits, as the board does with those that an illegal
/// promotion makes.
constexpr std::size_t row(int id) {
    return index(id & (HashKeys::rows - 1));
}

/// The rights on the rooks of a1, h1, a8 and h8 as the bits of an index.
constexpr std::size_t corner_rights(unsigned rights) {
    return (rights & 1) | (rights >> 6 & 6) | (rights >> 12 & 8);
}

static_assert(corner_rights(0x0001) == 1 && corner_rights(0x0080) == 2);
static_assert(corner_rights(0x0100) == 4 && corner_rights(0x8000) == 8);
static_assert(corner_rights(chess960_rights) == 0);

/// What a promotion changes in both keys.
struct promotion_change_t {
    std::uint64_t key;
    std::uint64_t pawn_key;
};

/// The sense of the move alone tells the pawn's colour (oddity 95), so that a backward promotion,
/// which is illegal, changes the keys of the other side's pieces.
promotion_change_t promotion_change(HashKeys const& keys, Move const& move) {
    const Square from = move.from();
    const Square to = move.to();
    int const pawn = to > from ? white_pawn : black_pawn;
    int const promoted = pawn + 6 - static_cast<int>(move.code());
    const std::uint64_t pawn_leaves = keys.piece[pawn][index(from)];
    return {pawn_leaves ^ keys.piece[promoted][index(to)] ^
                keys.piece[row(move.capture_id())][index(to)],
            pawn_leaves};
}

/// Change of the position key by castling. The word's to is the rook's old square.
std::uint64_t castling_change(HashKeys const& keys, Move const& move) {
    const CastlingTargets targets = castling_targets(move);
    const std::size_t king = row(move.piece_id());
    const std::size_t rook = move.piece().white_king() ? white_rook : black_rook;
    return keys.piece[king][index(move.from())] ^ keys.piece[rook][index(move.to())] ^
           keys.piece[king][index(targets.king)] ^ keys.piece[rook][index(targets.rook)];
}

}  // namespace

template <int KeySet>
Hasher<KeySet>::Hasher(Tables const& tables) : key_set_(BoardTables(tables).hash_keys) {
    keys_.reserve(start_capacity);
    pawn_keys_.reserve(start_capacity);
    keys_.push_back(0);
    pawn_keys_.push_back(0);
    // The keys of the set come in the order h1, a1, h8, a8.
    for (std::size_t i = 0; i < corner_keys_.size(); ++i) {
        corner_keys_[i] =
            ((i & 1) != 0 ? key_set_.castling[1] : 0) ^ ((i & 2) != 0 ? key_set_.castling[0] : 0) ^
            ((i & 4) != 0 ? key_set_.castling[3] : 0) ^ ((i & 8) != 0 ? key_set_.castling[2] : 0);
    }
}

template <int KeySet>
void Hasher<KeySet>::init(ChessPosition const* position) {
    position_ = position;
    std::uint64_t key = 0;
    std::uint64_t pawn_key = 0;
    HashKeys const& keys = key_set_;
    for (int square = 0; square < 64; ++square) {
        const std::size_t piece_row = row((*position)[square].id());
        key ^= keys.piece[piece_row][index(square)];
        pawn_key ^= keys.pawn[piece_row][index(square)];
    }
    keys_.assign(1, key);
    pawn_keys_.assign(1, pawn_key);
}

// Rights off the corners go in as the word itself (oddity 96).
template <int KeySet>
std::uint64_t Hasher<KeySet>::hash() const {
    std::uint64_t key = keys_.back();
    if (position_ == nullptr) {
        return key;
    }
    HashKeys const& keys = key_set_;
    const std::uint16_t rights = position_->castlingrights();
    if (rights != 0) {
        // One look-up for all: branches on each would be guessed wrong now and then.
        key ^= corner_keys_[corner_rights(rights)];
        // The published keys know corner rooks only; the raw word tells all other rights apart.
        if (rights & chess960_rights) {
            key ^= rights;
        }
    }
    const Square ep = position_->ep();
    if (ep.id() < 64) {
        key ^= keys.en_passant[index(ep.id() & 7)];
    }
    if (position_->stm() == 1) {
        key ^= keys.turn;
    }
    return key;
}

template <int KeySet>
void Hasher<KeySet>::make_move(Move const& move) {
    std::uint64_t key = keys_.back();
    std::uint64_t pawn_key = pawn_keys_.back();
    HashKeys const& keys = key_set_;
    const std::size_t from = index(move.from_id());
    const std::size_t to = index(move.to_id());
    const std::size_t moved = row(move.piece_id());
    const std::size_t captured = row(move.capture_id());

    switch (move.code()) {
        case nullmove:
            break;
        case normal_move:
            key ^= keys.piece[moved][from] ^ keys.piece[moved][to] ^ keys.piece[captured][to];
            pawn_key ^= keys.pawn[moved][from] ^ keys.pawn[moved][to] ^ keys.pawn[captured][to];
            break;
        case promo_queen:
        case promo_rook:
        case promo_bishop:
        case promo_knight: {
            const promotion_change_t change = promotion_change(keys, move);
            key ^= change.key;
            pawn_key ^= change.pawn_key;
            break;
        }
        case castling:
            key ^= castling_change(keys, move);
            break;
        case en_passant: {
            // Masked, so that a word that is no en passant capture at all stays on the board.
            const std::size_t pawn_square = (to > from ? to - 8 : to + 8) & 63;
            key ^=
                keys.piece[moved][from] ^ keys.piece[moved][to] ^ keys.piece[captured][pawn_square];
            pawn_key ^=
                keys.pawn[moved][from] ^ keys.pawn[moved][to] ^ keys.piece[captured][pawn_square];
            break;
        }
    }
    keys_.push_back(key);
    pawn_keys_.push_back(pawn_key);
}

template class Hasher<1>;

}  // namespace orvelin
