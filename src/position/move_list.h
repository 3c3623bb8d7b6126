#pragma once

#include <cstdint>

#include "position/move.h"

namespace orvelin {

/// Up to 256 moves, in storage of its own or over an array of the caller.
///
/// Nothing is tested on the way: the generator never gives more than 256 moves. Only an owning
/// list touches the heap; the search keeps its lists over arrays on the stack. Not shared between
/// threads.
class MoveList {
 public:
    /// Number of moves that an owning list holds.
    static constexpr int capacity = 256;

    /// An empty list with an array of its own, zero-filled.
    MoveList();
    /// An empty list over the caller's array, which must outlive the list.
    explicit MoveList(Move* moves) : moves_(moves) {}
    /// Always owning, whatever the source is.
    MoveList(MoveList const& other);
    /// Copies the moves into the array that this list already has; its ownership stays.
    MoveList& operator=(MoveList const& other);
    ~MoveList();

    Move& operator[](int const& index) { return moves_[index]; }
    Move const& operator[](int const& index) const { return moves_[index]; }

    /// Makes the list empty and leaves the array alone.
    void clear() { size_ = 0; }
    void set_size(int size) { size_ = static_cast<std::uint64_t>(size); }
    /// Number of moves.
    std::uint64_t size() const { return size_; }

    Move* begin() { return moves_; }
    Move* end() { return moves_ + size_; }
    Move const* begin() const { return moves_; }
    Move const* end() const { return moves_ + size_; }
    Move const* cbegin() const { return moves_; }
    Move const* cend() const { return moves_ + size_; }

 private:
    std::uint64_t size_ = 0;
    Move* moves_;
    bool owns_moves_ = false;
};

}  // namespace orvelin
