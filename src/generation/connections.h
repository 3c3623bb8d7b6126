#pragma once

#include "position/bit_board.h"
#include "position/square.h"

namespace orvelin {

/// Lines of the empty board: slider moves from a square and the squares between two squares.
///
/// Owns its tables, is built once at start and is read-only afterwards, from any thread. Row and
/// column 64 (no square) are empty.
class Connections {
 public:
    Connections();

    BitBoard const& rook_attacks(Square const& s) const { return rook_attacks_[s.id()]; }
    BitBoard const& bishop_attacks(Square const& s) const { return bishop_attacks_[s.id()]; }
    BitBoard const& queen_attacks(Square const& s) const { return queen_attacks_[s.id()]; }

    /// The squares strictly between `a` and `b`; empty unless they share a rank, file or diagonal.
    BitBoard const& line_segment(Square const& a, Square const& b) const {
        return line_segment_[a.id()][b.id()];
    }
    /// The same with `a` and `b` added, also for squares that share no line.
    BitBoard const& closed_line_segment(Square const& a, Square const& b) const {
        return closed_line_segment_[a.id()][b.id()];
    }

 private:
    void fill_slider_attacks();
    void fill_line_segments();

    BitBoard rook_attacks_[65];
    BitBoard bishop_attacks_[65];
    BitBoard queen_attacks_[65];
    BitBoard line_segment_[65][65];
    BitBoard closed_line_segment_[65][65];
};

}  // namespace orvelin
