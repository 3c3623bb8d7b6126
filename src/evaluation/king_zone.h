#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "evaluation/battlefield.h"
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

/// Multipliers that gather the squares around a king in the top 16 bits of the product, for one
/// look-up to count them.
///
/// The first term of a multiplier takes the upper two ranks of a block to the top of the word, the
/// second one the ranks below them into the gaps; nothing else stays in the top bits.
namespace gather {

/// The 3 by 3 block around a square.
constexpr BitBoard block_around(int square) {
    return king_block(BitBoard(std::uint64_t{1} << square));
}

/// The block and the rank ahead of it, as the pawns of the side go.
template <int Side>
constexpr BitBoard shield_around(int square) {
    return block_around(square) | ahead<Side>(block_around(square), 1);
}

constexpr std::uint64_t power(int exponent) {
    return exponent < 64 ? std::uint64_t{1} << exponent : 0;
}

/// For a block of three ranks or less; its middle rank is the square's.
constexpr std::uint64_t block_multiplier(int square) {
    // Far enough that the lower ranks come between the others and these leave the word.
    constexpr std::array<int, 8> step{18, 19, 19, 19, 13, 12, 11, 10};
    int const rank = square >> 3;
    // On the last rank there is no third one, and the two are at the top already.
    if (rank == 7) {
        return 1;
    }
    int const up = 8 * (6 - rank);
    return power(up) + power(up + step[static_cast<std::size_t>(square & 7)]);
}

/// For a shield of four ranks, or of less at the edge. It is a block more on the last ranks.
template <int Side>
constexpr std::uint64_t shield_multiplier(int square) {
    // The lower pair of ranks comes to the right or the left of the upper pair.
    int const step = (square & 7) < 4 ? 19 : 13;
    int const last_rank = (square >> 3) + (Side == side::white ? 2 : 1);
    if (last_rank > 7) {
        return block_multiplier(Side == side::white ? square : square - 8);
    }
    int const up = 8 * (7 - last_rank);
    return power(up) + power(up + step);
}

/// No bit of the set is lost, doubled or met by another one.
constexpr bool gathers(BitBoard set, std::uint64_t multiplier) {
    std::uint64_t seen = 0;
    for (std::uint64_t rest = to_ull(set); rest != 0; rest &= rest - 1) {
        std::uint64_t const product = (rest & (0 - rest)) * multiplier;
        std::uint64_t const top = product >> 48;
        if ((seen & product) != 0 || top == 0 || (top & (top - 1)) != 0) {
            return false;
        }
        seen |= product;
    }
    return true;
}

template <typename Multiplier>
constexpr std::array<std::uint64_t, 65> for_all_squares(Multiplier multiplier) {
    std::array<std::uint64_t, 65> table{};
    for (int square = 0; square < 64; ++square) {
        table[static_cast<std::size_t>(square)] = multiplier(square);
    }
    return table;
}

inline constexpr std::array<std::uint64_t, 65> block = for_all_squares(block_multiplier);
template <int Side>
inline constexpr std::array<std::uint64_t, 65> shield = for_all_squares(shield_multiplier<Side>);

constexpr bool all_gather() {
    for (int square = 0; square < 64; ++square) {
        if (!gathers(block_around(square), block_multiplier(square)) ||
            !gathers(shield_around<side::white>(square), shield_multiplier<side::white>(square)) ||
            !gathers(shield_around<side::black>(square), shield_multiplier<side::black>(square))) {
            return false;
        }
    }
    return true;
}

static_assert(all_gather());

}  // namespace gather

/// A battlefield turned to the foot of the word, where three look-ups count it.
namespace turn {

/// Ranks of the battlefield below its king.
template <int Side>
inline constexpr int ranks_below = Side == side::white ? 1 : 4;

/// The word turned until the file left of the king is the lowest and the first rank of its
/// battlefield, or where that would be, the first.
template <int Side>
constexpr std::uint64_t to_foot(BitBoard set, int king) {
    return std::rotr(to_ull(set), king - 8 * ranks_below<Side> - 1);
}

/// Nothing of a battlefield lies beyond six ranks then.
template <int Side>
constexpr bool all_within_six_ranks() {
    for (int king = 0; king < 64; ++king) {
        BitBoard const field = battlefield<Side>(gather::block_around(king));
        if (to_foot<Side>(field, king) >> 48 != 0) {
            return false;
        }
    }
    return true;
}

static_assert(all_within_six_ranks<side::white>() && all_within_six_ranks<side::black>());

}  // namespace turn

/// The surroundings of one side's king and what is counted there.
///
/// A zone is three files wide. Turned to the foot of the word it needs fewer look-ups: that is how
/// it is counted with one king (`OneKing`), or none. Boards with several kings of a colour can be
/// set up too; their zone is the union over the kings, and all of the word is counted.
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
          king_(own::king_square(position).id()),
          near_multiplier_(gather::block[static_cast<std::size_t>(king_)]) {}

    BitBoard near() const { return near_; }
    BitBoard field() const { return field_; }

    /// Own pawns in the neighbourhood and one rank ahead of it, none behind an open file. The open
    /// files are those of the pawn record as it stands, empty for a board without pawns.
    int pawn_shield(ChessPosition const& position, BitBoard open_files) const {
        if (own::kings(position) & open_files) {
            return 0;
        }
        BitBoard const shield = own::pawns(position) & (near_ | ahead<Side>(near_, 1));
        if constexpr (OneKing) {
            return gathered(shield, gather::shield<Side>[static_cast<std::size_t>(king_)]);
        } else {
            return count(shield);
        }
    }

    /// Squares of the neighbourhood that are in `set`.
    int count_near(BitBoard set) const {
        if constexpr (OneKing) {
            return gathered(set & near_, near_multiplier_);
        } else {
            return count(set & near_);
        }
    }

    /// Squares of the battlefield that are in `set`.
    int count_field(BitBoard set) const { return count_within_field(set & field_); }

    /// The same for a set that lies in the battlefield.
    int count_within_field(BitBoard set) const {
        if constexpr (!OneKing) {
            return count(set);
        }
        return bits_of_six_ranks(turn::to_foot<Side>(set, king_));
    }

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
    static int gathered(BitBoard set, std::uint64_t multiplier) {
        return bits_of_quarter((to_ull(set) * multiplier) >> 48);
    }

    BitBoard near_;
    BitBoard field_;
    int king_;
    std::uint64_t near_multiplier_;
};

}  // namespace orvelin
