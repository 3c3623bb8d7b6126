#pragma once

#include <cstdint>

namespace orvelin {

/// One set of keys for position hashing, indexed the way `make_move` needs them.
///
/// The rows of id 0 (and in `pawn` every row but those of the two pawns) are zero in the first
/// set, so that updating a key asks neither whether a piece was captured nor whether a pawn moved.
/// A move word holds ids of four bits, so there are 16 rows; the last belongs to no piece and is
/// zero in both sets, for the ids that an illegal promotion makes. Plain data, filled once by one
/// of the two functions below and read-only from then on.
struct HashKeys {
    static constexpr int rows = 16;

    std::uint64_t piece[rows][64] = {};  ///< by piece id and square
    std::uint64_t pawn[rows][64] = {};   ///< by piece id and square
    std::uint64_t castling[4] = {};      ///< white short, white long, black short, black long
    std::uint64_t en_passant[8] = {};    ///< by file
    std::uint64_t turn = 0;              ///< White to move
};

/// The Polyglot keys: a standard position hashes to the key of the book format.
HashKeys make_polyglot_keys();

/// A second, independent set of the same shape, the same in every run.
HashKeys make_random_keys();

}  // namespace orvelin
