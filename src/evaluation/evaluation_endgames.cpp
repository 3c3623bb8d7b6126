#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "evaluation/evaluation.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/set_steps.h"
#include "position/side.h"

namespace orvelin {

namespace {

/// Values for a king on the outer ring of the board, on the second, on the third and in the middle.
struct ring_values_t {
    int border;
    int second;
    int third;
    int middle;
};

int by_ring(BitBoard const& king, ring_values_t const& values) {
    if (king & border) {
        return values.border;
    }
    if (king & border_minus1) {
        return values.second;
    }
    if (king & border_minus2) {
        return values.third;
    }
    return values.middle;
}

/// Kings of a side that has everything against a bare king, and the sign of its results.
struct mating_side_t {
    bool white;
    BitBoard strong;
    BitBoard weak;

    int signed_score(int score) const { return white ? score : -score; }
    Square strong_square() const { return strong.get_first_square(); }
    Square weak_square() const { return weak.get_first_square(); }
};

mating_side_t mating_side(ChessPosition const& position, bool white) {
    if (white) {
        return {true, position.white_king(), position.black_king()};
    }
    return {false, position.black_king(), position.white_king()};
}

/// The pieces of a pawn ending, mirrored until the pawn is White's.
struct pawn_ending_t {
    bool flipped;
    BitBoard pawn;
    BitBoard strong;
    BitBoard weak;
    BitBoard bishop;

