#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "generation/move_generator.h"
#include "position/move.h"

namespace orvelin {
class ChessPosition;
struct Tables;
}  // namespace orvelin

namespace orvelin::tools {

/// A move at the root and where it stands among the others.
struct root_move_t {
    Move move;
    std::size_t index;
    std::size_t count;
};

/// Counts the leaves of the legal game tree. The moves before the leaves are counted, not made.
///
/// The position comes back as it was. A counter serves one thread.
class LeafCounter {
 public:
    explicit LeafCounter(Tables const& tables) : generator_(tables) {}
    virtual ~LeafCounter() = default;
    LeafCounter(LeafCounter const&) = delete;
    LeafCounter& operator=(LeafCounter const&) = delete;

    /// Leaves at `depth` plies, 1 at depth 0.
    std::uint64_t count(ChessPosition& position, int depth);

    /// Leaves at `depth` plies behind a move, which is made and taken back.
    virtual std::uint64_t count_behind(ChessPosition& position, Move const& move, int depth);

    /// As count(), with a call before and after each root move; depth 0 has none.
    std::uint64_t divide(ChessPosition& position, int depth,
                         std::function<void(root_move_t const&)> const& before,
                         std::function<void(root_move_t const&, std::uint64_t)> const& after);

 private:
    /// Whether the moves before the leaves are made too.
    virtual bool makes_last_moves() const { return false; }

    MoveGenerator generator_;
};

}  // namespace orvelin::tools
