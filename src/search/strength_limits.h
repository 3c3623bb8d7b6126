#pragma once

#include <atomic>

#include "search/score.h"

namespace orvelin {

/// How far play is weakened: by a depth, and by a margin within which any line may be chosen.
///
/// The main thread writes, the analysis thread reads; each number by itself is atomic.
struct StrengthLimits {
    static constexpr int min_elo = 1500;
    static constexpr int max_elo = 2200;
    /// A strength depth that no iteration reaches.
    static constexpr int unlimited_depth = max_iteration + 1;

    /// The option `UCI_LimitStrength`. While it is off the others are not asked.
    std::atomic<bool> limit_strength{false};
    /// The strength asked for; stored and never read by the search.
    std::atomic<int> elo{2000};
    /// The iteration behind this one still runs (oddity 46).
    std::atomic<int> max_strength_depth{unlimited_depth};
    /// Score below the best line, in units of the evaluation.
    std::atomic<int> strength_margin{0};

    /// Off also lifts the limits.
    void set_limit_strength(bool on);
    /// Strength in Elo, clamped to min_elo..max_elo; sets depth and margin.
    void set_elo(int wanted);
};

}  // namespace orvelin