    int signed_score(int score) const { return flipped ? -score : score; }
    Square pawn_square() const { return pawn.get_first_square(); }
    Square strong_square() const { return strong.get_first_square(); }
    Square weak_square() const { return weak.get_first_square(); }
};

template <int Side>
pawn_ending_t pawn_ending_of(ChessPosition const& position) {
    using own = SideOf<Side>;
    return {Side == side::black, own::pawns(position), own::kings(position),
            SideOf<own::enemy>::kings(position), own::bishops(position)};
}

/// Mirrors vertically when the pawn is black.
pawn_ending_t pawn_ending(ChessPosition const& position) {
    if (position.white_pawn()) {
        return pawn_ending_of<side::white>(position);
    }
    pawn_ending_t ending = pawn_ending_of<side::black>(position);
    for (BitBoard* set : {&ending.pawn, &ending.strong, &ending.weak, &ending.bishop}) {
        set->flip();
    }
    return ending;
}

/// Mirrors also horizontally when the pawn stands on the files e to h.
pawn_ending_t pawn_ending_on_left_half(ChessPosition const& position) {
    pawn_ending_t ending = pawn_ending(position);
    if (ending.pawn & kings_half) {
        for (BitBoard* set : {&ending.pawn, &ending.strong, &ending.weak, &ending.bishop}) {
            set->flop();
        }
    }
    return ending;
}

Square const a8{56};

/// Worth of a lone pawn and the distance from which the weak king can still catch it, by rank
/// counted from 0.
struct lone_pawn_t {
    int base;
    int reach;
};
constexpr std::array<lone_pawn_t, 8> lone_pawn{
    {{300, 5}, {300, 5}, {300, 5}, {400, 4}, {500, 3}, {600, 2}, {700, 1}, {300, 5}}};

static_assert(lone_pawn[1].base == 300 && lone_pawn[6].base == 700 && lone_pawn[6].reach == 1);

/// A weak king in front of the pawn that holds the draw.
bool held_from_the_front(pawn_ending_t const& ending, int rank, bool strong_to_move) {
    BitBoard const pawn = ending.pawn;
    if (rank == 6) {
        return static_cast<bool>(ending.weak & pawn_attacks<side::white>(pawn));
    }
    if (ending.weak & ((pawn << 8) | (pawn << 16))) {
        return true;
    }
    return rank < 4 && strong_to_move && (ending.strong & (pawn << 8)) &&
           (ending.weak & (pawn << 24));
}

int lone_pawn_score(pawn_ending_t const& ending, bool strong_to_move, Distance const& distance) {
    Square const weak = ending.weak_square();
    if (ending.pawn & a_file) {
        int const to_corner = distance(weak, a8);
        return to_corner == 1 ? 0 : to_corner;
    }
    Square const pawn = ending.pawn_square();
    int const rank = std::min(pawn.rank_number(), 7);
    lone_pawn_t const& row = lone_pawn[static_cast<std::size_t>(rank)];
    int const weak_distance = distance(weak, pawn);
    if (weak_distance <= row.reach && distance(ending.strong_square(), pawn) > weak_distance &&
        !strong_to_move) {
        return 0;
    }
    if (held_from_the_front(ending, rank, strong_to_move)) {
        return 0;
    }
    return row.base + weak_distance;
}

/// Drives the bare king to the edge and the own king near. The blend's size stays in the value,
/// so that a queen outranks a rook.
int drive_to_edge(mating_side_t const& side, float score, Distance const& distance) {
    int value = static_cast<int>(std::fabs(score));
    value += by_ring(side.weak, {1000, 900, 800, 0});
    value -= 10 * distance(side.weak_square(), side.strong_square());
    return side.signed_score(value);
}

}  // namespace

int Evaluation::KQK() {
    bool const white = static_cast<bool>(position_.white_queen());
    return drive_to_edge(mating_side(position_, white), score_, distance_);
}

int Evaluation::KRK() {
    bool const white = static_cast<bool>(position_.white_rook());
    return drive_to_edge(mating_side(position_, white), score_, distance_);
}

int Evaluation::KNNK() const {
    mating_side_t const side = mating_side(position_, static_cast<bool>(position_.white_knight()));
    return side.signed_score((side.weak & corner) ? 100 : 0);
}

int Evaluation::KBBK() const {
    BitBoard const bishops = position_.white_bishop() | position_.black_bishop();
    if (!(bishops & white_squares) || !(bishops & black_squares)) {
        return 0;
    }
    mating_side_t const side = mating_side(position_, static_cast<bool>(position_.white_bishop()));
    Square const strong = side.strong_square();
    Square const weak = side.weak_square();
    return side.signed_score(1000 - 100 * distance_(strong, bigcentre | c2f2b3g3b6g6c7f7) -
                             10 * distance_(weak, corner) + 10 * distance_(weak, centre) -
                             distance_(weak, strong));
}

int Evaluation::KBNK() {
    BitBoard const bishops = position_.white_bishop() | position_.black_bishop();
    mating_side_t const side = mating_side(position_, static_cast<bool>(position_.white_bishop()));
    BitBoard const mating_corner = (bishops & white_squares) ? white_corner : black_corner;
    Square const weak = side.weak_square();
    return side.signed_score(by_ring(side.weak, {660, 640, 620, 600}) -
                             10 * distance_(weak, mating_corner) -
                             distance_(weak, side.strong_square()));
}

// A rook pawn is worth the distance to its corner (oddity 115).
int Evaluation::KPK() const {
    pawn_ending_t const ending = pawn_ending_on_left_half(position_);
    bool const strong_to_move = position_.white_to_move() != ending.flipped;
    return ending.signed_score(lone_pawn_score(ending, strong_to_move, distance_));
}

int Evaluation::KBPK() const {
    pawn_ending_t const ending = pawn_ending_on_left_half(position_);
    if ((ending.pawn & a_file) && distance_(ending.weak_square(), a8) <= 1 &&
        (ending.bishop & black_squares)) {
        return 0;
    }
    // The blend is from White's point of view already.
    return static_cast<int>(score_);
}

int Evaluation::KRPKR() const {
    constexpr BitBoard second_rank = rank2;
    pawn_ending_t const ending = pawn_ending(position_);
    Square const pawn = ending.pawn_square();
    bool const at_home = static_cast<bool>(ending.pawn & second_rank);
    int const moves = at_home ? 5 : 7 - std::min(pawn.rank_number(), 7);
    Square const target(at_home ? pawn.id() + 40 : 56 + pawn.file_number());
    int const lead = distance_(ending.weak_square(), target) - moves;
    int const value = lead * 100 + 10 - 10 * distance_(ending.strong_square(), pawn);
    return ending.signed_score(value < 1 ? 10 : value);
}

int Evaluation::KQKR() {
    bool const white = static_cast<bool>(position_.white_queen());
    mating_side_t const side = mating_side(position_, white);
    BitBoard const rook = white ? position_.black_rook() : position_.white_rook();
    Square const weak = side.weak_square();
    return side.signed_score(by_ring(side.weak, {360, 340, 320, 300}) -
                             distance_(weak, side.strong_square()) +
                             distance_(weak, rook.get_first_square()));
}

int Evaluation::distance_between(Square const& from, Square const& to) const {
    return distance_(from, to);
}

int Evaluation::distance_between(Square const& from, BitBoard const& set) const {
    return distance_(from, set);
}

}  // namespace orvelin
