#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "analyse/move_reason.h"
#include "analyse/position_search.h"

namespace orvelin::analyse {

/// So many replies are shown when nothing asks for more.
inline constexpr std::size_t usual_replies = 3;

/// A score as annotated games have it: in pawns as users know them, from the point of view of
/// White, "0.35", or as a mate, "#-3".
std::string eval_text(int score, bool white_to_move);

/// The change of a term or group, "-3.1".
std::string change_text(double pawns);

/// "material -3.1, king attack -0.4 against passed pawns +1.6".
std::string changes_text(MoveReason const& reason);

/// "mate in 3".
std::string mate_text(int moves);

/// The whole line that is known: that of the leaf goes on behind the other.
std::span<Move const> known_moves(Line const& line);

bool have_leaves(Line const& one, Line const& other);

}  // namespace orvelin::analyse
