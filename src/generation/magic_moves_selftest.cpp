#include <iostream>

#include "generation/magic_moves.h"

namespace orvelin {

namespace {

template <typename Tables>
std::size_t bytes(Tables const& tables) {
    std::size_t sum = 0;
    for (std::size_t s = 0; s < 64; ++s) {
        sum += tables[s].size() * sizeof(tables[s][0]);
    }
    return sum;
}

}  // namespace

int MagicMoves::size() const {
    return static_cast<int>(bytes(magic_bishop_moves_) + bytes(bishop_index_) +
                            bytes(bishop_attacks_) + bytes(magic_rook_moves_) + bytes(rook_index_) +
                            bytes(rook_attacks_));
}

bool MagicMoves::selftest_ok() const {
    for (int s = 0; s < 64; ++s) {
        if (!all_different(bishop_attacks(s), s, "bishopattacks")) {
            return false;
        }
        if (!all_different(rook_attacks(s), s, "rookattacks")) {
            return false;
        }
    }
    for (int s = 0; s < 64; ++s) {
        if (!index_matches(bishop_index(s), bishop_attacks(s), magic_bishop_moves(s), s,
                           "bishop")) {
            return false;
        }
    }
    for (int s = 0; s < 64; ++s) {
        if (!index_matches(rook_index(s), rook_attacks(s), magic_rook_moves(s), s, "rook")) {
            return false;
        }
    }
    return true;
}

bool MagicMoves::all_different(std::vector<BitBoard> const& attacks, int square, char const* name) {
    for (std::size_t i = 0; i < attacks.size(); ++i) {
        for (std::size_t j = i + 1; j < attacks.size(); ++j) {
            if (attacks[i] != attacks[j]) {
                continue;
            }
            std::cout << "\nMagicMoves::selftest_ok() error in " << name << "   square=" << square
                      << "   i=" << i << "   j=" << j << '\n';
            return false;
        }
    }
    return true;
}

/// A working table that was dropped fails at its first entry, as no square has an empty set of
/// moves on an empty board.
bool MagicMoves::index_matches(std::vector<unsigned char> const& index,
                               std::vector<BitBoard> const& attacks,
                               std::vector<BitBoard> const& raw, int square, char const* name) {
    for (std::size_t i = 0; i < index.size(); ++i) {
        BitBoard const expected = i < raw.size() ? raw[i] : BitBoard();
        BitBoard const found = index[i] < attacks.size() ? attacks[index[i]] : BitBoard();
        if (found == expected) {
            continue;
        }
        std::cout << "square=" << square << '\n'
                  << "index=" << i << '\n'
                  << std::hex << "magic_" << name << "_moves: " << to_ull(expected) << '\n'
                  << name << "_attacks: " << to_ull(found) << std::dec << '\n';
        return false;
    }
    return true;
}

}  // namespace orvelin
