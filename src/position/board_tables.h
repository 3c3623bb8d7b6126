#pragma once

#include "position/bit_board.h"
#include "position/square.h"

namespace orvelin {

class Attacks;
class Connections;
struct HashKeys;
struct Tables;

/// The part of `Tables` that positions, generators and evaluations read: everything that is about
/// the board and nothing that is about the search.
///
/// Owns nothing; the tables must outlive it. They are read-only, so any thread may look up.
/// `Tables` stands above this folder, because it holds the transposition table too. Here it is a
/// name only: constructor and look-ups are defined in `generation`, where the tables are known.
/// Link-time optimisation puts the look-ups in line again.
struct BoardTables {
    explicit BoardTables(Tables const& tables);

    /// Attack sets as `Attacks` gives them; no square (id 64) attacks nothing.
    BitBoard const& knight(Square const& square) const;
    BitBoard const& king(Square const& square) const;
    BitBoard const& bishop(Square const& square, BitBoard const& occupied) const;
    BitBoard const& rook(Square const& square, BitBoard const& occupied) const;
    BitBoard queen(Square const& square, BitBoard const& occupied) const;
    /// Slider moves on the empty board.
    BitBoard const& empty_board_bishop(Square const& square) const;
    BitBoard const& empty_board_rook(Square const& square) const;
    /// The squares strictly between `a` and `b`; empty unless they share a rank, file or diagonal.
    BitBoard const& line_segment(Square const& a, Square const& b) const;

    Attacks const& attacks;
    Connections const& connections;
    HashKeys const& hash_keys;
};

}  // namespace orvelin
