#include "generation/magic_moves.h"

namespace orvelin {

namespace {

struct step_t {
    int file;
    int rank;
};

constexpr step_t rook_steps[4] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
constexpr step_t bishop_steps[4] = {{1, 1}, {-1, 1}, {1, -1}, {-1, -1}};

bool on_board(int file, int rank) {
    return file >= 0 && file < 8 && rank >= 0 && rank < 8;
}

BitBoard walk(Square const& square, BitBoard const& occupied, step_t const (&steps)[4]) {
    BitBoard reached;
    if (square.id() < 0 || square.id() > 63) return reached;
    for (step_t const& step : steps) {
        int file = square.file_number() + step.file;
        int rank = square.rank_number() + step.rank;
        while (on_board(file, rank)) {
            Square const next(8 * rank + file);
            reached.set_square(next);
            if (occupied & next.bitboard()) break;
            file += step.file;
            rank += step.rank;
        }
    }
    return reached;
}

}  // namespace

BitBoard MagicMoves::rook_moves(Square const& square, BitBoard const& occupied) {
    return walk(square, occupied, rook_steps);
}

BitBoard MagicMoves::bishop_moves(Square const& square, BitBoard const& occupied) {
    return walk(square, occupied, bishop_steps);
}

std::vector<BitBoard> MagicMoves::possible_occupancies(BitBoard const& mask) {
    std::vector<BitBoard> subsets(std::size_t{1} << mask.popcount());
    std::vector<Square> const squares = mask.get_squares();
    for (std::size_t i = 0; i < subsets.size(); ++i) {
        for (std::size_t k = 0; k < squares.size(); ++k) {
            if ((i >> k) & 1) subsets[i].set_square(squares[k]);
        }
    }
    return subsets;
}

}  // namespace orvelin
