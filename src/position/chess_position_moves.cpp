// Making and unmaking moves.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "position/chess_position.h"

namespace orvelin {

namespace {

/// The castling rights that a move from or to a square leaves. The last entry is no square.
constexpr std::array<std::uint16_t, 65> make_kept_rights() {
    std::array<std::uint16_t, 65> kept{};
    for (std::size_t square = 0; square < kept.size(); ++square) {
        kept[square] = 0xFFFF;
    }
    for (std::size_t file = 0; file < 8; ++file) {
        kept[file] = static_cast<std::uint16_t>(~(0x0001U << file));
        kept[56 + file] = static_cast<std::uint16_t>(~(0x0100U << file));
    }
    return kept;
}

constexpr std::array<std::uint16_t, 65> kept_rights = make_kept_rights();
static_assert(kept_rights[0] == 0xFFFE && kept_rights[63] == 0x7FFF && kept_rights[64] == 0xFFFF);

/// Counts on from any number a FEN text may give, without signed overflow.
int wrapping_add(int number, int step) {
    return static_cast<int>(static_cast<unsigned>(number) + static_cast<unsigned>(step));
}

}  // namespace

std::uint16_t ChessPosition::castlingrights_after(Move const& move) const {
    unsigned rights = castlingrights();
    if (rights == 0) {
        return 0;
    }
    if (move.piece().white_king()) {
        rights &= 0xFF00;
    }
    if (move.piece().black_king()) {
        rights &= 0x00FF;
    }
    return static_cast<std::uint16_t>(rights & kept_rights[index(move.from())] &
                                      kept_rights[index(move.to())]);
}

Square ChessPosition::ep_after(Move const& move) const {
    int const from = move.from_id();
    int const to = move.to_id();
    if (std::abs(to - from) != 16) {
        return Square();
    }
    // No file mask, so a pawn on the a-file sees the h-file square of the rank below as its
    // neighbour, and one on the h-file the a-file square of the rank above (oddity 88).
    const BitBoard neighbours = (move.to().bitboard() << 1) | (move.to().bitboard() >> 1);
    BitBoard const& enemy_pawns = move.piece().white_pawn() ? black_pawn() : white_pawn();
    return (neighbours & enemy_pawns) ? Square((from + to) / 2) : Square();
}

void ChessPosition::make_move(Move const& move) {
    // A copy: the caller's word may be the last move of the history that grows below.
    const Move made = move;
    ++make_move_counter_;
    board_.make_move(made);
    const std::uint16_t rights = castlingrights_after(made);
    bool const pawn_move = made.piece().pawn();
    bool const irreversible = pawn_move || made.capture_id() != 0;

    const std::uint16_t dfz =
        irreversible ? std::uint16_t{0} : static_cast<std::uint16_t>(get_dfz() + 1);

    // Nothing of the record below stays as it is, so that no copy of it is needed.
    history_t& current = history_.emplace_back();
    current.castlingrights = rights;
    current.dfz = dfz;
    current.last_move = made;
    current.ep = pawn_move ? ep_after(made) : Square();
    current.make_move_counter = make_move_counter_;
    find_pinned_pieces();
    if (white_to_move()) {
        move_number_ = wrapping_add(move_number_, 1);
    }
    // The generator has told the truth about check; it is not computed again.
    current.check = made.check();
    hasher_.make_move(made);
    repetition_filter_.add(made, get_hash());
    material_index_.make_move(made);
}

void ChessPosition::make_move(Square const& from, Square const& to, move_t code) {
    Move move = convert_to_move(from, to, code);
    make_move(move);
    look_for_check();
    move.check(check());
    unmake_move();
    make_move(move);
}

void ChessPosition::unmake_move() {
    const Move move = last_move();
    board_.unmake_move(move);
    // The first record stays even when more moves are unmade than were made.
    if (history_.size() > 1) {
        history_.pop_back();
    }
    if (black_to_move()) {
        move_number_ = wrapping_add(move_number_, -1);
    }
    hasher_.pop();
    repetition_filter_.remove();
    material_index_.unmake_move(move);
}

}  // namespace orvelin
