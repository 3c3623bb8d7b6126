#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "analyse/explanation.h"
#include "analyse/material_balance.h"
#include "analyse/move_judgement.h"

namespace orvelin::analyse {

/// Why one line is worse than another, as their leaves tell it.
struct MoveReason {
    /// What the worse move does, as "loses a bishop" or "ends with the weaker pawns".
    std::string deed;
    /// The terms that lost most, the largest loss first; each at least a tenth of a pawn when
    /// rounded. Never empty.
    std::vector<TermChange> terms;
    /// What counts is that the better line wins something: that one is to be shown.
    bool is_missed_chance = false;
    /// So many moves of the line to be shown lead to the material that is told of; 0 when none is.
    std::size_t moves_needed = 0;
};

/// Takes lines with leaves; a reason without terms where the leaves tell no loss.
MoveReason find_reason(MoveInGame const& move, Line const& better, Line const& worse);

/// What the side to move wins by the leaf of the line, less what the move before it took.
MaterialBalance material_won(MoveInGame const& move, Line const& line);

/// The number of moves of the leaf's line after which the material is that of the leaf for good.
std::size_t moves_to_material(Leaf const& leaf);

}  // namespace orvelin::analyse
