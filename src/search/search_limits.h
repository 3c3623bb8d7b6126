#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

#include "position/move.h"
#include "search/score.h"

namespace orvelin {

/// What bounds the next search beside the clock, and whether it may narrow its window.
///
/// The main thread writes, as a rule between searches and now and then during one; the analysis
/// thread reads. The numbers are atomic, the list is guarded by its own mutex.
struct SearchLimits {
    /// The node limit that means none.
    static constexpr std::uint64_t no_node_limit = std::uint64_t{1} << 62;
    /// No limit lets a search go on past this iteration.
    static constexpr int maximum_iteration = max_iteration;

    std::atomic<int> depth_limit{maximum_iteration};
    std::atomic<std::uint64_t> max_nodes{no_node_limit};
    /// The moves that the first line of the root is restricted to; empty means no restriction.
    std::vector<Move> searchmoves;
    std::mutex searchmoves_mutex;
    /// Whether later iterations are searched in a window around the last score.
    std::atomic<bool> aspiration{true};

    /// Depth limit and moves back to their defaults; node limit and window stay.
    void reset();
    void set_searchmoves(std::vector<Move> moves);
};

}  // namespace orvelin
