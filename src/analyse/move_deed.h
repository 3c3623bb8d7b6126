#pragma once

#include <string>

#include "analyse/explanation.h"
#include "analyse/move_judgement.h"

namespace orvelin::analyse {

/// In pawns of the phase: by less the material has not decided.
inline constexpr double least_material = 0.6;

/// What the worse of two moves does, when this group of terms lost most, as "ends with the weaker
/// pawns".
/// @param white Whether White chose between the two.
std::string deed_of(GroupChange const& group, Leaf const& better, Leaf const& worse, bool white);

/// Says "loses" of what the worse line itself loses, and else what the better one wins or has more.
/// Empty where that cannot be said in few words.
/// @param is_missed_chance Set where it is the better line that wins something.
std::string deed_of_material(MoveInGame const& move, Line const& better, Line const& worse,
                             bool& is_missed_chance);

/// Whether the line begins by taking what took something.
bool recaptures(MoveInGame const& move, Line const& line);

}  // namespace orvelin::analyse
