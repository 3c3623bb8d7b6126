#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>

#include "generation/move_generator.h"
#include "position/move.h"
#include "position/move_list.h"

namespace orvelin {
class ChessPosition;
struct Tables;
}  // namespace orvelin

namespace orvelin::test {

/// Capacity of a move list.
inline constexpr std::size_t max_moves = 256;

/// Counts the leaves of the legal game tree. The moves before the leaves are counted, not
/// made.
class Perft {
 public:
    explicit Perft(Tables const& tables) : generator_(tables) {}

    /// Leaves at `depth` plies, 1 at depth 0. The position comes back as it was.
    std::uint64_t count(ChessPosition& position, int depth);

    /// The count behind each move, by the move's text; depth 1 and above.
    std::map<std::string, std::uint64_t> divide(ChessPosition& position, int depth, bool chess960);

 private:
    MoveGenerator generator_;
};

}  // namespace orvelin::test
