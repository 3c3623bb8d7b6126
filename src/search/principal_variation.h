#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <string>

#include "position/move.h"
#include "search/score.h"

namespace orvelin {

/// One line of moves with its score and depth.
///
/// A flat record without heap memory, so that each frame of the principal variation search
/// keeps one on its stack and copies it by value. Score and depth are set for root lines
/// only. Size, score and depth are atomic for readers of a line without the lock; the moves
/// are not. Only the first size() moves are part of the line; those behind it are whatever
/// an earlier, longer line left there.
class PrincipalVariation {
 public:
    /// Largest number of moves; the depth limits of the search keep every line within it.
    static constexpr int capacity = ply_rows;

    PrincipalVariation() = default;
    /// Takes everything, the version included.
    PrincipalVariation(PrincipalVariation const& other);
    /// Takes size, score, depth and all moves, and adds 1 to the own version.
    PrincipalVariation& operator=(PrincipalVariation const& other);
    ~PrincipalVariation() = default;

    /// Number of moves, 0 to capacity.
    int size() const { return size_.load(); }
    /// Score of the line, from the side to move at its start.
    int score() const { return score_.load(); }
    /// Depth of the line in plies.
    int depth() const { return depth_.load(); }
    /// How often this object has been assigned to.
    int version() const { return version_; }

    void set_score(int score) { score_.store(score); }
    void set_depth(int depth) { depth_.store(depth); }

    /// Size and score become 0; depth and moves stay.
    void clear();

    /// The move at `index`, for writing. An index equal to the size grows the line by one;
    /// one beyond that throws std::logic_error.
    Move& operator[](int index) {
        int const size = this->size();
        if (index < 0 || index > size || index >= capacity) {
            throw_out_of_range();
        }
        if (index == size) {
            size_.store(size + 1);
        }
        return moves_[static_cast<std::size_t>(index)];
    }

    /// The move at `index`; throws std::logic_error for an index at or above the size.
    Move const& operator[](int index) const {
        if (index < 0 || index >= size()) {
            throw_out_of_range();
        }
        return moves_[static_cast<std::size_t>(index)];
    }

    Move* begin() { return moves_.data(); }
    Move* end() { return moves_.data() + size(); }
    Move const* begin() const { return moves_.data(); }
    Move const* end() const { return moves_.data() + size(); }
    Move const* cbegin() const { return begin(); }
    Move const* cend() const { return end(); }

    /// Compares the whole array of moves and nothing else: neither size nor score nor depth
    /// counts, and what lies behind the line's end does (oddity 62).
    bool operator==(PrincipalVariation const& other) const { return moves_ == other.moves_; }
    bool operator!=(PrincipalVariation const& other) const { return !(*this == other); }

    /// Greater depth wins; at equal depth the higher score.
    bool operator>(PrincipalVariation const& other) const {
        return depth() > other.depth() || (depth() == other.depth() && score() > other.score());
    }

    /// The moves in standard notation, each followed by a blank, and an end of line.
    std::string str() const;

    /// A new line: the move, then the moves of `line`. Score, depth and version are 0.
    /// Throws std::logic_error for a line that is full.
    friend PrincipalVariation operator+(Move move, PrincipalVariation const& line);

 private:
    [[noreturn]] static void throw_out_of_range();

    std::atomic<int> size_{0};
    std::atomic<int> score_{0};
    std::atomic<int> depth_{0};
    std::array<Move, capacity> moves_{};
    int version_ = 0;
};

PrincipalVariation operator+(Move move, PrincipalVariation const& line);

}  // namespace orvelin
