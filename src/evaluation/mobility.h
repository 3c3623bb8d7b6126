#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "evaluation/counting.h"
#include "generation/attack_sets.h"
#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/side.h"
#include "position/square.h"

namespace orvelin {

class Attacks;

/// Attack maps of both sides, safe-mobility scores and the maps around both kings.
///
/// Refers to the attack tables, which must outlive it, and owns its maps. compute() renews all of
/// them for a position; between two calls they describe the last position computed, which may be
/// any position of the search tree. One thread at a time. Nothing here allocates.
class Mobility {
 public:
    /// Score for a number of safe squares: knight 0 to 8, bishop 0 to 13, rook 0 to 14 and queen
    /// 0 to 27, one row after the other. The queen's row keeps its repeated 15 (oddity 106).
    static constexpr std::array<std::int32_t, 66> mobility_table{
        // knight
        -68, -28, -12, 0, 12, 20, 28, 36, 44,
        // bishop
        -64, -48, -36, -24, -16, -8, -4, 0, 8, 16, 24, 32, 36, 40,
        // rook
        -40, -20, -12, -6, 0, 4, 8, 12, 16, 20, 24, 26, 30, 32, 34,
        // queen
        -22, -12, -8, -5, -2, 0, 4, 6, 8, 10, 11, 13, 14, 15, 15, 17, 18, 19, 20, 22, 23, 24, 25,
        26, 27, 28, 29, 30};

    /// Weight in 1/256 of an attack on a king, by the number of attacking piece types. There are
    /// only five types, so the entries above index 5 are never read.
    static constexpr std::array<std::int32_t, 16> attack_weights{
        0, 0, 128, 192, 225, 241, 248, 253, 256, 256, 256, 256, 256, 256, 256, 256};

    /// Empty maps, on the attack tables `attacks`.
    explicit Mobility(Attacks const& attacks);

    /// Empties all maps and totals, as in a new object.
    void clear() {
        mobility_ = {};
        maps_ = {};
    }
    /// Renews all maps and totals for `position`.
    void compute(ChessPosition const& position);

    // The steps of compute(), one by one. The order matters: the safe squares of rooks and queens
    // depend on the lighter enemy pieces of the same position. The pawn attacks start a side's
    // union.
    /// White: the 3 by 3 block around the king and the battlefield made from it.
    void compute_white_king_neighbourhood(ChessPosition const& position);
    /// Black: the 3 by 3 block around the king and the battlefield made from it.
    void compute_black_king_neighbourhood(ChessPosition const& position);
    /// White: pawn attacks; restarts the union of the side.
    void compute_white_pawn_attacks(ChessPosition const& position);
    /// Black: pawn attacks; restarts the union of the side.
    void compute_black_pawn_attacks(ChessPosition const& position);
    /// White: knight attacks and their mobility.
    void compute_white_knight_attacks(ChessPosition const& position);
    /// Black: knight attacks and their mobility.
    void compute_black_knight_attacks(ChessPosition const& position);
    /// White: bishop attacks, seen through own queens, and their mobility.
    void compute_white_bishop_attacks(ChessPosition const& position);
    /// Black: bishop attacks, seen through own queens, and their mobility.
    void compute_black_bishop_attacks(ChessPosition const& position);
    /// White: rook attacks, seen through own rooks and queens, and their mobility.
    void compute_white_rook_attacks(ChessPosition const& position);
    /// Black: rook attacks, seen through own rooks and queens, and their mobility.
    void compute_black_rook_attacks(ChessPosition const& position);
    /// White: queen attacks, their mobility and safe squares.
    void compute_white_queen_attacks(ChessPosition const& position);
    /// Black: queen attacks, their mobility and safe squares.
    void compute_black_queen_attacks(ChessPosition const& position);
    /// White: the safe squares from which a queen would check the enemy king.
    void compute_white_safe_queen_checks(ChessPosition const& position);
    /// Black: the safe squares from which a queen would check the enemy king.
    void compute_black_safe_queen_checks(ChessPosition const& position);
    /// White: joins the king's attacks to the union; the king's own map stays empty (oddity 105).
    void compute_white_king_attacks(ChessPosition const& position);
    /// Black: joins the king's attacks to the union; the king's own map stays empty (oddity 105).
    void compute_black_king_attacks(ChessPosition const& position);

    /// Sum over all pieces, white minus black.
    std::int32_t safe_mobility() const { return mobility_.all; }
    /// The knights' share of the sum.
    std::int32_t safe_knight_mobility() const { return mobility_.knight; }
    /// The bishops' share of the sum.
    std::int32_t safe_bishop_mobility() const { return mobility_.bishop; }
    /// The rooks' share of the sum.
    std::int32_t safe_rook_mobility() const { return mobility_.rook; }
    /// The queens' share of the sum.
    std::int32_t safe_queen_mobility() const { return mobility_.queen; }

