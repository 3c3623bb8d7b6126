#pragma once

#include <atomic>
#include <cstdint>

#include "time/timer.h"

namespace orvelin {

/// A signed number as the 64-bit word that unsigned arithmetic takes it for: limits arrive as
/// `int` and are kept unsigned, so a negative one becomes enormous (oddity 40).
constexpr std::uint64_t sign_extended(int number) {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(number));
}

/// The limits of one `go`, and the clock that runs against them.
///
/// Answers when the search must stop and how much of the budget is used. The main thread
/// writes the limits before a search, and now and then during one; the analysis thread asks.
/// Nothing is locked: each field is a relaxed atomic, and a question that falls into a
/// rewriting may see fields of both. All times are milliseconds.
///
/// An absent limit is a number too large to be reached, not a flag; only the default of the time
/// per move is also looked at as a marker.
class TimeManager {
 public:
    /// Start value of the clocks and of the time per move, about 35 years: not given.
    static constexpr std::uint64_t not_given = std::uint64_t{1} << 40;

    /// Start values of the moves to go and of the mate limit.
    static constexpr int start_movestogo = 999;
    static constexpr int start_mate = 999999;

    TimeManager() = default;
    TimeManager(TimeManager const&) = delete;
    TimeManager& operator=(TimeManager const&) = delete;
    ~TimeManager() = default;

    /// Back to the start values, the timer stopped; lag and side to move stay.
    void reset();
    /// Starts the clock of a search at 0.
    void start();

    void set_wtime(std::uint64_t milliseconds) { put(wtime_, milliseconds); }
    void set_btime(std::uint64_t milliseconds) { put(btime_, milliseconds); }
    void set_winc(std::uint64_t milliseconds) { put(winc_, milliseconds); }
    void set_binc(std::uint64_t milliseconds) { put(binc_, milliseconds); }
    /// Time held back from a fixed time per move.
    void set_lag(int milliseconds) { put(lag_, milliseconds); }
    /// Stored; there is no mate search that would read it.
    void set_mate(int moves) { put(mate_, moves); }
    /// While on, time stops nothing.
    void set_infinite(bool on) { put(infinite_, on); }
    /// While on, time stops nothing, but the clock runs.
    void set_pondering(bool on) { put(pondering_, on); }
    /// Says which clock counts.
    void set_white_to_move(bool white) { put(white_to_move_, white); }
    /// Fixed time for the move; 0 becomes 1.
    void set_movetime(std::uint64_t milliseconds);
    /// Moves to the next time control; a value below 1 becomes 30.
    void set_movestogo(int moves);

    /// The hard stop: true when the search must end now.
    bool time_to_move();
    /// The same for a given time used so far.
    bool time_to_move(std::uint64_t elapsed) const;

    /// The part of the budget that is used, in percent. A budget of 0 raises SIGFPE.
    int percentage();
    /// The same for a given time used so far.
    int percentage(std::uint64_t elapsed) const;

    /// What is left of the time per move or else of the clock; it has nothing to do with the
    /// budget. Without either it is the time used, negative.
    int remaining_time();
    /// The same for a given time used so far.
    int remaining_time(std::uint64_t elapsed) const;

    /// Time at which the clock rule ends the search.
    std::uint64_t hard_limit() const;
    /// Time that percentage() measures by: the time per move, or else the clock's share.
    std::uint64_t soft_budget() const;

 private:
    template <typename Field, typename Value>
    static void put(std::atomic<Field>& field, Value value) {
        field.store(value, std::memory_order_relaxed);
    }
    template <typename Field>
    static Field get(std::atomic<Field> const& field) {
        return field.load(std::memory_order_relaxed);
    }

    /// Neither flag that keeps time out of play is on.
    bool clock_counts() const { return !get(infinite_) && !get(pondering_); }
    /// Clock of the side to move.
    std::uint64_t clock() const { return get(white_to_move_) ? get(wtime_) : get(btime_); }
    std::uint64_t increment() const { return get(white_to_move_) ? get(winc_) : get(binc_); }
    /// Moves to the next time control as a 64-bit factor.
    std::uint64_t moves() const;
    /// One move's share of clock and increments.
    std::uint64_t slice() const;
    /// Time used so far; folds a running timer.
    std::uint64_t elapsed() { return timer_.total_time().milliseconds(); }

    std::atomic<int> movestogo_{start_movestogo};
    std::atomic<int> mate_{start_mate};
    std::atomic<int> lag_{200};
    std::atomic<std::uint64_t> wtime_{not_given};
    std::atomic<std::uint64_t> btime_{not_given};
    std::atomic<std::uint64_t> winc_{0};
    std::atomic<std::uint64_t> binc_{0};
    std::atomic<std::uint64_t> movetime_{not_given};
    std::atomic<bool> infinite_{false};
    std::atomic<bool> pondering_{false};
    std::atomic<bool> white_to_move_{false};
    Timer timer_;
};

}  // namespace orvelin
