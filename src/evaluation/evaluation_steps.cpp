// The steps of the evaluation by themselves. static_eval() takes none of them: it goes through the
// same terms in an order that serves the sum.

#include "evaluation/development_terms.h"
#include "evaluation/evaluation.h"
#include "evaluation/king_terms.h"
#include "evaluation/king_zone.h"
#include "position/chess_position.h"
#include "position/side.h"

namespace orvelin {

void Evaluation::forget_last_evaluation() {
    terms_may_differ_ = true;
    phase_material_ = no_material;
}

void Evaluation::publish(std::size_t first, std::size_t last) {
    forget_last_evaluation();
    for (std::size_t i = first; i <= last; ++i) {
        variable_vector_[i] = terms_.value(i);
    }
}

void Evaluation::compute_phase() {
    forget_last_evaluation();
    find_phase();
}

void Evaluation::compute_material() {
    terms_.integers[term::material] = material_.get_eval(position_.materialindex());
    publish(term::material);
}

void Evaluation::compute_mobility() {
    find_mobility_terms();
    terms_.integers[term::locked_up_rook] =
        KingZone<side::black, false>(position_, mobility_).shut_in_rook(position_) -
        KingZone<side::white, false>(position_, mobility_).shut_in_rook(position_);
    publish(term::mobility, term::queen_mobility);
    publish(term::locked_up_rook, term::own_hanging_material);
    publish(term::safe_queencheck);
}

// The term exists in the vectors but measures nothing (oddity 102).
void Evaluation::compute_space() {
    terms_.integers[term::space] = 0;
    publish(term::space);
}

void Evaluation::compute_pst() {
    find_pst_terms();
    publish(term::pst_pawn, term::pst_king);
}

void Evaluation::compute_pawn_eval() {
    find_pawn_record();
    find_pawn_terms();
    publish(term::rookpawn, term::pawn_islands);
    publish(term::bad_bishop);
}

void Evaluation::compute_development() {
    find_development();
    publish(term::development);
}

void Evaluation::compute_king_safety() {
    // That term is one of compute_mobility().
    int const locked_up_rook = terms_.integers[term::locked_up_rook];
    king_terms::find<false>(terms_, position_, mobility_, *pawn_record_);
    terms_.integers[term::locked_up_rook] = locked_up_rook;
    publish(term::pawn_shield, term::open_files_on_king);
    publish(term::knight_king_contact, term::queen_battlefield_attack);
}

void Evaluation::compute_king_activity() {
    find_king_activity();
    publish(term::king_activity);
}

void Evaluation::compute_pinned_pieces() {
    find_pinned_pieces();
    publish(term::pinned_pieces);
}

void Evaluation::compute_opposite_colored_bishops() {
    find_opposite_colored_bishops();
    publish(term::opposite_colored_bishops);
}

}  // namespace orvelin
