#include "evaluation/evaluation.h"

#include <array>
#include <cmath>
#include <cstdint>

#include "evaluation/counting.h"
#include "evaluation/development_terms.h"
#include "evaluation/king_activity.h"
#include "evaluation/king_terms.h"
#include "evaluation/pawn_terms.h"
#include "platform/language.h"
#include "position/board_tables.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/set_steps.h"
#include "position/side.h"

namespace orvelin {

namespace {

/// Hundreds of nobelmen that four sets of squares can add up to, even where illegal moves of the
/// GUI have made them overlap.
constexpr std::size_t most_hundreds = std::size_t{64} * (9 + 5 + 3 + 3);

/// The middle-game share by hundreds of nobelmen, which saves a division.
constexpr std::array<float, most_hundreds + 1> make_mg_phases() {
    std::array<float, most_hundreds + 1> phases{};
    for (std::size_t i = 0; i < phases.size(); ++i) {
        phases[i] = Weight::mg_share(i);
    }
    return phases;
}

constexpr std::array<float, most_hundreds + 1> mg_phases = make_mg_phases();
static_assert(mg_phases[0] == 0.0F && mg_phases[62] == 1.0F);

}  // namespace

Evaluation::Evaluation(ChessPosition const& position, Tables& tables)
    : position_(position),
      mobility_(BoardTables(tables).attacks),
      variable_vector_(term::count, 0.0F) {
    piece_square_tables_.init(position_);
}

void Evaluation::init() {
    forget_last_evaluation();
    piece_square_tables_.init(position_);
}

void Evaluation::clear() {}

// A record is the same whenever it is computed, but for that of a board without pawns, which finds
// the empty slot of its key as its own until another structure has taken that.
void Evaluation::forget() {
    forget_last_evaluation();
    pawn_hash_table_.slot(0) = PHTrecord();
    pawn_record_ = &first_record_;
    terms_ = {};
    mobility_.clear();
}

void Evaluation::set_log(bool on) {
    log_ = on;
    if (on) {
        log_stream_.open("eval_log.log", std::ios::out | std::ios::trunc);
    } else {
        log_stream_.close();
    }
}

int Evaluation::static_eval() {
    ++total_evals_;
    if (!terms_are_current()) {
        evaluate_terms();
    }
    find_stm();
    if (!score_by_loose_sum()) {
        score_by_ordered_sum();
    }
    if (may_have_endgame(position_.materialindex())) {
        dispatch_endgame();
    }
    int const score = static_cast<int>(score_);
    return position_.white_to_move() ? score : -score;
}

void Evaluation::prefetch_pawns() const {
    pawn_hash_table_.prefetch(position_.get_pawnhash());
}

// After a null move, and when a node is entered once more, no piece has moved since the last
// evaluation: all terms but the side to move still hold. A move made and unmade is not that, as it
// can change the piece-square sums by their rounding. On an inconsistent board unmaking a move need
// not restore what was evaluated.
bool Evaluation::terms_are_current() {
    std::vector<history_t> const& history = position_.history();
    history_t const* record = &history.back();
    if (record->last_move.word() == 0 && history.size() > 1) {
        // A FEN text without one of the kings leaves kings and pins to be found with the first
        // move.
        history_t const* const before = record - 1;
        if (record->white_kingsfield == before->white_kingsfield &&
            record->black_kingsfield == before->black_kingsfield) {
            record = before;
        }
    }
    std::uint64_t const moves = record->make_move_counter;
    std::uint64_t const set_ups = position_.set_ups();
    bool const same = !terms_may_differ_ && moves == evaluated_moves_ &&
                      set_ups == evaluated_set_ups_ && !position_.board_is_inconsistent();
    terms_may_differ_ = false;
    evaluated_moves_ = moves;
    evaluated_set_ups_ = set_ups;
    return same;
}

// The order of the steps is free as far as the terms go; here it serves the sum, which is begun
// while later terms are still computed. A stretch of it does not follow at once upon the steps that
// write its terms: what is stored one by one can be loaded by four only when it has reached the
// cache. So the pawn terms come between those of the kings and their stretch; of their own, the
// last one, most stand from the last evaluation.
void Evaluation::evaluate_terms() {
    find_phase_and_material();
    find_pawn_record();
    find_pst_terms();
    find_development();
    find_mobility_terms();
    find_opposite_colored_bishops();
    find_pinned_pieces();
    loose_sum_t sum;
    sum.add<group::material_to_space>(terms_, *blended_weights_);
    sum.add<group::pst_of_pieces>(terms_, *blended_weights_);
    king_relations_t const& relations = find_king_relations();
    // Where a king shuts in a rook is looked up for one king a side.
    if (several(position_.white_king()) || several(position_.black_king())) {
        king_terms::find<false>(terms_, position_, mobility_, relations);
    } else {
        king_terms::find<true>(terms_, position_, mobility_, relations);
    }
    find_king_activity(relations);
    find_pawn_terms(relations);
    sum.add<group::pst_to_king_attack>(terms_, *blended_weights_);
    sum.add<group::castling_to_battlefield>(terms_, *blended_weights_);
    sum.add<group::king_activity_to_bishops>(terms_, *blended_weights_);
    loose_sum_ = sum.sum();
    loose_sum_error_ = sum.error();
}

// What rounds to the same integer from both ends of the error has the score already. Where that is
// 0 the sum in the right order gives its sign too.
bool Evaluation::score_by_loose_sum() {
    float const room = 0.5F - loose_sum_error_;
    // Turned round so that what is no number goes the other way too. The sum is below 2^16 here.
    if (!(room > 0.0F)) {
        return false;
    }
    float const score = scaled_by_bishops(blend_stm(loose_sum_));
    float const nearest = rounded(score);
    score_ = nearest;
    return std::fabs(score - nearest) < room && nearest != 0.0F;
}

// In the order of the terms, one addition after the other, as each of them rounds.
void Evaluation::score_by_ordered_sum() {
    float sum = 0.0F;
    sum = add_blend<group::material_to_space>(sum, terms_, mg_phase_, eg_phase_);
    sum = add_blend<group::pst_of_pieces>(sum, terms_, mg_phase_, eg_phase_);
    sum = add_blend<group::pst_to_king_attack>(sum, terms_, mg_phase_, eg_phase_);
    sum = add_blend<group::castling_to_battlefield>(sum, terms_, mg_phase_, eg_phase_);
    sum = add_blend<group::king_activity_to_bishops>(sum, terms_, mg_phase_, eg_phase_);
    score_ = rounded(scaled_by_bishops(blend_stm(sum)));
}

// Not clamped: with promoted pieces beyond the first set the end-game share turns negative
// (oddity 103).
void Evaluation::find_phase() {
    int const hundreds = 9 * count(position_.white_queen() | position_.black_queen()) +
                         5 * count(position_.white_rook() | position_.black_rook()) +
                         3 * count(position_.white_bishop() | position_.black_bishop()) +
                         3 * count(position_.white_knight() | position_.black_knight());
    mg_phase_ = mg_phases[static_cast<std::size_t>(hundreds)];
    eg_phase_ = 1.0F - mg_phase_;
    blended_weights_ = &Weight::blended_row(static_cast<std::size_t>(hundreds));
}

// The pieces of the phase change with the material word only, where the board is consistent. What
// is found on another board says nothing about the next one with that word.
void Evaluation::find_phase_and_material() {
    std::uint64_t const material = position_.materialindex().index();
    bool const inconsistent = position_.board_is_inconsistent();
    if (material == phase_material_ && !inconsistent) {
        return;
    }
    phase_material_ = inconsistent ? no_material : material;
    find_phase();
    terms_.integers[term::material] = material_.get_eval(position_.materialindex());
}

void Evaluation::find_mobility_terms() {
    mobility_.compute(position_);
    auto& terms = terms_.integers;
    terms[term::mobility] = mobility_.safe_mobility();
    terms[term::knight_mobility] = mobility_.safe_knight_mobility();
    terms[term::bishop_mobility] = mobility_.safe_bishop_mobility();
    terms[term::rook_mobility] = mobility_.safe_rook_mobility();
    terms[term::queen_mobility] = mobility_.safe_queen_mobility();
    terms[term::undefended_pieces] = mobility_.undefended_pieces(position_);
    terms[term::own_hanging_material] = mobility_.hanging_pieces(position_);
    terms[term::safe_queencheck] = mobility_.safe_queen_checks();
}

// Blended by the phase here and a second time with the weights (oddity 101). With the two types
// more, which no piece has, the compiler takes four at a time; the two places behind the kings get
// the 0 of these, and what belongs there is found later.
void Evaluation::find_pst_terms() {
    float const mg_phase = mg_phase_;
    float const eg_phase = eg_phase_;
    std::array<float, group::pst_of_pieces.size() + group::pst_to_king_attack.size()> sums;
    for (std::size_t type = 0; type < sums.size(); ++type) {
        PieceSquareTables::pair_t const sum = piece_square_tables_.both(type + 1);
        sums[type] = sum.first * mg_phase + sum.second * eg_phase;
    }
    for (std::size_t type = 0; type < sums.size(); ++type) {
        terms_.float_bits[term::pst_pawn + type] = bit_cast<std::uint32_t>(sums[type]);
    }
}

void Evaluation::find_pawn_record() {
    // With an unchanged structure the record and the five pawn terms still hold.
    std::uint64_t const key = position_.get_pawnhash();
    if (key == pawn_record_->key) {
        return;
    }
    ++pawn_evals_;
    pawn_record_ = pawn_hash_table_.find(key);
    if (pawn_record_ == nullptr) {
        ++missed_pht_reads_;
        PHTrecord& record = pawn_hash_table_.slot(key);
        record.key = key;
        record.set_pawns(position_.white_pawn(), position_.black_pawn());
        pawn_record_ = &record;
    }
    terms_.integers[term::rookpawn] = pawn_record_->rookpawns;
    terms_.integers[term::doubled_pawns] = pawn_record_->doubled;
    terms_.integers[term::weak_pawns] = pawn_record_->weak;
    terms_.integers[term::isolated_pawns] = pawn_record_->isolated;
    terms_.integers[term::pawn_islands] = pawn_record_->islands;
}

// Most moves are of other pieces, and a structure is mostly met with the kings that it was met with
// before. The record keeps what belongs to one king a side, and to the pawns that stood there.
king_relations_t const& Evaluation::find_king_relations() {
    BitBoard const white = position_.white_king();
    BitBoard const black = position_.black_king();
    if (!single(white) || !single(black) || position_.board_is_inconsistent()) {
        return loose_king_relations();
    }
    king_relations_t& relations = pawn_record_->relations;
    auto const kings = static_cast<std::uint16_t>(white.get_first_square().id() +
                                                  64 * black.get_first_square().id());
    if (relations.kings != kings || relations.white_pawns != position_.white_pawn() ||
        relations.black_pawns != position_.black_pawn()) {
        compute_king_relations(relations);
        relations.kings = kings;
        relations.white_pawns = position_.white_pawn();
        relations.black_pawns = position_.black_pawn();
    }
    return relations;
}

king_relations_t const& Evaluation::loose_king_relations() {
    compute_king_relations(loose_relations_);
    return loose_relations_;
}

void Evaluation::compute_king_relations(king_relations_t& relations) const {
    PHTrecord const& record = *pawn_record_;
    king_terms::find_pawn_cover(relations, position_, mobility_, record);
    relations.activity =
        static_cast<std::int16_t>(king_activity::difference(position_, record, distance_));
    relations.white_passer_score =
        pawn_terms::score_near_king(record.white_passer_score, record.white_passed,
                                    SideOf<side::black>::king_square(position_), distance_);
    relations.black_passer_score =
        pawn_terms::score_near_king(record.black_passer_score, record.black_passed,
                                    SideOf<side::white>::king_square(position_), distance_);
}

void Evaluation::find_pawn_terms(king_relations_t const& relations) {
    using namespace pawn_terms;
    terms_.integers[term::blocked_pawns] =
        blocked_pawns<side::black>(position_) - blocked_pawns<side::white>(position_);
    terms_.integers[term::bad_bishop] = pawns_on_bishop_colour<side::black>(position_) -
                                        pawns_on_bishop_colour<side::white>(position_);
    PHTrecord const& record = *pawn_record_;
    BitBoard const white_attacks = mobility_.white_attacks();
    BitBoard const black_attacks = mobility_.black_attacks();
    passers_t const white{record.white_passed, record.white_stop, record.white_behind,
                          relations.white_passer_score, record.white_passer_score == 0};
    passers_t const black{record.black_passed, record.black_stop, record.black_behind,
                          relations.black_passer_score, record.black_passer_score == 0};
    terms_.integers[term::passed_pawns] =
        passed_pawn_score<side::white>(position_, white, white_attacks, black_attacks, distance_) -
        passed_pawn_score<side::black>(position_, black, black_attacks, white_attacks, distance_);
}

BitBoard Evaluation::passed_pawns() const {
    return pawn_record_->white_passed | pawn_record_->black_passed;
}

void Evaluation::find_development() {
    BitBoard const white_open_files = ~file_fill(position_.white_pawn());
    BitBoard const black_open_files = ~file_fill(position_.black_pawn());
    terms_.integers[term::development] =
        development_terms::development_of<side::white>(position_, white_open_files) -
        development_terms::development_of<side::black>(position_, black_open_files);
}

// Weighted by the phase here and again by the weights (oddity 108).
void Evaluation::find_king_activity(king_relations_t const& relations) {
    terms_.set_float<term::king_activity>(static_cast<float>(relations.activity) * eg_phase_);
}

void Evaluation::find_pinned_pieces() {
    BitBoard const pinned = position_.pinned_pieces();
    terms_.integers[term::pinned_pieces] = 0;
    if (pinned) {
        terms_.integers[term::pinned_pieces] =
            count(pinned & position_.black_pieces()) - count(pinned & position_.white_pieces());
    }
}

// Two bishops with one of them White's are one each.
void Evaluation::find_opposite_colored_bishops() {
    BitBoard const white = position_.white_bishop();
    BitBoard const black = position_.black_bishop();
    BitBoard const both = white | black;
    terms_.integers[term::opposite_colored_bishops] =
        single(white) && single(both & ~white) && (both & white_squares) && (both & black_squares)
            ? 1
            : 0;
}

void Evaluation::find_stm() {
    terms_.integers[term::stm] = 2 * position_.stm() - 1;
}

float Evaluation::blend_stm(float score) const {
    float const side = static_cast<float>(terms_.integers[term::stm]);
    float const end_game = side * Weight::eg_row[term::stm] * eg_phase_;
    float const middle_game = side * Weight::mg_row[term::stm] * mg_phase_;
    return score + (end_game + middle_game);
}

// Whatever else is on the board; the bonus of the term is White's for both sides (oddity 104).
float Evaluation::scaled_by_bishops(float score) const {
    // Halving is exact, so it needs neither double precision nor a division.
    bool const halved = terms_.integers[term::opposite_colored_bishops] != 0;
    return halved ? score * 0.5F : score;
}

std::vector<float> const& Evaluation::variable_vector() const {
    for (std::size_t i = 0; i < variable_vector_.size(); ++i) {
        variable_vector_[i] = terms_.value(i);
    }
    return variable_vector_;
}

int Evaluation::material() const {
    return static_cast<int>(terms_.value(term::material));
}

int Evaluation::mobility() const {
    return static_cast<int>(terms_.value(term::mobility));
}

int Evaluation::king_safety() const {
    return static_cast<int>(terms_.value(term::king_attack));
}

std::string Evaluation::fen() const {
    return position_.fen();
}

}  // namespace orvelin
