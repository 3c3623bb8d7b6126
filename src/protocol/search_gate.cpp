#include "protocol/search_gate.h"

#include <utility>

#include "search/analysis.h"

namespace orvelin {

// In this order: the thread announces its search before it clears the action.
bool SearchGate::search_runs_or_waits() const {
    return analysis_.get_action() == think_action || analysis_.get_status() == searching_status;
}

void SearchGate::begin_search() {
    if (!search_runs_or_waits()) {
        searched_fen_ = position_.fen();
        searched_records_ = position_.history().size();
    }
    analysis_.set_action(think_action);
}

bool SearchGate::withdraw_search() {
    return analysis_.withdraw_think();
}

void SearchGate::set_action(action_t action) {
    if (action == think_action) {
        analysis_.set_action(think_action);
        while (analysis_.get_status() != searching_status) {
        }
    } else if (action == stop_action) {
        analysis_.set_action(stop_action);
        while (analysis_.get_status() == searching_status) {
        }
    }
}

void SearchGate::require_no_search() {
    withdraw_search();
    if (analysis_.get_status() == searching_status) {
        analysis_.init(position_);
    }
}

ChessPosition SearchGate::searched_position() const {
    ChessPosition position(tables_);
    position.fen(searched_fen_);
    return position;
}

void SearchGate::do_between_searches(std::function<void()> work) {
    if (search_runs_or_waits() || !deferred_.empty()) {
        deferred_.push_back(std::move(work));
    } else {
        work();
    }
}

void SearchGate::catch_up() {
    for (auto const& work : std::exchange(deferred_, {})) {
        work();
    }
}

void SearchGate::catch_up_in_idleness() {
    if (!search_runs_or_waits()) {
        catch_up();
    }
}

}  // namespace orvelin
