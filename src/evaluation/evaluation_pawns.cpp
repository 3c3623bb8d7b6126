#include <algorithm>
#include <array>
#include <cstddef>

#include "evaluation/evaluation.h"
#include "evaluation/side_men.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/set_steps.h"

namespace orvelin {

namespace {

/// Penalty for the enemy king's distance to the nearest passed pawn, 0 to 8.
constexpr std::array<int, 9> king_near_passer{150, 150, 75, 35, 15, 0, 0, 0, 0};
/// Bonus of a passed pawn that the enemy king can't catch, by ranks passed from its own side.
constexpr std::array<int, 8> won_race{0, 0, 50, 100, 200, 300, 400, 0};

static_assert(king_near_passer[4] == 15 && king_near_passer[5] == 0);
static_assert(won_race[2] == 50 && won_race[6] == 400);

/// Passed pawn sets of one side, from the pawn record.
struct passers_t {
    BitBoard passed;
    BitBoard stop;
    BitBoard behind;
    int score;
};

/// Sum over the passed pawns that run home alone: the enemy king's distance to the promotion
/// square exceeds the ranks still to go. Neither the side to move nor a blocker is looked at.
template <int Side>
int race_bonus(BitBoard passed, Square const& enemy_king, Distance const& distance) {
    int bonus = 0;
    while (passed) {
        int const id = passed.get_reset_square().get_unique_square().id();
        int const ranks = Side == 1 ? id >> 3 : 7 - (id >> 3);
        Square const promotion((id & 7) + (Side == 1 ? 56 : 0));
        if (distance(enemy_king, promotion) > 7 - ranks) {
            bonus += won_race[static_cast<std::size_t>(ranks)];
        }
    }
    return bonus;
}

/// The score of one side's passed pawns against the pieces on the board, never below 0. A side
/// whose passed pawns are all near home has score 0 and is skipped altogether, by design.
template <int Side>
int passed_pawn_score(ChessPosition const& position, passers_t const& passers,
                      BitBoard const& own_attacks, BitBoard const& enemy_attacks,
                      Distance const& distance) {
    if (passers.score == 0) return 0;
    using men = SideMen<Side>;
    using enemy = SideMen<men::enemy>;
    BitBoard const enemy_rooks = enemy::rooks(position);
    Square const enemy_king = enemy::king(position);

    int score = passers.score;
    score -= king_near_passer[static_cast<std::size_t>(distance(enemy_king, passers.passed))];
    // Every enemy man blocks, the king included, except a rook.
    score -= 50 * (passers.stop & enemy::all(position) & ~enemy_rooks).popcount();
    score -= 50 * (passers.stop & enemy_attacks & ~own_attacks).popcount();
    if (!(enemy::knights(position) | enemy::bishops(position) | enemy_rooks |
          enemy::queens(position))) {
        score += race_bonus<Side>(passers.passed, enemy_king, distance);
    }
    // Once each, however many rooks there are.
    if (men::rooks(position) & passers.behind) score += 50;
    if (enemy_rooks & passers.behind) score -= 50;
    return std::max(score, 0);
}

/// Pawns with any man directly in front.
template <int Side>
int blocked_pawns(ChessPosition const& position) {
    return (ahead<Side>(SideMen<Side>::pawns(position), 1) & position.pieces()).popcount();
}

/// Own pawns on the colour of a lone bishop; nothing without one or with two.
template <int Side>
int pawns_on_bishop_colour(ChessPosition const& position) {
    BitBoard const bishops = SideMen<Side>::bishops(position);
    if (bishops.popcount() != 1) return 0;
    BitBoard const colour = (bishops & white_squares) ? white_squares : black_squares;
    return (SideMen<Side>::pawns(position) & colour).popcount();
}

}  // namespace

void Evaluation::fetch_pawn_record(std::uint64_t key) {
    ++pawn_evals_;
    if (pawn_hash_table_.read(key)) {
        pht_record_ = pawn_hash_table_.get_current();
    } else {
        ++missed_pht_reads_;
        pht_record_.key = key;
        pht_record_.set_pawns(position_.white_pawn(), position_.black_pawn());
        pawn_hash_table_.set_current(pht_record_);
        pawn_hash_table_.write();
    }
}

void Evaluation::use_pawn_record() {
    white_passed_ = pht_record_.white_passed;
    white_stop_ = pht_record_.white_stop;
    white_ahead_ = pht_record_.white_ahead;
    white_behind_ = pht_record_.white_behind;
    white_weak_ = pht_record_.white_weak;
    white_open_files_ = pht_record_.white_open_files;
    black_passed_ = pht_record_.black_passed;
    black_stop_ = pht_record_.black_stop;
    black_ahead_ = pht_record_.black_ahead;
    black_behind_ = pht_record_.black_behind;
    black_weak_ = pht_record_.black_weak;
    black_open_files_ = pht_record_.black_open_files;
    white_passer_score_ = pht_record_.white_passer_score;
    black_passer_score_ = pht_record_.black_passer_score;
    variable_vector_[term::rookpawn] = static_cast<float>(pht_record_.rookpawns);
    variable_vector_[term::doubled_pawns] = static_cast<float>(pht_record_.doubled);
    variable_vector_[term::weak_pawns] = static_cast<float>(pht_record_.weak);
    variable_vector_[term::isolated_pawns] = static_cast<float>(pht_record_.isolated);
    variable_vector_[term::pawn_islands] = static_cast<float>(pht_record_.islands);
}

void Evaluation::compute_pawn_eval() {
    // With an unchanged structure the copies and the five pawn terms still hold. A board without
    // pawns has key 0 and so finds the empty record of the start as its own, by design.
    std::uint64_t const key = position_.get_pawnhash();
    if (key != pht_record_.key) {
        fetch_pawn_record(key);
        use_pawn_record();
    }
    variable_vector_[term::blocked_pawns] =
        static_cast<float>(blocked_pawns<0>(position_) - blocked_pawns<1>(position_));
    variable_vector_[term::bad_bishop] = static_cast<float>(pawns_on_bishop_colour<0>(position_) -
                                                            pawns_on_bishop_colour<1>(position_));
    BitBoard const white_attacks = mobility_.white_attacks();
    BitBoard const black_attacks = mobility_.black_attacks();
    passers_t const white{white_passed_, white_stop_, white_behind_, white_passer_score_};
    passers_t const black{black_passed_, black_stop_, black_behind_, black_passer_score_};
    int const white_score =
        passed_pawn_score<1>(position_, white, white_attacks, black_attacks, distance_);
    int const black_score =
        passed_pawn_score<0>(position_, black, black_attacks, white_attacks, distance_);
    variable_vector_[term::passed_pawns] = static_cast<float>(white_score - black_score);
}

BitBoard Evaluation::passed_pawns() const {
    return white_passed_ | black_passed_;
}

}  // namespace orvelin
