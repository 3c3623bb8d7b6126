#include <cstdint>

#include "evaluation/evaluation.h"
#include "position/bit_board.h"
#include "position/chess_position.h"

namespace orvelin {

namespace {

constexpr std::uint64_t c_pawn = 0x04;
constexpr std::uint64_t d_and_e_pawns = 0x18;

// Every square of each file that holds a member of the set.
std::uint64_t file_fill(std::uint64_t set) {
    set |= set >> 8;
    set |= set >> 16;
    set |= set >> 32;
    return (set & 0xFF) * 0x0101010101010101ULL;
}

// What one side's development is worth from its own view.
template <int Side>
int development_of(ChessPosition const& position) {
    constexpr int own = Side == 1 ? 0 : 8;
    constexpr int home_shift = Side == 1 ? 0 : 56;
    constexpr int pawn_shift = Side == 1 ? 8 : 48;
    std::uint64_t const pawns = to_ull(position.piece(own + 1));
    std::uint64_t const minors = to_ull(position.piece(own + 2) | position.piece(own + 3));
    std::uint64_t const rooks = to_ull(position.piece(own + 4));
    std::uint64_t const occupied = to_ull(position.pieces());
    std::uint64_t const before_occupied = Side == 1 ? occupied >> 8 : occupied << 8;
    std::uint64_t const blocked = pawns & before_occupied;

    int const at_home = BitBoard::popcount(minors & (0xFFULL << home_shift));
    // The files as they stand on the board, not those of the pawn record.
    int const rooks_free = BitBoard::popcount(rooks & ~file_fill(pawns));
    int const centre_blocked = 10 * BitBoard::popcount(blocked & (c_pawn << pawn_shift)) +
                               20 * BitBoard::popcount(blocked & (d_and_e_pawns << pawn_shift));
    return 20 * rooks_free - 20 * at_home - centre_blocked;
}

}  // namespace

void Evaluation::compute_development() {
    variable_vector_[term::development] =
        static_cast<float>(development_of<1>(position_) - development_of<0>(position_));
}

}  // namespace orvelin
