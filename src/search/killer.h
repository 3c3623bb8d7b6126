#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "position/move.h"
#include "search/score.h"

namespace orvelin {

/// The two quiet moves that last gave a cut-off at each ply.
///
/// Owned by the search object and touched by the analysis thread only. Lives for one search.
class Killer {
 public:
    static constexpr int plies = ply_rows;

    Killer() : pairs_(plies) {}

    /// Empties all pairs.
    void clear();

    /// Puts the move first at this ply and the former first one second; nothing when it is
    /// the first already.
    void set_killer(int ply, Move const& move) {
        auto& [killer_a, killer_b] = pairs_[row(ply)];
        if (move == killer_a) {
            return;
        }
        killer_b = killer_a;
        killer_a = move;
    }

    Move const& get_killerA(int ply) const { return pairs_[row(ply)].first; }
    Move const& get_killerB(int ply) const { return pairs_[row(ply)].second; }

 private:
    /// A negative ply means the first row; the upper end is a mere safeguard.
    static std::size_t row(int ply) {
        return static_cast<std::size_t>(std::clamp(ply, 0, plies - 1));
    }

    std::vector<std::pair<Move, Move>> pairs_;
};

}  // namespace orvelin
