#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "perft/leaf_counter.h"
#include "position/board_position.h"
#include "position/history.h"
#include "position/material_index.h"
#include "position/move.h"
#include "position/rep3filter.h"

namespace orvelin::tools {

/// Everything of a position that making and taking back a move must leave as it was.
class PositionSnapshot {
 public:
    explicit PositionSnapshot(ChessPosition const& position);

    std::string const& fen() const { return fen_; }
    /// Names the first thing in which the position differs from the snapshot; empty when none.
    std::string difference(ChessPosition const& position) const;

 private:
    std::string fen_;
    std::uint64_t hash_;
    std::uint64_t pawn_hash_;
    MaterialIndex material_;
    BoardPosition board_;
    history_t record_;
    std::size_t records_;
    Rep3filter repetition_filter_;
};

/// A move that the generator or the position got wrong.
class TreeFault : public std::runtime_error {
 public:
    TreeFault(std::string const& fen, std::string const& move, std::string const& what_is_wrong)
        : std::runtime_error("fault in " + fen + " at " + move + ": " + what_is_wrong) {}
};

/// Counts leaves and holds every move of the tree against the board: it must leave no king of its
/// own in check, its check bit must be true, and taking it back must restore the position.
class CheckedLeafCounter : public LeafCounter {
 public:
    /// With `chess960` the moves in messages have castling as the king taking his own rook.
    CheckedLeafCounter(Tables const& tables, bool chess960)
        : LeafCounter(tables), chess960_(chess960) {}

    /// @throws TreeFault at the first fault; the position is then without meaning.
    std::uint64_t count_behind(ChessPosition& position, Move const& move, int depth) override;

 private:
    bool makes_last_moves() const override { return true; }

    bool chess960_;
};

}  // namespace orvelin::tools