    /// Squares of the black battlefield that white knights attack.
    BitBoard const& white_knight_battlefield_attack() const {
        return maps_[side::white].battlefield_attack[knight];
    }
    /// Squares of the black battlefield that white bishops attack.
    BitBoard const& white_bishop_battlefield_attack() const {
        return maps_[side::white].battlefield_attack[bishop];
    }
    /// Squares of the black battlefield that white rooks attack.
    BitBoard const& white_rook_battlefield_attack() const {
        return maps_[side::white].battlefield_attack[rook];
    }
    /// Squares of the black battlefield that white queens attack.
    BitBoard const& white_queen_battlefield_attack() const {
        return maps_[side::white].battlefield_attack[queen];
    }
    /// Squares of the white battlefield that black knights attack.
    BitBoard const& black_knight_battlefield_attack() const {
        return maps_[side::black].battlefield_attack[knight];
    }
    /// Squares of the white battlefield that black bishops attack.
    BitBoard const& black_bishop_battlefield_attack() const {
        return maps_[side::black].battlefield_attack[bishop];
    }
    /// Squares of the white battlefield that black rooks attack.
    BitBoard const& black_rook_battlefield_attack() const {
        return maps_[side::black].battlefield_attack[rook];
    }
    /// Squares of the white battlefield that black queens attack.
    BitBoard const& black_queen_battlefield_attack() const {
        return maps_[side::black].battlefield_attack[queen];
    }

    /// The 3 by 3 block around the white king, its own square included.
    BitBoard const& white_king_neighbourhood() const { return maps_[side::white].neighbourhood; }
    /// The 3 by 3 block around the black king, its own square included.
    BitBoard const& black_king_neighbourhood() const { return maps_[side::black].neighbourhood; }
    /// The neighbourhood of the white king joined with itself two and three ranks ahead.
    BitBoard const& white_king_battlefield() const { return maps_[side::white].battlefield; }
    /// The neighbourhood of the black king joined with itself two and three ranks ahead.
    BitBoard const& black_king_battlefield() const { return maps_[side::black].battlefield; }

    /// Squares attacked by white pawns.
    BitBoard const& white_pawn_attacks() const { return maps_[side::white].pawn_attacks; }
    /// Squares attacked by white knights.
    BitBoard const& white_knight_attacks() const { return maps_[side::white].knight_attacks; }
    /// Squares attacked by white bishops.
    BitBoard const& white_bishop_attacks() const { return maps_[side::white].bishop_attacks; }
    /// Squares attacked by white rooks.
    BitBoard const& white_rook_attacks() const { return maps_[side::white].rook_attacks; }
    /// Squares attacked by white queens.
    BitBoard const& white_queen_attacks() const { return maps_[side::white].queen_attacks; }
    /// Safe squares of the white queens.
    BitBoard const& white_queen_safe_squares() const {
        return maps_[side::white].queen_safe_squares;
    }
    /// Safe squares where a white queen gives check.
    BitBoard const& white_safe_queen_checks() const { return maps_[side::white].safe_queen_checks; }
    /// Always empty: the king only counts in the union of the side.
    BitBoard const& white_king_attacks() const { return maps_[side::white].king_attacks; }
    /// Squares attacked by black pawns.
    BitBoard const& black_pawn_attacks() const { return maps_[side::black].pawn_attacks; }
    /// Squares attacked by black knights.
    BitBoard const& black_knight_attacks() const { return maps_[side::black].knight_attacks; }
    /// Squares attacked by black bishops.
    BitBoard const& black_bishop_attacks() const { return maps_[side::black].bishop_attacks; }
    /// Squares attacked by black rooks.
    BitBoard const& black_rook_attacks() const { return maps_[side::black].rook_attacks; }
    /// Squares attacked by black queens.
    BitBoard const& black_queen_attacks() const { return maps_[side::black].queen_attacks; }
    /// Safe squares of the black queens.
    BitBoard const& black_queen_safe_squares() const {
        return maps_[side::black].queen_safe_squares;
    }
    /// Safe squares where a black queen gives check.
    BitBoard const& black_safe_queen_checks() const { return maps_[side::black].safe_queen_checks; }
    /// Always empty: the king only counts in the union of the side.
    BitBoard const& black_king_attacks() const { return maps_[side::black].king_attacks; }

    /// Union of all attacks of White, the king's included.
    BitBoard const& white_attacks() const { return maps_[side::white].attacked; }
    /// Union of all attacks of Black, the king's included.
    BitBoard const& black_attacks() const { return maps_[side::black].attacked; }

