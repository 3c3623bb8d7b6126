#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "analyse/position_search.h"
#include "analyse/term_names.h"

namespace orvelin::analyse {

/// A term of two leaves, in pawns of the phase, from the side that chose between the two moves.
struct TermChange {
    /// In the order of `term`.
    std::size_t index = 0;
    double best = 0;
    double played = 0;
    /// What the term is worth less behind the move that was played than behind the best one;
    /// below 0 it is a loss.
    double change = 0;
};

/// The terms that a player calls by one name.
struct GroupChange {
    term_group group = term_group::material;
    /// The sum over its terms.
    double change = 0;
    /// Those that differ, the largest difference first; of equal ones in the order of `term`.
    std::vector<TermChange> terms;
};

/// Why one move is better than another: the difference of the two positions that gave the scores.
///
/// Everything is told in pawns of the phase, that is in units of what a pawn counts with the pieces
/// that stand on the board when the move is chosen: one yardstick for both leaves. Bishops of
/// opposite colours and a near fifty-move limit make all terms of a leaf smaller, so that they show
/// in every term that there is, and not as one of their own.
struct Explanation {
    /// Engine units in a pawn.
    double pawn = 0;
    /// All groups in the order of `term_group`.
    std::array<GroupChange, term_group_count> groups;
    /// The sum over the groups. The scores of the lines are rounded to engine units, and may differ
    /// from the sums of their leaves by one and a half of them.
    double change = 0;

    /// The groups with a change, the largest first; of equal ones in the order of `term_group`.
    std::vector<GroupChange const*> largest_first() const;
};

/// Takes the position in which the move is chosen, which tells phase and side, and the leaves
/// behind the best and the played move.
Explanation explain(std::string_view fen, Leaf const& best, Leaf const& played);

}  // namespace orvelin::analyse
