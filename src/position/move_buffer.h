#pragma once

#include <cstddef>

#include "position/move.h"
#include "position/move_list.h"

namespace orvelin {

/// Room for the moves of one list on the stack.
///
/// Unlike an array it is not filled with empty moves first: a node writes the few dozen moves that
/// it has, and clearing the whole kilobyte would cost more than that.
class MoveBuffer {
 public:
    MoveBuffer() {}  // NOLINT(modernize-use-equals-default): leaves the bytes as they are

    /// Start of the room for MoveList::capacity moves.
    Move* data() { return reinterpret_cast<Move*>(bytes_); }

 private:
    alignas(Move) std::byte bytes_[sizeof(Move) * MoveList::capacity];
};

}  // namespace orvelin
