#include "evaluation/evaluation.h"
#include "evaluation/side_men.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/set_steps.h"

namespace orvelin {

namespace {

/// What one side's development is worth from its own view.
template <int Side>
int development_of(ChessPosition const& position) {
    using men = SideMen<Side>;
    constexpr BitBoard home = Side == 1 ? rank1 : rank8;
    constexpr BitBoard pawn_rank = Side == 1 ? rank2 : rank7;
    BitBoard const minors = men::knights(position) | men::bishops(position);
    // The files as they stand on the board, not those of the pawn record.
    BitBoard const free_rooks = men::rooks(position) & ~file_fill(men::pawns(position));
    BitBoard const blocked =
        men::pawns(position) & pawn_rank & ahead<men::enemy>(position.pieces(), 1);

    return 20 * free_rooks.popcount() - 20 * (minors & home).popcount() -
           10 * (blocked & c_file).popcount() - 20 * (blocked & (d_file | e_file)).popcount();
}

}  // namespace

void Evaluation::compute_development() {
    variable_vector_[term::development] =
        static_cast<float>(development_of<1>(position_) - development_of<0>(position_));
}

}  // namespace orvelin
