#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "position/move.h"

namespace orvelin {

/// The game's memory of position keys, oldest first, the last entry being the current position.
///
/// An irreversible move leaves a 0 just below the key that follows it. This wall ends the search
/// for a repeat, so that no count of plies is needed. A real key is taken to be non-zero.
/// Owned by one ChessPosition and used on that position's thread only.
class Rep3filter {
 public:
    /// An empty record.
    Rep3filter() { keys_.reserve(start_capacity); }

    /// Makes `key` the only entry.
    void init(std::uint64_t key) { keys_.assign(1, key); }

    /// Appends `key`, behind a wall when `move` is a pawn move or a capture. The null move counts
    /// as reversible.
    void add(Move const& move, std::uint64_t key) {
        if (move.piece().pawn() || move.capture_id() != 0) {
            keys_.push_back(wall);
        }
        keys_.push_back(key);
    }

    /// Undoes one add(): the top entry and, when there is one, the wall under it. An empty
    /// record stays empty.
    void remove() {
        if (keys_.empty()) {
            return;
        }
        keys_.pop_back();
        if (!keys_.empty() && keys_.back() == wall) {
            keys_.pop_back();
        }
    }

    /// True when the current key occurred before, since the last wall. One earlier occurrence is
    /// enough (oddity 65), and both sides' positions are looked at (the side is in the key).
    bool repetition() const;

    /// The game-level verdict: "1/2-1/2 {Draw by threefold repetition}" when one of the last two
    /// entries occurs three times in the whole game, walls not limiting it; "*" otherwise.
    std::string result() const;

    bool operator==(Rep3filter const& other) const { return keys_ == other.keys_; }
    bool operator!=(Rep3filter const& other) const { return !(*this == other); }

 private:
    static constexpr std::uint64_t wall = 0;
    static constexpr std::size_t start_capacity = 2048;

    std::vector<std::uint64_t> keys_;
};

}  // namespace orvelin
