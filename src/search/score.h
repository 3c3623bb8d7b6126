#pragma once

namespace orvelin {

/// The score scale of the whole search: an `int` from the point of view of the
/// side to move, in the units of the static evaluation.
inline constexpr int draw_score = 0;

/// A mate delivered at ply p is worth mate_score - p; being mated there p - mate_score.
inline constexpr int mate_score = 30000;

/// Bounds of the open window.
inline constexpr int infinite_score = 32000;

/// Scores from -max_ordinary_score to max_ordinary_score are ordinary; what lies
/// outside tells a mate.
inline constexpr int max_ordinary_score = 29897;

/// Lowest score that tells "mate in n".
inline constexpr int min_mate_score = 29898;

/// Largest iteration, and the largest ply that is still searched with moves.
inline constexpr int max_iteration = 101;

/// Rows of a table that is kept by ply or by depth, from 0 to max_iteration.
inline constexpr int ply_rows = max_iteration + 1;

}  // namespace orvelin
