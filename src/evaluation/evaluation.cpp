#include "evaluation/evaluation.h"

#include <cmath>

#include "position/chess_position.h"

namespace orvelin {

Evaluation::Evaluation(ChessPosition const& position, Tables& tables)
    : position_(position), mobility_(tables.attacks), variable_vector_(term::count, 0.0F) {
    piece_square_tables_.init(position_);
}

void Evaluation::init() {
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

int Evaluation::static_eval() {
    ++total_evals_;
    score_ = 0.0F;
    compute_phase();
    compute_material();
    compute_mobility();
    compute_space();
    compute_pst();
    compute_pawn_eval();
    compute_development();
    compute_king_safety();
    compute_king_activity();
    compute_pinned_pieces();
    compute_opposite_colored_bishops();
    compute_stm();
    blend();
    scale_opposite_bishops();
    dispatch_endgame();
    return static_cast<int>(score_ * variable_vector_[term::stm]);
}

// Not clamped: with promoted men beyond the first set the end-game share turns negative.
void Evaluation::compute_phase() {
    mg_phase_ = static_cast<float>(position_.nobelmen()) / 6200.0F;
    eg_phase_ = 1.0F - mg_phase_;
}

void Evaluation::compute_material() {
    variable_vector_[term::material] =
        static_cast<float>(material_.get_eval(position_.materialindex()));
}

// The term exists in the vectors but measures nothing; kept at 0.
void Evaluation::compute_space() {
    variable_vector_[term::space] = 0.0F;
}

// Blended by the phase here and a second time with the weights, by design.
void Evaluation::compute_pst() {
    auto const blended = [this](PieceSquareTables::pair_t const& sum) {
        return sum.first * mg_phase_ + sum.second * eg_phase_;
    };
    variable_vector_[term::pst_pawn] = blended(piece_square_tables_.get_pawn_score());
    variable_vector_[term::pst_knight] = blended(piece_square_tables_.get_knight_score());
    variable_vector_[term::pst_bishop] = blended(piece_square_tables_.get_bishop_score());
    variable_vector_[term::pst_rook] = blended(piece_square_tables_.get_rook_score());
    variable_vector_[term::pst_queen] = blended(piece_square_tables_.get_queen_score());
    variable_vector_[term::pst_king] = blended(piece_square_tables_.get_king_score());
}

void Evaluation::compute_stm() {
    variable_vector_[term::stm] = static_cast<float>(2 * position_.stm() - 1);
}

// Each operation rounds to float, in this order: end game first, then middle game, then the sum.
void Evaluation::blend() {
    for (std::size_t i = 0; i < term::count; ++i) {
        float const end_game = variable_vector_[i] * weight_.eg[i] * eg_phase_;
        float const middle_game = variable_vector_[i] * weight_.mg[i] * mg_phase_;
        score_ += end_game + middle_game;
    }
}

void Evaluation::scale_opposite_bishops() {
    double const divisor =
        static_cast<double>(variable_vector_[term::opposite_colored_bishops]) + 1.0;
    score_ = std::round(static_cast<float>(static_cast<double>(score_) / divisor));
}

int Evaluation::material() const {
    return static_cast<int>(variable_vector_[term::material]);
}

int Evaluation::mobility() const {
    return static_cast<int>(variable_vector_[term::mobility]);
}

std::string Evaluation::fen() const {
    return position_.fen();
}

}  // namespace orvelin
