#pragma once

#include <array>
#include <cstdint>

#include "position/bit_board.h"

namespace orvelin {

/// What pawns and two kings decide together beside the record of the pawn key, whatever else is on
/// the board.
struct king_relations_t {
    /// Both on a1, which no kings are.
    static constexpr std::uint16_t no_kings = 0;

    /// Those that were on the board: a promotion that takes a pawn leaves it in the key, so that
    /// other pawns can have the key of the record.
    BitBoard white_pawns;
    BitBoard black_pawns;
    /// Squares of the kings in one number, White's in the lower six bits.
    std::uint16_t kings = no_kings;
    std::int16_t activity = 0;            ///< before the share of the end game, White's view
    std::int16_t pawn_shield = 0;         ///< the term
    std::int16_t open_files_on_king = 0;  ///< the term
    std::int16_t pawn_storm = 0;          ///< the term
    std::int32_t white_passer_score = 0;  ///< the record's, less by what a near enemy king takes
    std::int32_t black_passer_score = 0;  ///< as for White
};

/// What depends on the pawns alone, for one pawn structure.
///
/// A plain record: everything but the key and the relations is a pure function of the two pawn
/// sets. All scores are black minus white, the passer scores excepted, which stand for their own
/// side.
struct alignas(64) PHTrecord {
    /// Number of maximal runs of adjacent set bits, for each mask of eight files.
    static const std::array<std::uint8_t, 256> pawn_island_table;

    /// All fields zero.
    PHTrecord() = default;

    /// Zeroes all fields, the key included.
    void clear();

    /// Analyses the pawn structure; the key stays as it is.
    void set_pawns(BitBoard const& white, BitBoard const& black);

    // What nearly every evaluation reads comes first, in two cache lines.

    std::uint64_t key = 0;  ///< pawn key of the structure, 0 also for an empty slot

    king_relations_t relations;  ///< with the last kings that stood beside the pawns

    BitBoard white_passed;  ///< passed pawns
    BitBoard white_stop;    ///< the squares one rank ahead of the passed pawns
    BitBoard white_behind;  ///< the squares behind the passed pawns on their files

    BitBoard black_passed;  ///< as for White
    BitBoard black_stop;    ///< as for White, one rank down
    BitBoard black_behind;  ///< as for White

    std::int32_t white_passer_score = 0;  ///< by rank, connected passed pawns twice
    std::int32_t black_passer_score = 0;  ///< by rank, connected passed pawns twice
    std::int32_t doubled = 0;             ///< pawns with a friend one to four ranks ahead
    std::int32_t weak = 0;                ///< sizes of the weak sets
    std::int32_t isolated = 0;            ///< pawns without a friend on an adjacent file
    std::int32_t islands = 0;             ///< groups of adjacent files with pawns
    std::int32_t rookpawns = 0;           ///< pawns on the a and h files

    BitBoard white_ahead;       ///< the squares two to seven ranks ahead of the passed pawns
    BitBoard white_weak;        ///< pawns no friend on an adjacent file can ever stand beside
    BitBoard white_open_files;  ///< every square of each file without a white pawn

    BitBoard black_ahead;       ///< as for White, two to seven ranks down
    BitBoard black_weak;        ///< as for White
    BitBoard black_open_files;  ///< every square of each file without a black pawn
};

static_assert(sizeof(PHTrecord) == 192);

}  // namespace orvelin
