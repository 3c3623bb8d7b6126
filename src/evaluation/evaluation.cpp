#include "evaluation/evaluation.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include "evaluation/counting.h"
#include "evaluation/development_terms.h"
#include "evaluation/king_zone.h"
#include "evaluation/pawn_terms.h"
#include "evaluation/side_men.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/set_steps.h"

namespace orvelin {

namespace {

/// The attack weights are in 1/256.
constexpr float king_attack_scale = 0.00390625F;

/// Hundreds of nobelmen that four sets of squares can add up to, even where illegal moves of the
/// interface have made them overlap.
constexpr std::size_t most_hundreds = std::size_t{64} * (9 + 5 + 3 + 3);

/// The middle-game share by hundreds of nobelmen, which saves a division.
constexpr std::array<float, most_hundreds + 1> make_mg_phases() {
    std::array<float, most_hundreds + 1> phases{};
    for (std::size_t i = 0; i < phases.size(); ++i) {
        phases[i] = static_cast<float>(100 * i) / 6200.0F;
    }
    return phases;
}

constexpr std::array<float, most_hundreds + 1> mg_phases = make_mg_phases();
static_assert(mg_phases[0] == 0.0F && mg_phases[62] == 1.0F);

int castling_rights_term(unsigned rights) {
    bool const white_keeps = (rights & 0x00FFU) != 0;
    bool const black_keeps = (rights & 0xFF00U) != 0;
    return 20 * ((white_keeps ? 1 : 0) - (black_keeps ? 1 : 0));
}

/// Pieces in the order of the terms: knights, bishops, rooks, queens.
template <int Side>
std::array<BitBoard, 4> pieces_by_type(ChessPosition const& position) {
    using men = SideMen<Side>;
    return {men::knights(position), men::bishops(position), men::rooks(position),
            men::queens(position)};
}

/// Only presence counts, not the number.
int presence(BitBoard men, BitBoard zone) {
    return (men & zone) ? 1 : 0;
}

/// Where a king of an end game without pawns stands: the middle is good, the edge is bad.
int king_centralisation(BitBoard king) {
    return presence(king, centre) + presence(king, bigcentre) - presence(king, border);
}

}  // namespace

Evaluation::Evaluation(ChessPosition const& position, Tables& tables)
    : position_(position), mobility_(tables.attacks), variable_vector_(term::count, 0.0F) {
    piece_square_tables_.init(position_);
}

void Evaluation::init() {
    forget_last_evaluation();
    piece_square_tables_.init(position_);
}

void Evaluation::clear() {}

void Evaluation::set_log(bool on) {
    log_ = on;
    if (on) {
        log_stream_.open("eval_log.log", std::ios::out | std::ios::trunc);
    } else {
        log_stream_.close();
    }
}

template <bool OneKing>
[[gnu::always_inline]] inline void Evaluation::find_king_terms() {
    auto& terms = int_terms_;
    KingZone<1, OneKing> const white(position_, mobility_);
    KingZone<0, OneKing> const black(position_, mobility_);
    BitBoard const white_open = pawn_record_->white_open_files;
    BitBoard const black_open = pawn_record_->black_open_files;

    terms[term::locked_up_rook] = black.shut_in_rook(position_) - white.shut_in_rook(position_);
    terms[term::castling_rights] =
        castling_rights_term(static_cast<unsigned>(position_.castlingrights()));
    terms[term::pawn_shield] =
        (white.pawn_shield(position_, white_open) - black.pawn_shield(position_, black_open)) * 10;
    terms[term::open_files_on_king] =
        (black.count_near(white_open) - white.count_near(black_open)) * 15;
    terms[term::king_attack] = black.pressure(mobility_) - white.pressure(mobility_);
    terms[term::pawn_storm] =
        (black.count_field(position_.white_pawn()) - white.count_field(position_.black_pawn())) * 5;
    terms[term::knight_battlefield_attack] =
        black.count_within_field(mobility_.white_knight_battlefield_attack()) -
        white.count_within_field(mobility_.black_knight_battlefield_attack());
    terms[term::bishop_battlefield_attack] =
        black.count_within_field(mobility_.white_bishop_battlefield_attack()) -
        white.count_within_field(mobility_.black_bishop_battlefield_attack());
    terms[term::rook_battlefield_attack] =
        black.count_within_field(mobility_.white_rook_battlefield_attack()) -
        white.count_within_field(mobility_.black_rook_battlefield_attack());
    terms[term::queen_battlefield_attack] =
        black.count_within_field(mobility_.white_queen_battlefield_attack()) -
        white.count_within_field(mobility_.black_queen_battlefield_attack());

    auto const white_men = pieces_by_type<1>(position_);
    auto const black_men = pieces_by_type<0>(position_);
    BitBoard const white_visitors = (white_men[0] | white_men[1] | white_men[2] | white_men[3]);
    BitBoard const black_visitors = (black_men[0] | black_men[1] | black_men[2] | black_men[3]);
    for (std::size_t type = 0; type < white_men.size(); ++type) {
        terms[term::knight_battlefield_contact + type] =
            presence(white_men[type], black.field()) - presence(black_men[type], white.field());
    }
    // Pieces next to the enemy king are rare.
    bool const contact =
        static_cast<bool>((white_visitors & black.near()) | (black_visitors & white.near()));
    for (std::size_t type = 0; type < white_men.size(); ++type) {
        terms[term::knight_king_contact + type] = 0;
    }
    if (!contact) {
        return;
    }
    for (std::size_t type = 0; type < white_men.size(); ++type) {
        terms[term::knight_king_contact + type] =
            presence(white_men[type], black.near()) - presence(black_men[type], white.near());
    }
}

// The order of the steps is free as far as the terms go; here it serves the sum. That is taken in
// the order of the terms, one addition after the other, and so it is begun while later terms are
// still worked out. A stretch of it does not follow at once upon the steps that write its terms:
// what is stored one by one can be loaded by four only when it has reached the cache.
int Evaluation::static_eval() {
    ++total_evals_;
    if (!men_stand_as_evaluated()) {
        sum_of_men_ = evaluate_men();
    }
    find_stm();
    score_ = blend_stm(sum_of_men_);
    scale_opposite_bishops();
    if (may_have_endgame(position_.materialindex())) {
        dispatch_endgame();
    }
    int const score = static_cast<int>(score_);
    return position_.white_to_move() ? score : -score;
}

void Evaluation::prefetch_pawns() const {
    pawn_hash_table_.prefetch(position_.get_pawnhash());
}

// After a pass, and when a node is entered once more, no man has moved since the last evaluation:
// all terms but the side to move still hold. A move made and taken back is not that, as it can
// change the piece-square sums by their rounding.
bool Evaluation::men_stand_as_evaluated() {
    std::vector<history_t> const& history = position_.history();
    history_t const* record = &history.back();
    if (record->last_move == Move() && history.size() > 1) {
        --record;
    }
    std::uint64_t const moves = record->make_move_counter;
    std::uint64_t const set_ups = position_.set_ups();
    bool const same = !men_moved_ && moves == evaluated_moves_ && set_ups == evaluated_set_ups_;
    men_moved_ = false;
    evaluated_moves_ = moves;
    evaluated_set_ups_ = set_ups;
    return same;
}

float Evaluation::evaluate_men() {
    find_phase_and_material();
    find_pawn_record();
    find_pst_terms();
    find_mobility_terms();
    find_development(~file_fill(position_.white_pawn()), ~file_fill(position_.black_pawn()));
    find_opposite_colored_bishops();
    find_pinned_pieces();
    find_king_activity();
    find_pawn_terms();
    float sum = blend_material_to_space(0.0F);
    // Turned zones are made for one king a side.
    if (several(position_.white_king()) || several(position_.black_king())) {
        find_king_terms<false>();
    } else {
        find_king_terms<true>();
    }
    sum = blend_pst_to_king_attack(sum);
    sum = blend_castling_to_battlefield(sum);
    return blend_king_activity_to_bishops(sum);
}

// Not clamped: with promoted men beyond the first set the end-game share turns negative.
void Evaluation::find_phase() {
    int const hundreds = 9 * count(position_.white_queen() | position_.black_queen()) +
                         5 * count(position_.white_rook() | position_.black_rook()) +
                         3 * count(position_.white_bishop() | position_.black_bishop()) +
                         3 * count(position_.white_knight() | position_.black_knight());
    mg_phase_ = mg_phases[static_cast<std::size_t>(hundreds)];
    eg_phase_ = 1.0F - mg_phase_;
}

void Evaluation::compute_phase() {
    forget_last_evaluation();
    find_phase();
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
    int_terms_[term::material] = material_.get_eval(position_.materialindex());
}

void Evaluation::compute_material() {
    int_terms_[term::material] = material_.get_eval(position_.materialindex());
    publish(term::material);
}

void Evaluation::find_mobility_terms() {
    mobility_.compute(position_);
    auto& terms = int_terms_;
    terms[term::mobility] = mobility_.safe_mobility();
    terms[term::knight_mobility] = mobility_.safe_knight_mobility();
    terms[term::bishop_mobility] = mobility_.safe_bishop_mobility();
    terms[term::rook_mobility] = mobility_.safe_rook_mobility();
    terms[term::queen_mobility] = mobility_.safe_queen_mobility();
    terms[term::undefended_pieces] = mobility_.undefended_pieces(position_);
    terms[term::own_hanging_material] = mobility_.hanging_pieces(position_);
    terms[term::safe_queencheck] = mobility_.safe_queen_checks();
}

void Evaluation::compute_mobility() {
    find_mobility_terms();
    int_terms_[term::locked_up_rook] =
        KingZone<0, false>(position_, mobility_).shut_in_rook(position_) -
        KingZone<1, false>(position_, mobility_).shut_in_rook(position_);
    publish(term::mobility, term::queen_mobility);
    publish(term::locked_up_rook, term::own_hanging_material);
    publish(term::safe_queencheck);
}

// Blended by the phase here and a second time with the weights, by design. With the two types more,
// which no man has, the compiler takes four at a time.
void Evaluation::find_pst_terms() {
    float const mg_phase = mg_phase_;
    float const eg_phase = eg_phase_;
    std::array<float, 8> terms;
    for (std::size_t type = 0; type < terms.size(); ++type) {
        PieceSquareTables::pair_t const sum = piece_square_tables_.both(type + 1);
        terms[type] = sum.first * mg_phase + sum.second * eg_phase;
    }
    pst_terms_ = terms;
}

void Evaluation::compute_pst() {
    find_pst_terms();
    publish(term::pst_pawn, term::pst_king);
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
    int_terms_[term::rookpawn] = pawn_record_->rookpawns;
    int_terms_[term::doubled_pawns] = pawn_record_->doubled;
    int_terms_[term::weak_pawns] = pawn_record_->weak;
    int_terms_[term::isolated_pawns] = pawn_record_->isolated;
    int_terms_[term::pawn_islands] = pawn_record_->islands;
}

void Evaluation::find_pawn_terms() {
    using namespace pawn_terms;
    int_terms_[term::blocked_pawns] = blocked_pawns<0>(position_) - blocked_pawns<1>(position_);
    int_terms_[term::bad_bishop] =
        pawns_on_bishop_colour<0>(position_) - pawns_on_bishop_colour<1>(position_);
    PHTrecord const& record = *pawn_record_;
    BitBoard const white_attacks = mobility_.white_attacks();
    BitBoard const black_attacks = mobility_.black_attacks();
    passers_t const white{record.white_passed, record.white_stop, record.white_behind,
                          record.white_passer_score};
    passers_t const black{record.black_passed, record.black_stop, record.black_behind,
                          record.black_passer_score};
    int_terms_[term::passed_pawns] =
        passed_pawn_score<1>(position_, white, white_attacks, black_attacks, distance_) -
        passed_pawn_score<0>(position_, black, black_attacks, white_attacks, distance_);
}

void Evaluation::compute_pawn_eval() {
    find_pawn_record();
    find_pawn_terms();
    publish(term::rookpawn, term::pawn_islands);
    publish(term::bad_bishop);
}

BitBoard Evaluation::passed_pawns() const {
    return pawn_record_->white_passed | pawn_record_->black_passed;
}

void Evaluation::find_development(BitBoard white_open_files, BitBoard black_open_files) {
    int_terms_[term::development] =
        development_terms::development_of<1>(position_, white_open_files) -
        development_terms::development_of<0>(position_, black_open_files);
}

void Evaluation::compute_development() {
    find_development(~file_fill(position_.white_pawn()), ~file_fill(position_.black_pawn()));
    publish(term::development);
}

// The term exists in the vectors but measures nothing; kept at 0.
void Evaluation::compute_space() {
    int_terms_[term::space] = 0;
    publish(term::space);
}

void Evaluation::compute_king_safety() {
    int const locked_up_rook = int_terms_[term::locked_up_rook];
    find_king_terms<false>();
    int_terms_[term::locked_up_rook] = locked_up_rook;
    publish(term::pawn_shield, term::open_files_on_king);
    publish(term::knight_king_contact, term::queen_battlefield_attack);
}

void Evaluation::find_king_activity() {
    int white = 0;
    int black = 0;
    if (position_.white_pawn() | position_.black_pawn()) {
        PHTrecord const& record = *pawn_record_;
        Square const white_king = position_.white_kingsfield();
        Square const black_king = position_.black_kingsfield();
        white = -2 * distance_(white_king, record.black_weak) -
                3 * distance_(white_king, record.white_ahead);
        black = -2 * distance_(black_king, record.white_weak) -
                3 * distance_(black_king, record.black_ahead);
    } else {
        white = king_centralisation(position_.white_king());
        black = king_centralisation(position_.black_king());
    }
    activity_bits_[0] = std::bit_cast<std::uint32_t>(static_cast<float>(white - black) * eg_phase_);
}

void Evaluation::compute_king_activity() {
    find_king_activity();
    publish(term::king_activity);
}

void Evaluation::find_pinned_pieces() {
    BitBoard const pinned = position_.pinned_pieces();
    int_terms_[term::pinned_pieces] = 0;
    if (pinned) {
        int_terms_[term::pinned_pieces] =
            count(pinned & position_.black_pieces()) - count(pinned & position_.white_pieces());
    }
}

void Evaluation::compute_pinned_pieces() {
    find_pinned_pieces();
    publish(term::pinned_pieces);
}

// Two bishops with one of them White's are one each.
void Evaluation::find_opposite_colored_bishops() {
    BitBoard const white = position_.white_bishop();
    BitBoard const black = position_.black_bishop();
    BitBoard const both = white | black;
    int_terms_[term::opposite_colored_bishops] =
        single(white) && single(both & ~white) && (both & white_squares) && (both & black_squares)
            ? 1
            : 0;
}

void Evaluation::compute_opposite_colored_bishops() {
    find_opposite_colored_bishops();
    publish(term::opposite_colored_bishops);
}

void Evaluation::find_stm() {
    int_terms_[term::stm] = 2 * position_.stm() - 1;
}

void Evaluation::forget_last_evaluation() {
    men_moved_ = true;
    phase_material_ = no_material;
}

void Evaluation::publish(std::size_t first, std::size_t last) {
    forget_last_evaluation();
    for (std::size_t i = first; i <= last; ++i) {
        float value = static_cast<float>(int_terms_[i]);
        if (i >= term::pst_pawn && i <= term::pst_king) {
            value = pst_terms_[i - term::pst_pawn];
        }
        if (i == term::king_attack) {
            value *= king_attack_scale;
        }
        if (i == term::king_activity) {
            value = std::bit_cast<float>(activity_bits_[0]);
        }
        variable_vector_[i] = value;
    }
}

float Evaluation::blend_material_to_space(float score) {
    auto const values = as_floats<term::material, 8>(int_terms_);
    return add_blend<term::material>(score, values, mg_phase_, eg_phase_, variable_vector_.data());
}

// Four pure piece-square terms; two more share their group with two integers.
float Evaluation::blend_pst_to_king_attack(float score) {
    alignas(16) constexpr std::array<float, 8> scale{0, 0, 0, 0, 1, 1, 1, king_attack_scale};
    alignas(16) std::array<float, 8> values = as_floats<term::pst_pawn, 8>(int_terms_);
    for (std::size_t i = 0; i < 4; ++i) {
        values[i] = pst_terms_[i];
    }
    for (std::size_t i = 4; i < 8; ++i) {
        values[i] = values[i] * scale[i] + pst_terms_[i];
    }
    return add_blend<term::pst_pawn>(score, values, mg_phase_, eg_phase_, variable_vector_.data());
}

float Evaluation::blend_castling_to_battlefield(float score) {
    auto const values = as_floats<term::castling_rights, 16>(int_terms_);
    return add_blend<term::castling_rights>(score, values, mg_phase_, eg_phase_,
                                            variable_vector_.data());
}

float Evaluation::blend_king_activity_to_bishops(float score) {
    alignas(16) std::array<float, 16> values = as_floats<term::king_activity, 16>(int_terms_);
    for (std::size_t i = 0; i < 4; ++i) {
        values[i] =
            std::bit_cast<float>(std::bit_cast<std::uint32_t>(values[i]) | activity_bits_[i]);
    }
    return add_blend<term::king_activity, 16, 14>(score, values, mg_phase_, eg_phase_,
                                                  variable_vector_.data());
}

float Evaluation::blend_stm(float score) {
    float const side = static_cast<float>(int_terms_[term::stm]);
    variable_vector_[term::stm] = side;
    float const end_game = side * Weight::eg_row[term::stm] * eg_phase_;
    float const middle_game = side * Weight::mg_row[term::stm] * mg_phase_;
    return score + (end_game + middle_game);
}

void Evaluation::scale_opposite_bishops() {
    // Halving is exact, so it needs neither double precision nor a division.
    bool const halved = int_terms_[term::opposite_colored_bishops] != 0;
    score_ = rounded(halved ? score_ * 0.5F : score_);
}

int Evaluation::material() const {
    return static_cast<int>(variable_vector_[term::material]);
}

int Evaluation::mobility() const {
    return static_cast<int>(variable_vector_[term::mobility]);
}

int Evaluation::king_safety() const {
    return static_cast<int>(variable_vector_[term::king_attack]);
}

std::string Evaluation::fen() const {
    return position_.fen();
}

}  // namespace orvelin
