#pragma once

#include "play/go_limits.h"

/// The time of a move. Pure functions of limits and of what the search has shown so far: nothing
/// here reads a clock, waits, or knows of threads.
namespace orvelin::play {

/// What a move may take, from the arrival of `go` (or of `ponderhit`) on.
struct TimePlan {
    /// False: no clock bounds the search, and the rest has no meaning.
    bool limited = false;
    /// The whole time is to be used: a fixed time for the move.
    bool fixed = false;
    /// What a usual move takes.
    milliseconds optimum{0};
    /// At this time the search is stopped wherever it is, so that the move arrives in time.
    milliseconds maximum{0};
};

/// What the search has shown at the end of an iteration.
struct SearchProgress {
    milliseconds elapsed{0};
    /// What the iteration that ended took.
    milliseconds last_iteration{0};
    int depth = 0;
    /// Iterations in a row that ended with the same best move, this one included.
    int stable_iterations = 0;
    /// By how much the score fell since the iteration before, 0 or more, where 100 is a pawn.
    int score_drop = 0;
    /// Legal moves of the position (or of `searchmoves`).
    int moves = 2;
    /// A forced mate was found, by either side.
    bool mate_found = false;
};

/// The plan for a move. `game_ply` is the number of half-moves made in the game. The overhead is
/// what is lost between the engine and the clock of the GUI, for each move; 0 to 5000 ms, read as
/// the nearest of these.
///
/// `infinite` and `ponder` are not limited, whatever else was given: at `ponderhit` a new plan is
/// made from the limits without `ponder`. A clock holds beside a depth, nodes, or a mate. Where
/// only the clock of the other side was given, it stands for the own. Of a clock and a time for the
/// move the smaller holds. A clock or a time below 1 ms is read as 1 ms.
///
/// With a latency up to the overhead no game of up to 200 own moves is lost on time, as long as
/// half of the clock and the increments pay for the overhead and 3 ms of each move.
TimePlan plan_time(GoLimits const& limits, bool white_to_move, int game_ply, milliseconds overhead);

/// Whether the next iteration is to be begun: false where it would not end in time, or where the
/// move is settled. An only move needs none but the first iteration, and a found mate few more; a
/// best move that changes or a score that falls gets up to `maximum`. A fixed time is used to its
/// end even so.
bool begin_next_iteration(TimePlan const& plan, SearchProgress const& progress);

}  // namespace orvelin::play
