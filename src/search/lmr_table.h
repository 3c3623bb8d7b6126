#pragma once

#include <cstdint>

#include "search/score.h"

namespace orvelin {

/// Plies that a late move gives up, by depth and by the move's index in the sorted list.
///
/// Owns its bytes; filled once by the constructor and read-only afterwards, from any thread.
class LmrTable {
 public:
    static constexpr int rows = ply_rows;
    static constexpr int columns = 256;

    LmrTable();

    /// Reduction in plies, 1 to 22, for `depth` (from 0; above 101 it counts as 101, since
    /// extensions near the last iteration go beyond the table) and `index`, 0 to 255.
    int value(int const& depth, unsigned int const& index) const {
        return reduction_[row(depth)][index];
    }
    /// The same less 1: reduction in plies, 0 to 21, of the principal variation search.
    int pv_value(int const& depth, unsigned int const& index) const {
        return value(depth, index) - 1;
    }

 private:
    static int row(int depth) { return depth < rows ? depth : rows - 1; }

    std::uint8_t reduction_[rows][columns];
};

}  // namespace orvelin
