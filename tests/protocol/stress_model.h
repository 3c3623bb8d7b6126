#pragma once

#include <string>
#include <utility>
#include <vector>

#include "protocol/stress_commands.h"
#include "support/referee.h"

namespace orvelin::test {

/// What a GUI may expect of an engine that it sends lines to at random moments: the
/// engine state, which lines are answered at once, and whether a move answers the position.
///
/// Moves are held against the rules as long as the position is known to be the one that was
/// searched: from a `position` line up to the first `bestmove`. Behind that the end of an older
/// search may be reported a second time, and its move be made on a position that it is not of.
class StressModel {
 public:
    /// The opening book answers the positions whose FEN begins so; empty without a book.
    explicit StressModel(std::string book_fen) : book_fen_(std::move(book_fen)) {}

    /// Takes in a line that the engine works on; returns the beginnings of the lines with which
    /// it is answered at once, `info` lines apart.
    std::vector<std::string> act(stress_line_t const& line);
    /// The last `go` was refused, which ends the work on the lines for a tick.
    bool refused() const { return refused_; }

    /// The status that was seen between two ticks.
    void see_status(int status);

    /// Takes in the move of a `bestmove` that `stop` printed; false for a wrong one.
    bool stopped_move(std::string const& move);
    /// Takes in the move of a `bestmove` at the end of a search; false for a wrong one.
    bool reported_move(std::string const& move);

    /// 0 idle, 1 thinking, 2 pondering, 3 infinite.
    int state() const { return state_; }
    /// A move may be reported: the engine thinks, and has had something to search.
    bool move_may_come() const { return state_ == 1 && !(clean_ && accepted_ == 0); }
    /// The search ends by itself, and its move will be reported.
    bool move_must_come() const { return state_ == 1 && ends_ && (by_clock_ || !weak_search_); }
    bool own_book() const { return own_book_; }

    Referee& game() { return game_; }

 private:
    std::vector<std::string> act_go(stress_go_t const& go);
    void act_position();
    void act_option(stress_line_t const& line);
    bool takes_move(std::string const& move, bool nothing_allowed);

    Referee game_;
    std::string book_fen_;
    int state_ = 0;
    bool refused_ = false;
    /// No move has been printed since the `position` line, nor a game begun.
    bool clean_ = true;
    /// Number of `go` lines that were taken since the `position` line.
    int accepted_ = 0;
    bool first_was_clean_ = true;
    /// The search of a `go` behind the `position` line has been seen at work.
    bool begun_ = false;
    bool may_find_nothing_ = false;
    bool ends_ = false;
    bool by_clock_ = false;
    bool weak_ = false;
    /// Weakened play was on at some time of the search: it waits for its clock to run down.
    bool weak_search_ = false;
    bool own_book_ = false;
};

}  // namespace orvelin::test
