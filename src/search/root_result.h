#pragma once

#include <atomic>

#include "position/move.h"
#include "search/principal_variation.h"

namespace orvelin {

/// What the root of a search has found so far.
///
/// Written by the analysis thread. Score and moves are atomic for reporting; the line is for the
/// analysis thread alone, which publishes copies of it.
struct RootResult {
    /// Percentage of the time budget past which a new best move ends the search.
    static constexpr int late_percentage = 60;

    /// Best line of the root, with its depth and score.
    PrincipalVariation root_line;
    std::atomic<int> best_score{0};
    std::atomic<Move> best_move{};
    std::atomic<Move> ponder_move{};
    /// The move of the root that was begun last, and its number in the list, from 1.
    std::atomic<Move> current_move{};
    std::atomic<int> current_number{0};

    /// Score 0, and neither line nor moves.
    void clear();
    /// Takes a new best move: `line` begins with it and is given depth and score.
    void raise(Move const& move, int depth, int score, PrincipalVariation& line);

    /// A move of the root is searched from here on.
    void begin_move(Move const& move, int number) {
        current_move.store(move, std::memory_order_relaxed);
        current_number.store(number, std::memory_order_relaxed);
    }

    /// Whether a new best move ends a search that has used this part of its budget.
    static bool is_late(int percentage) { return percentage > late_percentage; }
};

}  // namespace orvelin