    /// What a side attacks, by its number as side to move.
    attack_sets_t const& attack_sets(int side) const {
        return maps_[static_cast<std::size_t>(side)];
    }

    /// Safe queen check squares, white minus black.
    int safe_queen_checks() const;
    /// Pieces that no friend defends, black minus white.
    int undefended_pieces(ChessPosition const& position) const;
    /// Pieces attacked and not defended or attacked by a lesser one, black minus white.
    int hanging_pieces(ChessPosition const& position) const;

    /// Weight in 1/256 of the black attack on the white king, by the attacking types.
    std::int32_t attackweight_white_king() const;
    /// Weight in 1/256 of the white attack on the black king, by the attacking types.
    std::int32_t attackweight_black_king() const;
    /// Attacked squares around the white king, valued by the attacking type.
    std::int32_t attacks_on_white_king() const;
    /// Attacked squares around the black king, valued by the attacking type.
    std::int32_t attacks_on_black_king() const;
    /// Weighted attacks on the black king minus those on the white king, in 1/256.
    std::int32_t king_safety() const;

 private:
    // Piece types as indices of the maps; those of a side lie at its number as side to move.
    static constexpr std::size_t knight = 0;
    static constexpr std::size_t bishop = 1;
    static constexpr std::size_t rook = 2;
    static constexpr std::size_t queen = 3;

    struct side_maps_t : attack_sets_t {
        BitBoard pawn_attacks;
        BitBoard queen_safe_squares;
        BitBoard safe_queen_checks;
        BitBoard king_attacks;
        BitBoard neighbourhood;
        BitBoard battlefield;
        /// Attacked squares of the enemy battlefield, by piece type.
        std::array<BitBoard, 4> battlefield_attack{};
    };

    /// White minus black.
    struct mobility_t {
        std::int32_t all = 0;
        std::int32_t knight = 0;
        std::int32_t bishop = 0;
        std::int32_t rook = 0;
        std::int32_t queen = 0;
    };

    template <int Side>
    void find_king_maps(ChessPosition const& position);
    template <int Side>
    void find_pawn_attacks(ChessPosition const& position);
    // Each returns the mobility of the type, seen from its own side.
    template <int Side>
    std::int32_t find_knight_attacks(ChessPosition const& position);
    template <int Side>
    std::int32_t find_bishop_attacks(ChessPosition const& position);
    template <int Side>
    std::int32_t find_rook_attacks(ChessPosition const& position);
    template <int Side>
    std::int32_t find_queen_attacks(ChessPosition const& position);
    /// Adds the attacks of one type to the side's union and to the battlefield attacks.
    template <int Side>
    void join(std::size_t type, BitBoard attacks);
    template <int Side>
    void find_safe_queen_checks(ChessPosition const& position);
    template <int Side>
    void add_king_attacks(ChessPosition const& position);
    /// Adds a type's mobility to its share and to the total.
    template <int Side>
    void add_share(std::int32_t mobility, std::int32_t& share);
    template <int Side>
    BitBoard hanging(ChessPosition const& position) const;
    template <int Side>
    std::int32_t attackweight_king() const;
    template <int Side>
    std::int32_t attacks_on_king() const;

    Attacks const& attacks_;
    mobility_t mobility_;
    std::array<side_maps_t, 2> maps_{};
};

inline int Mobility::safe_queen_checks() const {
    BitBoard const white_checks = maps_[side::white].safe_queen_checks;
    BitBoard const black_checks = maps_[side::black].safe_queen_checks;
    if (!(white_checks | black_checks)) {
        return 0;
    }
    return count(white_checks) - count(black_checks);
}

inline int Mobility::undefended_pieces(ChessPosition const& position) const {
    return count(position.black_pieces() & ~maps_[side::black].attacked) -
           count(position.white_pieces() & ~maps_[side::white].attacked);
}

template <int Side>
BitBoard Mobility::hanging(ChessPosition const& position) const {
    using own = SideOf<Side>;
    side_maps_t const& other = maps_[own::enemy];
    BitBoard const by_minor = other.pawn_attacks | other.knight_attacks | other.bishop_attacks;
    return (own::pieces(position) & other.attacked & ~maps_[Side].attacked) |
           ((own::knights(position) | own::bishops(position)) & other.pawn_attacks) |
           (own::rooks(position) & by_minor) |
           (own::queens(position) & (by_minor | other.rook_attacks));
}

inline int Mobility::hanging_pieces(ChessPosition const& position) const {
    return count(hanging<side::black>(position)) - count(hanging<side::white>(position));
}

}  // namespace orvelin
