#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "perft/leaf_counter.h"

namespace orvelin::test {

/// Capacity of a move list.
inline constexpr std::size_t max_moves = 256;

/// Leaf counts of the legal game tree, and those behind each root move as a map.
class Perft {
 public:
    explicit Perft(Tables const& tables) : counter_(tables) {}

    /// Leaves at `depth` plies, 1 at depth 0. The position comes back as it was.
    std::uint64_t count(ChessPosition& position, int depth) {
        return counter_.count(position, depth);
    }

    /// The count behind each move, by the move's text; depth 1 and above.
    std::map<std::string, std::uint64_t> divide(ChessPosition& position, int depth, bool chess960);

 private:
    tools::LeafCounter counter_;
};

}  // namespace orvelin::test
