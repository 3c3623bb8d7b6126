#pragma once

#include <cstddef>

#include "position/move.h"
#include "position/move_list.h"

namespace orvelin {

/// Room for the moves of one list on the stack.
///
/// Unlike an array of moves it is not filled with empty ones first, when it is declared without
/// braces: a node writes the few dozen moves that it has, and clearing the whole kilobyte would
/// cost more than that.
class MoveBuffer {
 public:
    /// Start of the room for MoveList::capacity moves.
    Move* data() { return reinterpret_cast<Move*>(bytes_); }

 private:
    alignas(Move) std::byte bytes_[sizeof(Move) * MoveList::capacity];
};

}  // namespace orvelin
