#pragma once

#include <cstdint>

namespace orvelin {

/// One set of keys for position hashing, indexed the way `make_move` needs them.
///
/// The rows of id 0 (and in `pawn` every row but those of the two pawns) are zero in the first
/// set, so that updating a key asks neither whether a man was captured nor whether a pawn moved.
/// Plain data, filled once by one of the two functions below and read-only from then on.
struct HashKeys {
    std::uint64_t piece[15][64] = {};  ///< by piece id and square
    std::uint64_t pawn[15][64] = {};   ///< by piece id and square
    std::uint64_t castling[4] = {};    ///< white short, white long, black short, black long
    std::uint64_t en_passant[8] = {};  ///< by file
    std::uint64_t turn = 0;            ///< White to move
};

/// The Polyglot keys: a standard position hashes to the key of the book format.
HashKeys make_polyglot_keys();

/// A second, independent set of the same shape, the same in every run.
HashKeys make_random_keys();

}  // namespace orvelin
