#include "protocol/stress_model.h"

#include "search/action.h"

namespace orvelin::test {

std::vector<std::string> StressModel::act(stress_line_t const& line) {
    refused_ = false;
    switch (line.kind) {
        case stress_kind::go:
            return act_go(line.go);
        case stress_kind::isready:
            return {"readyok"};
        case stress_kind::position:
            act_position();
            return {};
        case stress_kind::option:
            act_option(line);
            return {};
        case stress_kind::ponderhit:
            state_ = 1;
            return {};
        case stress_kind::stop:
            if (state_ == 0) {
                return {};
            }
            state_ = 0;
            return {"bestmove "};
        case stress_kind::new_game:
            // Now, or behind the running search.
            game_.lose();
            clean_ = false;
            return {};
        case stress_kind::eval:
        case stress_kind::other:
            break;
    }
    return {};
}

// The game itself has been set by whoever wrote the line. The state outlasts the position: a
// search that is stopped by it is not answered before the next `stop`.
void StressModel::act_position() {
    clean_ = true;
    accepted_ = 0;
    begun_ = false;
    may_find_nothing_ = false;
    ends_ = false;
}

std::vector<std::string> StressModel::act_go(stress_go_t const& go) {
    // No other search runs that would take the limits for its own, and whose clock stands still.
    bool const alone = accepted_ == 0 ? clean_ : accepted_ == 1 && first_was_clean_ && state_ == 0;
    // The limits are reset in any case, and with them those of a search that runs.
    ends_ = false;
    if (own_book_ && game_.known() && game_.fen().starts_with(book_fen_)) {
        return {"bestmove "};
    }
    if (state_ == 1) {
        refused_ = true;
        return {};
    }
    state_ = go.state;
    if (accepted_++ == 0) {
        first_was_clean_ = clean_;
    }
    may_find_nothing_ = may_find_nothing_ || go.may_find_nothing;
    ends_ = go.finite && alone;
    by_clock_ = go.by_clock;
    weak_search_ = weak_ || (weak_search_ && !alone);
    return {};
}

void StressModel::act_option(stress_line_t const& line) {
    bool const on = line.text.ends_with(" true");
    if (sets_option(line, "UCI_LimitStrength")) {
        weak_ = on;
        weak_search_ = weak_search_ || on;
    }
    if (sets_option(line, "OwnBook")) {
        own_book_ = on && !book_fen_.empty();
    }
}

void StressModel::see_status(int status) {
    if (clean_ && accepted_ > 0 && status != ready_status) {
        begun_ = true;
    }
}

// A `stop` that comes before the thread has taken the search up prints the move of an older one.
bool StressModel::stopped_move(std::string const& move) {
    bool const of_this_search = begun_;
    bool const good = takes_move(move, true);
    if (!of_this_search) {
        game_.lose();
    }
    return good || !of_this_search;
}

bool StressModel::reported_move(std::string const& move) {
    state_ = 0;
    return takes_move(move, may_find_nothing_);
}

bool StressModel::takes_move(std::string const& move, bool nothing_allowed) {
    // Weakened play without a single iteration chooses among the lines of an older search.
    bool const of_older_lines = weak_search_ && may_find_nothing_;
    bool const checked = clean_ && game_.known() && !of_older_lines;
    clean_ = false;
    begun_ = false;
    ends_ = false;
    if (!checked) {
        game_.lose();
        return true;
    }
    bool const nothing = move == "0000";
    bool const good = nothing ? game_.over() || nothing_allowed : game_.legal(move);
    game_.play(move);
    return good;
}

}  // namespace orvelin::test
