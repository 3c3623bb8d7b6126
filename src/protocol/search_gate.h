#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "position/chess_position.h"
#include "search/action.h"

namespace orvelin {

class Analysis;
struct Tables;

/// The hand-over of the game position between the driver and the search.
///
/// Knows whether a search has the position, asks the analysis thread for one or ends it, and keeps
/// the work that must wait for its end. Owned by the engine and used on the main thread alone; it
/// reaches the analysis thread by the control words of `Analysis` only. Deferred work is done in
/// the order in which it came, and never while a search has the position.
class SearchGate {
 public:
    /// Between the position and the analysis that searches on it. All three are kept by reference
    /// and must outlive the gate.
    SearchGate(Analysis& analysis, ChessPosition const& position, Tables const& tables)
        : analysis_(analysis), position_(position), tables_(tables) {}

    /// A search has the position, or gets it as soon as the analysis thread looks.
    bool search_runs_or_waits() const;

    /// Asks for a search of the position without waiting for it. Behind a search that runs
    /// it is the next one; one that still waits stays the only one.
    void begin_search();
    /// Takes back a search that was asked for and has not begun; true when there was one.
    bool withdraw_search();
    /// think_action asks for a search and spins until it runs; stop_action ends it and spins while
    /// it runs. Any other value does nothing.
    void set_action(action_t action);
    /// Throws std::logic_error if a search runs: the command is none to be sent then. One that only
    /// waits is taken back.
    void require_no_search();

    /// The position that the running search began from; the game position is the search's own.
    ChessPosition searched_position() const;
    /// Number of records in the history of that position.
    std::size_t searched_records() const { return searched_records_; }

    /// Does the work now, or as soon as the running search has ended and been answered, behind all
    /// that was deferred before.
    void do_between_searches(std::function<void()> work);
    /// Does the deferred work; the search must have ended.
    void catch_up();
    /// The same behind a search whose end nothing is printed for, if it has ended.
    void catch_up_in_idleness();

 private:
    Analysis& analysis_;
    ChessPosition const& position_;
    Tables const& tables_;
    std::vector<std::function<void()>> deferred_;
    /// Where the last search began, for what must be known of it while it has the position.
    std::string searched_fen_;
    std::size_t searched_records_ = 0;
};

}  // namespace orvelin
