#include "search/strength_limits.h"

#include <algorithm>

namespace orvelin {

namespace {

/// Each step of this many Elo searches two plies deeper.
constexpr int elo_step = 100;
constexpr int weakest_depth = 2;
constexpr int plies_per_step = 2;

/// From this strength on only the best line is played.
constexpr int exact_elo = 2000;
/// Margin of the weakest level, which shrinks evenly to 0 at exact_elo.
constexpr int widest_margin = 200;

}  // namespace

// The announced Elo limits nothing until it is sent (oddity 8).
void StrengthLimits::set_limit_strength(bool on) {
    limit_strength.store(on);
    if (!on) {
        max_strength_depth.store(unlimited_depth);
        strength_margin.store(0);
    }
}

void StrengthLimits::set_elo(int wanted) {
    int const clamped = std::clamp(wanted, min_elo, max_elo);
    elo.store(clamped);
    // The strongest level leaves the depth at what it was (oddity 9).
    if (clamped < max_elo) {
        max_strength_depth.store(weakest_depth + plies_per_step * ((clamped - min_elo) / elo_step));
    }
    strength_margin.store(
        clamped < exact_elo ? (exact_elo - clamped) * widest_margin / (exact_elo - min_elo) : 0);
}

}  // namespace orvelin
