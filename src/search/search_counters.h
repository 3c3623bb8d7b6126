#pragma once

#include <atomic>
#include <cstdint>

namespace orvelin {

/// What a search counts, and where in its tree it stands.
///
/// Written by the analysis thread. What reporting reads meanwhile is atomic: a reading may mix
/// values of before and behind a step.
struct SearchCounters {
    /// The current iteration, 0 before the first.
    std::atomic<int> iteration{0};
    /// Distance of the current node from the root.
    int ply = 0;
    /// The largest ply at which the main search has stood in this search.
    std::atomic<int> seldepth{0};
    /// Stamp of this search in the transposition table; wraps at 255.
    std::atomic<unsigned char> date{0};
    std::atomic<std::uint64_t> node_count{0};
    /// Moves of class mate_attack on the line to this node. It drifts below 0 (oddity 51).
    int mate_attack_count = 0;
    /// Hand-overs from the main search to quiescence since the last finished iteration.
    std::uint64_t leaf_count = 0;
    /// Effective branching factor of the last finished iteration.
    std::atomic<float> ebf{0.0F};

    /// Nodes, leaves, seldepth and mate attacks to 0.
    void clear();
    /// Before the first iteration: iteration 0, and the date steps on by one.
    void begin_iterations();

    /// Raises seldepth to the current ply.
    void note_ply() {
        if (ply > seldepth.load(std::memory_order_relaxed)) {
            seldepth.store(ply);
        }
    }

    /// Ends an iteration; one that was stopped leaves the branching factor as it was.
    void close_iteration(bool was_stopped);
};

}  // namespace orvelin
