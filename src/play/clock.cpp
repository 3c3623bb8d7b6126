#include "play/clock.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

namespace orvelin::play {

namespace {

/// Four months: what is beyond is read as this, so that no sum of times can overflow.
constexpr double longest_time = 1e10;
constexpr double longest_overhead = 5000.0;

/// What the shortest of moves takes beside the overhead: a millisecond of search, and the stop.
constexpr double shortest_move = 3.0;

/// A game is expected to end within so many own moves; after them it may still last a while.
constexpr int longest_game = 220;
constexpr int least_moves_left = 20;
/// A game without end in sight: what a move takes is the clock divided by this, which falls as
/// the game goes on.
constexpr double first_divisor = 40.0;
constexpr double last_divisor = 26.0;
constexpr double divisor_step = 0.2;

/// The part of the clock that is held back for the overhead of later moves where the whole clock
/// could not pay for a long game: what can be had then is time to think in a game of usual length.
constexpr double hopeless_reserve = 0.5;

/// Stands for moves to go that were not given.
constexpr int unknown_moves = 1000000;

/// The part of an increment that is spent at once; the rest makes up for moves that took long.
constexpr double increment_part = 0.9;

/// `maximum` in units of `optimum`.
constexpr double most_patience = 4.5;

/// How many times longer than an iteration the next is expected to take.
constexpr double growth = 2.0;

double within(milliseconds time, double least, double most) {
    return std::clamp(static_cast<double>(time.count()), least, most);
}

milliseconds whole(double time) {
    return milliseconds(static_cast<std::int64_t>(std::max(time, 1.0)));
}

/// What a clock shows, in milliseconds, and what it is to last for.
struct ClockState {
    double left;
    double increment;
    /// What each move loses beside the thinking.
    double lag;
    /// Own moves made in the game.
    int moves_made;
    /// To the next time control, or `unknown_moves`.
    int moves_to_go;
};

/// The clock to play by. A GUI that names the clock of the other side alone gets an answer by that
/// one, because a search without any limit would never answer.
std::optional<milliseconds> clock_of(GoLimits const& limits, bool white) {
    auto const& own = white ? limits.wtime : limits.btime;
    auto const& other = white ? limits.btime : limits.wtime;
    return own ? own : other;
}

/// How many more moves the lag must be paid for, this one included.
int moves_to_pay(ClockState const& clock) {
    int const unknown = std::max(least_moves_left, longest_game - clock.moves_made);
    return std::min(clock.moves_to_go, unknown);
}

/// What the moves to come lose that increments do not pay for.
double debt(ClockState const& clock) {
    return std::max(clock.lag - clock.increment, 0.0) * (moves_to_pay(clock) - 1);
}

/// Into how many moves the time that is free is divided.
double divisor(ClockState const& clock) {
    double const unknown = std::max(last_divisor, first_divisor - divisor_step * clock.moves_made);
    // A little more than the moves to go, so that not all is gone before the last of them.
    return std::min(clock.moves_to_go + 0.3, unknown);
}

/// What is left to think with when this move and those to come have paid what they lose.
double free_time(ClockState const& clock) {
    // For a slip of the machine, which must not cost the game.
    double const slip = std::min(clock.left / 8.0, 100.0);
    double const available = std::max(clock.left - clock.lag - slip, 1.0);
    double const part = debt(clock) > clock.left ? hopeless_reserve : 1.0;
    return available - std::min(debt(clock), available * part);
}

TimePlan clock_plan(ClockState const& clock) {
    double const free = free_time(clock);
    double const gain = increment_part * std::max(clock.increment - clock.lag, 0.0);
    double const usual = free / divisor(clock) + gain;

    // The last move before new time comes may take all that is free, others leave the moves to
    // come a clock to think with.
    double const part = 0.4 + 0.6 / clock.moves_to_go;
    double const most = std::min(free * part + gain, free * std::max(part, 0.8));

    TimePlan plan;
    plan.limited = true;
    plan.maximum = whole(std::min(most, most_patience * usual));
    plan.optimum = std::min(whole(usual), plan.maximum);
    return plan;
}

/// The GUI expects the answer within the time, but never less than half of it is used.
TimePlan fixed_plan(milliseconds movetime, double overhead) {
    double const time = within(movetime, 1.0, longest_time);
    TimePlan plan;
    plan.limited = true;
    plan.fixed = true;
    plan.maximum = whole(std::max(time - overhead, (time + 1.0) / 2.0));
    plan.optimum = plan.maximum;
    return plan;
}

/// More than 1 as long as iterations disagree about the best move, less when it is settled.
double stability_factor(int stable_iterations) {
    constexpr double factors[] = {1.7, 1.7, 1.4, 1.2, 1.0, 0.9, 0.8, 0.75, 0.7};
    constexpr int last = static_cast<int>(std::size(factors)) - 1;
    return factors[std::clamp(stable_iterations, 0, last)];
}

/// From 1 up to 2 for the loss of a pawn.
double drop_factor(int score_drop) {
    return 1.0 + std::clamp(score_drop, 0, 100) / 100.0;
}

/// What the move may take after what the search has shown.
double target(TimePlan const& plan, SearchProgress const& progress) {
    auto const optimum = static_cast<double>(plan.optimum.count());
    if (progress.mate_found) {
        return optimum / 8.0;
    }
    return optimum * stability_factor(progress.stable_iterations) *
           drop_factor(progress.score_drop);
}

}  // namespace

TimePlan plan_time(GoLimits const& limits, bool white_to_move, int game_ply,
                   milliseconds overhead) {
    if (limits.infinite || limits.ponder) {
        return {};
    }
    double const lost = within(overhead, 0.0, longest_overhead);
    TimePlan plan;
    if (auto const clock = clock_of(limits, white_to_move)) {
        milliseconds const increment = white_to_move ? limits.winc : limits.binc;
        plan = clock_plan({.left = within(*clock, 1.0, longest_time),
                           .increment = within(increment, 0.0, longest_time),
                           .lag = lost + shortest_move,
                           .moves_made = std::max(game_ply, 0) / 2,
                           .moves_to_go = std::max(limits.movestogo.value_or(unknown_moves), 1)});
    }
    if (!limits.movetime) {
        return plan;
    }
    TimePlan const fixed = fixed_plan(*limits.movetime, lost);
    if (!plan.limited || fixed.maximum <= plan.optimum) {
        return fixed;
    }
    plan.maximum = std::min(plan.maximum, fixed.maximum);
    return plan;
}

bool begin_next_iteration(TimePlan const& plan, SearchProgress const& progress) {
    if (!plan.limited) {
        return true;
    }
    if (progress.elapsed >= plan.maximum) {
        return false;
    }
    if (plan.fixed) {
        return true;
    }
    if (progress.moves <= 1) {
        return false;
    }
    auto const elapsed = static_cast<double>(progress.elapsed.count());
    double const expected = growth * static_cast<double>(progress.last_iteration.count());
    if (elapsed + expected > static_cast<double>(plan.maximum.count())) {
        return false;
    }
    // Its middle counts: it then ends before the target as often as behind it.
    return elapsed + expected / 2.0 <= target(plan, progress);
}

}  // namespace orvelin::play
