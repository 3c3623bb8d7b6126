#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "evaluation/counting.h"
#include "evaluation/distance.h"
#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/set_steps.h"
#include "position/side.h"

/// What the pawns are worth beside the other pieces.
namespace orvelin::pawn_terms {

/// Penalty for the enemy king's distance to the nearest passed pawn, 0 to 8.
inline constexpr std::array<int, 9> king_near_passer{150, 150, 75, 35, 15, 0, 0, 0, 0};
/// Bonus of a passed pawn that the enemy king can't catch, by ranks passed from its own side.
inline constexpr std::array<int, 8> won_race{0, 0, 50, 100, 200, 300, 400, 0};

static_assert(king_near_passer[4] == 15 && king_near_passer[5] == 0);
static_assert(won_race[2] == 50 && won_race[6] == 400);

/// Passed pawns of one side.
struct passers_t {
    BitBoard passed;
    BitBoard stop;
    BitBoard behind;
    /// What the pawns are worth with the enemy king where he stands.
    int score;
    /// There are none, or all of them are near home.
    bool idle;
};

/// The score of the passed pawns, less by what the enemy king takes who is near.
inline int score_near_king(int score, BitBoard passed, Square enemy_king,
                           Distance const& distance) {
    return score - king_near_passer[static_cast<std::size_t>(distance(enemy_king, passed))];
}

/// Sum over the passed pawns that run home alone: the enemy king's distance to the promotion
/// square exceeds the ranks still to go. Neither the side to move nor a blocker is looked at.
template <int Side>
int race_bonus(BitBoard passed, Square enemy_king, Distance const& distance) {
    int bonus = 0;
    while (passed) {
        int const id = passed.take_first_square().id();
        int const ranks = Side == side::white ? id >> 3 : 7 - (id >> 3);
        Square const promotion((id & 7) + (Side == side::white ? 56 : 0));
        if (distance(enemy_king, promotion) > 7 - ranks) {
            bonus += won_race[static_cast<std::size_t>(ranks)];
        }
    }
    return bonus;
}

/// The score of one side's passed pawns against the pieces on the board, never below 0. A side
/// whose passed pawns are all near home has score 0 and is skipped altogether (oddity 111).
template <int Side>
inline int passed_pawn_score(ChessPosition const& position, passers_t const& passers,
                             BitBoard own_attacks, BitBoard enemy_attacks,
                             Distance const& distance) {
    if (passers.idle) {
        return 0;
    }
    using own = SideOf<Side>;
    using enemy = SideOf<enemy_of<Side>>;
    BitBoard const enemy_rooks = enemy::rooks(position);
    int score = passers.score;
    // Every enemy piece blocks, the king included, except a rook.
    score -= 50 * count(passers.stop & enemy::pieces(position) & ~enemy_rooks);
    score -= 50 * count(passers.stop & enemy_attacks & ~own_attacks);
    if (!(enemy::knights(position) | enemy::bishops(position) | enemy_rooks |
          enemy::queens(position))) {
        score += race_bonus<Side>(passers.passed, enemy::king_square(position), distance);
    }
    // Once each, however many rooks there are.
    if (own::rooks(position) & passers.behind) {
        score += 50;
    }
    if (enemy_rooks & passers.behind) {
        score -= 50;
    }
    return std::max(score, 0);
}

/// Pawns with any piece directly in front.
template <int Side>
int blocked_pawns(ChessPosition const& position) {
    return count(ahead<Side>(SideOf<Side>::pawns(position), 1) & position.pieces());
}

/// Own pawns on the colour of a lone bishop; nothing without one or with two.
template <int Side>
int pawns_on_bishop_colour(ChessPosition const& position) {
    BitBoard const bishops = SideOf<Side>::bishops(position);
    if (!single(bishops)) {
        return 0;
    }
    BitBoard const colour = (bishops & white_squares) ? white_squares : black_squares;
    return count(SideOf<Side>::pawns(position) & colour);
}

}  // namespace orvelin::pawn_terms
