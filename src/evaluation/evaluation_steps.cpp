// The steps of the evaluation by themselves. static_eval() takes none of them: it goes through the
// same terms in an order that serves the sum.

#include <cstdint>

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

void Evaluation::compute_phase() {
    forget_last_evaluation();
    find_phase();
}

void Evaluation::compute_material() {
    terms_.integers[term::material] = material_.get_eval(position_.materialindex());
    forget_last_evaluation();
}

void Evaluation::compute_mobility() {
    find_mobility_terms();
    terms_.integers[term::locked_up_rook] =
        KingZone<side::black, false>(position_, mobility_).shut_in_rook(position_) -
        KingZone<side::white, false>(position_, mobility_).shut_in_rook(position_);
    forget_last_evaluation();
}

// The term exists in the vectors but measures nothing (oddity 102).
void Evaluation::compute_space() {
    terms_.integers[term::space] = 0;
    forget_last_evaluation();
}

void Evaluation::compute_pst() {
    // Not a term of this step, and where that stores zeros behind its own.
    std::uint32_t const king_attack = terms_.float_bits[term::king_attack];
    find_pst_terms();
    terms_.float_bits[term::king_attack] = king_attack;
    forget_last_evaluation();
}

void Evaluation::compute_pawn_eval() {
    find_pawn_record();
    find_pawn_terms(loose_king_relations());
    forget_last_evaluation();
}

void Evaluation::compute_development() {
    find_development();
    forget_last_evaluation();
}

void Evaluation::compute_king_safety() {
    // That term is one of compute_mobility().
    int const locked_up_rook = terms_.integers[term::locked_up_rook];
    king_terms::find<false>(terms_, position_, mobility_, loose_king_relations());
    terms_.integers[term::locked_up_rook] = locked_up_rook;
    forget_last_evaluation();
}

void Evaluation::compute_king_activity() {
    find_king_activity(loose_king_relations());
    forget_last_evaluation();
}

void Evaluation::compute_pinned_pieces() {
    find_pinned_pieces();
    forget_last_evaluation();
}

void Evaluation::compute_opposite_colored_bishops() {
    find_opposite_colored_bishops();
    forget_last_evaluation();
}

}  // namespace orvelin
