#include "search/analysis.h"
#include "time/sleep.h"

namespace orvelin {

void Analysis::operator()() {
    for (;;) {
        if (take_think_action()) {
            iterative_search();
            // The action is left alone: a stop that ended this search stays until the next
            // tick, which reports it a second time.
            set_status(finished_status);
        } else {
            take_stop_action();
        }
        if (quit_.load()) {
            return;
        }
        sleep_milliseconds(5);
    }
}

bool Analysis::take_think_action() {
    std::lock_guard const lock(control_mutex_);
    if (action_.load() != think_action) {
        return false;
    }
    // In this order, for those who read the two words without the lock.
    status_.store(searching_status);
    action_.store(no_action);
    return true;
}

void Analysis::take_stop_action() {
    std::lock_guard const lock(control_mutex_);
    if (action_.load() == stop_action) {
        action_.store(no_action);
        status_.store(finished_status);
    }
}

bool AnalysisState::withdraw_think() {
    std::lock_guard const lock(control_mutex_);
    if (action_.load() != think_action) {
        return false;
    }
    action_.store(no_action);
    return true;
}

}  // namespace orvelin
