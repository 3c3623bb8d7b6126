#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "evaluation/counting.h"
#include "evaluation/mobility.h"
#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/set_steps.h"
#include "position/side.h"

namespace orvelin {

namespace shut_in {

/// Rook squares on which a king of the side on each square shuts an own rook in.
template <int Side>
constexpr std::array<BitBoard, 65> make_squares() {
    std::array<BitBoard, 65> squares;
    for (std::size_t king = 0; king < 64; ++king) {
        BitBoard const set(std::uint64_t{1} << (Side == side::white ? king : king ^ 56U));
        if (set & f1g1) {
            squares[king] = Side == side::white ? g1h1h2 : g8h8h7;
        }
        if (set & b1c1d1) {
            squares[king] = Side == side::white ? a1b1c1a2 : a8b8c8a7;
        }
    }
    return squares;
}

template <int Side>
inline constexpr std::array<BitBoard, 65> squares = make_squares<Side>();

static_assert(squares<side::white>[5] == g1h1h2 && squares<side::white>[4] == BitBoard());
static_assert(squares<side::black>[62] == g8h8h7 && squares<side::black>[57] == a8b8c8a7);

}  // namespace shut_in

/// The surroundings of one side's king and what is counted there.
///
/// With one king or none (`OneKing`) a table by its square tells where it shuts a rook in. Boards
/// with several kings of a colour can be set up too; their zone is the union over the kings.
template <int Side, bool OneKing>
class KingZone {
    using own = SideOf<Side>;
    using enemy = SideOf<enemy_of<Side>>;

 public:
    KingZone(ChessPosition const& position, Mobility const& maps)
        : near_(Side == side::white ? maps.white_king_neighbourhood()
                                    : maps.black_king_neighbourhood()),
          field_(Side == side::white ? maps.white_king_battlefield()
                                     : maps.black_king_battlefield()),
          king_(own::king_square(position).id()) {}

    BitBoard near() const { return near_; }
    BitBoard field() const { return field_; }

    /// Own pawns in the neighbourhood and one rank ahead of it, none behind an open file. The open
    /// files are those of the pawn record as it stands, empty for a board without pawns.
    int pawn_shield(ChessPosition const& position, BitBoard open_files) const {
        if (own::kings(position) & open_files) {
            return 0;
        }
        return count(own::pawns(position) & (near_ | ahead<Side>(near_, 1)));
    }

    /// Squares of the neighbourhood that are in `set`.
    int count_near(BitBoard set) const { return count(set & near_); }

    /// Squares of the battlefield that are in `set`.
    int count_field(BitBoard set) const { return count(set & field_); }

    /// Weight of the attacking types times the valued attacks on the neighbourhood: the product of
    /// Mobility's attack weight and attacks on this king.
    std::int32_t pressure(Mobility const& maps) const {
        BitBoard pawns = maps.white_pawn_attacks();
        BitBoard knights = maps.white_knight_attacks();
        BitBoard bishops = maps.white_bishop_attacks();
        BitBoard rooks = maps.white_rook_attacks();
        BitBoard queens = maps.white_queen_attacks();
        if constexpr (Side == side::white) {
            pawns = maps.black_pawn_attacks();
            knights = maps.black_knight_attacks();
            bishops = maps.black_bishop_attacks();
            rooks = maps.black_rook_attacks();
            queens = maps.black_queen_attacks();
        }
        int const by_pawns = count_near(pawns);
        int const by_knights = count_near(knights);
        int const by_bishops = count_near(bishops);
        int const by_rooks = count_near(rooks);
        int const by_queens = count_near(queens);
        int const types = (by_pawns != 0 ? 1 : 0) + (by_knights != 0 ? 1 : 0) +
                          (by_bishops != 0 ? 1 : 0) + (by_rooks != 0 ? 1 : 0) +
                          (by_queens != 0 ? 1 : 0);
        int const attacks =
            10 * (by_pawns + 2 * (by_knights + by_bishops + 2 * (by_rooks + 2 * by_queens)));
        return Mobility::attack_weights[static_cast<std::size_t>(types)] * attacks;
    }

    /// 1 when the king shuts an own rook in.
    int shut_in_rook(ChessPosition const& position) const {
        if constexpr (OneKing) {
            BitBoard const squares = shut_in::squares<Side>[static_cast<std::size_t>(king_)];
            return (own::rooks(position) & squares) ? 1 : 0;
        }
        constexpr BitBoard right_kings = Side == side::white ? f1g1 : f8g8;
        constexpr BitBoard right_rooks = Side == side::white ? g1h1h2 : g8h8h7;
        constexpr BitBoard left_kings = Side == side::white ? b1c1d1 : b8c8d8;
        constexpr BitBoard left_rooks = Side == side::white ? a1b1c1a2 : a8b8c8a7;
        BitBoard const kings = own::kings(position);
        BitBoard const rooks = own::rooks(position);
        return ((kings & right_kings) && (rooks & right_rooks) ? 1 : 0) +
               ((kings & left_kings) && (rooks & left_rooks) ? 1 : 0);
    }

 private:
    BitBoard near_;
    BitBoard field_;
    int king_;
};

}  // namespace orvelin
