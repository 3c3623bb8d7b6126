#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "position/move.h"

namespace orvelin::play {

using milliseconds = std::chrono::milliseconds;

/// What one `go` asks for. A limit that is absent was not given; plain data.
struct GoLimits {
    std::optional<milliseconds> wtime;
    std::optional<milliseconds> btime;
    milliseconds winc{0};
    milliseconds binc{0};
    /// At least 1.
    std::optional<int> movestogo;
    std::optional<milliseconds> movetime;
    /// In plies, at least 1.
    std::optional<int> depth;
    std::optional<int> mate;
    std::optional<std::uint64_t> nodes;
    /// Legal moves of the position; empty means all.
    std::vector<Move> searchmoves;
    bool infinite = false;
    bool ponder = false;
    /// Not a search: the leaves of the move tree to this depth.
    std::optional<int> perft;

    /// Whether anything but `stop` ends the search, or it was said that nothing does.
    bool says_when_to_end() const {
        return wtime || btime || movetime || depth || mate || nodes || perft || infinite;
    }
    /// Whether the own clock of this side bounds the search.
    bool has_clock(bool white) const { return white ? wtime.has_value() : btime.has_value(); }
};

}  // namespace orvelin::play
