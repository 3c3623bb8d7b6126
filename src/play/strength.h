#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "play/go_limits.h"
#include "position/move.h"

/// Weaker play: fewer nodes, and a choice among lines by a fixed rule, so that a level plays the
/// same moves on every machine, whatever the clock and the size of the hash table.
namespace orvelin::play {

constexpr int min_elo = 800;
constexpr int max_elo = 2400;

/// Who errs by this margin or less overlooks no mate that a line shows.
constexpr int mate_aware_margin = 110;

/// How play is weakened at a level.
struct Level {
    std::uint64_t nodes;  ///< budget of a move
    int lines;            ///< among which the choice is made
    /// In engine units, what a choice may well give away: of two lines that are this far apart the
    /// worse one is chosen in 18 cases of 100, and in half of them when they are equal.
    int margin;
};

/// The level of an Elo number, which is put into range; more nodes and less margin with more Elo.
Level level_of(int elo);

/// A line to choose from.
struct Candidate {
    Move move;
    int score;  ///< in engine units, within infinite_score
};

/// The index of the line to play; 0 where there is no choice. The same candidates, position key and
/// level give the same choice. The best line has the index 0 and is always possible; a line that
/// walks into a mate while another does not, or throws a mate away, is never chosen at a margin of
/// mate_aware_margin or less.
std::size_t choose(std::vector<Candidate> const& candidates, std::uint64_t key, int elo);

/// How long a move is to be held back, so that it comes at a human pace. At most a fiftieth of the
/// clock and half the increment, never more than two seconds; 0 without a clock or with less than
/// five seconds on it, and 0 for `movetime`, `ponder`, `infinite` and `perft`. The key gives each
/// position its own share of that.
milliseconds thinking_pause(GoLimits const& limits, bool white_to_move, std::uint64_t key);

}  // namespace orvelin::play
