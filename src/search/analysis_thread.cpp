#include "search/analysis.h"
#include "time/sleep.h"

namespace orvelin {

void Analysis::operator()() {
    for (;;) {
        if (take_think_action()) {
            iterative_search();
            // The action is left alone: a stop that ended this search stays until the next
            // pass, which reports it a second time.
            set_status(finished_status);
        } else if (action_.load() == stop_action) {
            set_action(no_action);
            set_status(finished_status);
        }
        if (quit_.load()) {
            return;
        }
        sleep_milliseconds(5);
    }
}

// The status goes up before the action is taken, and the action is taken only if it still
// says think. So a driver that writes a stop in this very moment either sees the search and
// waits for it, or no search begins.
bool Analysis::take_think_action() {
    if (action_.load() != think_action) {
        return false;
    }
    set_status(searching_status);
    action_t expected = think_action;
    if (action_.compare_exchange_strong(expected, no_action)) {
        return true;
    }
    set_status(ready_status);
    return false;
}

}  // namespace orvelin
