#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analyse/explanation.h"
#include "analyse/material_balance.h"
#include "analyse/move_judgement.h"

namespace orvelin::analyse {

/// The change of a term or, where many small ones add up, of a group, in pawns of the phase.
struct NamedChange {
    std::string_view name;
    double change = 0;
};

/// Why one line is worse than another, as their leaves tell it.
struct MoveReason {
    /// What the worse move does, as "loses a bishop" or "ends with the weaker pawns".
    std::string deed;
    /// What lost most, the largest loss first; each at least a tenth of a pawn when rounded. Empty
    /// where the leaves tell no loss, and then nothing else is told either.
    std::vector<NamedChange> losses;
    /// What is gained instead, where that makes up for much of the largest loss.
    std::optional<NamedChange> gain;
    /// By how much the worse line is worse in all, in pawns; 0 or less.
    double change = 0;
    /// What counts is that the better line wins something: that one is to be shown.
    bool is_missed_chance = false;
    /// So many moves of the line to be shown lead to the material that is told of; 0 when none is.
    std::size_t moves_needed = 0;
};

/// Takes lines with leaves.
MoveReason find_reason(MoveInGame const& move, Line const& better, Line const& worse);

/// What the side to move has more by the leaf of the line than before the line.
MaterialBalance material_change(MoveInGame const& move, Line const& line);

/// What the side to move has more at the leaf of the line than the other side.
MaterialBalance material_after(MoveInGame const& move, Line const& line);

/// What the side to move wins by the leaf of the line, less what the move before it took.
MaterialBalance material_won(MoveInGame const& move, Line const& line);

/// The number of moves of the leaf's line after which the material is that of the leaf for good.
std::size_t moves_to_material(Leaf const& leaf);

}  // namespace orvelin::analyse
