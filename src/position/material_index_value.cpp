#include <algorithm>
#include <array>

#include "position/material_index.h"

namespace orvelin {

namespace {

/// Counts of one side.
struct counts_t {
    int pawns;
    int knights;
    int bishops;
    int rooks;
    int queens;

    int minors() const { return knights + bishops; }
    int majors() const { return rooks + queens; }
    int pieces() const { return minors() + majors(); }
    int minor_value() const { return pieces() < 2 ? 250 : 325; }
    bool lone_minor() const { return pawns == 0 && majors() == 0 && pieces() == 1; }
};

// Adjustments by a side's number of pawns. Up to fifteen can be counted, on a board made by hand.
constexpr std::array<int, 9> pawn_table{-20, -15, -10, -5, 0, 0, 5, 10, 15};
constexpr std::array<int, 9> many_pawns_table{0, 0, 0, 0, 0, -5, -10, -20, -30};
static_assert(pawn_table.back() == 15 && many_pawns_table.back() == -30);

int pawn_adjustment(int pawns) {
    std::size_t const index = static_cast<std::size_t>(std::min(pawns, 8));
    return pawn_table[index] + many_pawns_table[index];
}

int rook_adjustment(counts_t const& white, counts_t const& black) {
    if (white.queens != black.queens) {
        return 0;
    }
    int s = 0;
    if (white.rooks >= 2) {
        s -= 25;
    }
    if (black.rooks >= 2) {
        s += 25;
    }
    // A rook for a minor piece.
    if (white.rooks != black.rooks && white.pieces() == black.pieces()) {
        if (white.rooks > black.rooks) {
            s -= (white.majors() - 1) * 25;
        } else {
            s += (black.majors() - 1) * 25;
        }
    }
    return s;
}

/// Exactly two bishops: three get no bonus.
int bishop_pair(counts_t const& white, counts_t const& black) {
    return (white.bishops == 2 ? 50 : 0) - (black.bishops == 2 ? 50 : 0);
}

int sum(int s, counts_t const& white, counts_t const& black) {
    return s + 100 * white.pawns + 525 * white.rooks + 1000 * white.queens - 100 * black.pawns -
           525 * black.rooks - 1000 * black.queens + white.minors() * white.minor_value() -
           black.minors() * black.minor_value();
}

/// The side ahead likes to keep pawns and to see the enemy's pieces gone.
int trade_down(int r, counts_t const& white, counts_t const& black) {
    if (r > 70 && white.pawns != 0) {
        return r + 10 * white.pawns - 10 * black.pieces();
    }
    if (r < -70 && black.pawns != 0) {
        return r - 10 * black.pawns + 10 * white.pieces();
    }
    return r;
}

int without_pawns(int r, counts_t const& white, counts_t const& black) {
    // Such a margin without pawns is mostly a draw.
    if (r >= -399 && r <= 399) {
        r /= 10;
    }
    if (white.minors() + black.minors() > 0 || white.pieces() != black.pieces()) {
        return r;
    }
    if (white.queens == 1 && black.queens == 0 && black.rooks == 1) {
        return 450;
    }
    if (white.queens == 0 && black.queens == 1 && white.rooks == 1) {
        return -450;
    }
    return r;
}

/// A pawn and a minor piece against a rook and nothing else.
bool pawn_and_minor_against_rook(counts_t const& strong, counts_t const& weak) {
    return strong.pawns == 1 && strong.majors() == 0 && strong.minors() == 1 && weak.rooks == 1 &&
           weak.pieces() == 1 && weak.pawns == 0;
}

int with_pawns(int r, counts_t const& white, counts_t const& black) {
    if (white.lone_minor() && black.pieces() == 0 && black.pawns <= 2) {
        return -50;
    }
    if (black.lone_minor() && white.pieces() == 0 && white.pawns <= 2) {
        return 50;
    }
    if (pawn_and_minor_against_rook(white, black)) {
        return 50;
    }
    if (pawn_and_minor_against_rook(black, white)) {
        return -50;
    }
    return trade_down(r, white, black);
}

}  // namespace

// Exactly two bishops are a pair (oddity 114).
int MaterialIndex::value() const {
    counts_t const white{get_whitepawn(), get_whiteknight(), get_whitebishop(), get_whiterook(),
                         get_whitequeen()};
    counts_t const black{get_blackpawn(), get_blackknight(), get_blackbishop(), get_blackrook(),
                         get_blackqueen()};
    int const s = pawn_adjustment(white.pawns) - pawn_adjustment(black.pawns) +
                  rook_adjustment(white, black) + bishop_pair(white, black);
    int const r = sum(s, white, black);
    return white.pawns == 0 && black.pawns == 0 ? without_pawns(r, white, black)
                                                : with_pawns(r, white, black);
}

}  // namespace orvelin
