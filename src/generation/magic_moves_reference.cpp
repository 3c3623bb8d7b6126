#include <cstdint>

#include "generation/magic_moves.h"
#include "position/masks.h"

namespace orvelin {

namespace {

/// Walks from the square until the step leaves the board or arrives on an occupied square.
template <typename Step>
BitBoard ray(BitBoard square, BitBoard const& occupied, Step step) {
    BitBoard reached;
    do {
        square = step(square);
        reached |= square;
    } while (square && !(square & occupied));
    return reached;
}

BitBoard start_of(Square const& square) {
    return square.id() < 0 || square.id() > 63 ? BitBoard() : square.bitboard();
}

}  // namespace

BitBoard MagicMoves::rook_moves(Square const& square, BitBoard const& occupied) {
    BitBoard const start = start_of(square);
    return ray(start, occupied, [](BitBoard b) { return b << 8; }) |
           ray(start, occupied, [](BitBoard b) { return b >> 8; }) |
           ray(start, occupied, [](BitBoard b) { return (b << 1) & not_a_file; }) |
           ray(start, occupied, [](BitBoard b) { return (b >> 1) & not_h_file; });
}

BitBoard MagicMoves::bishop_moves(Square const& square, BitBoard const& occupied) {
    BitBoard const start = start_of(square);
    return ray(start, occupied, [](BitBoard b) { return (b << 9) & not_a_file; }) |
           ray(start, occupied, [](BitBoard b) { return (b << 7) & not_h_file; }) |
           ray(start, occupied, [](BitBoard b) { return (b >> 7) & not_a_file; }) |
           ray(start, occupied, [](BitBoard b) { return (b >> 9) & not_h_file; });
}

std::vector<BitBoard> MagicMoves::possible_occupancies(BitBoard const& mask) {
    std::vector<BitBoard> subsets(std::size_t{1} << mask.popcount());
    // Subtracting the mask carries past the squares that are not in it, which counts the subsets
    // up in the wanted order.
    std::uint64_t const squares = to_ull(mask);
    std::uint64_t subset = 0;
    for (BitBoard& next : subsets) {
        next = BitBoard(subset);
        subset = (subset - squares) & squares;
    }
    return subsets;
}

}  // namespace orvelin
