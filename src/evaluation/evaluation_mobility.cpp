#include "evaluation/evaluation.h"
#include "position/chess_position.h"
#include "position/masks.h"

namespace orvelin {

namespace {

/// 1 when a rook and the king of one side stand so that the king shuts the rook in.
int locked_up(BitBoard const& rooks, BitBoard const& rook_squares, BitBoard const& kings,
              BitBoard const& king_squares) {
    return (rooks & rook_squares) && (kings & king_squares) ? 1 : 0;
}

int locked_up_rooks(ChessPosition const& position) {
    BitBoard const white_rooks = position.white_rook();
    BitBoard const black_rooks = position.black_rook();
    BitBoard const white_king = position.white_king();
    BitBoard const black_king = position.black_king();
    return locked_up(black_rooks, g8h8h7, black_king, f8g8) +
           locked_up(black_rooks, a8b8c8a7, black_king, b8c8d8) -
           locked_up(white_rooks, g1h1h2, white_king, f1g1) -
           locked_up(white_rooks, a1b1c1a2, white_king, b1c1d1);
}

}  // namespace

void Evaluation::compute_mobility() {
    mobility_.compute(position_);
    auto& terms = variable_vector_;
    terms[term::mobility] = static_cast<float>(mobility_.safe_mobility());
    terms[term::knight_mobility] = static_cast<float>(mobility_.safe_knight_mobility());
    terms[term::bishop_mobility] = static_cast<float>(mobility_.safe_bishop_mobility());
    terms[term::rook_mobility] = static_cast<float>(mobility_.safe_rook_mobility());
    terms[term::queen_mobility] = static_cast<float>(mobility_.safe_queen_mobility());
    terms[term::locked_up_rook] = static_cast<float>(locked_up_rooks(position_));
    terms[term::undefended_pieces] = static_cast<float>(mobility_.undefended_pieces(position_));
    terms[term::own_hanging_material] = static_cast<float>(mobility_.hanging_pieces(position_));
    terms[term::safe_queencheck] = static_cast<float>(mobility_.safe_queen_checks());
}

}  // namespace orvelin
