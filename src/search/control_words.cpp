#include "search/control_words.h"

namespace orvelin {

void ControlWords::set_action(action_t action) {
    std::lock_guard const lock(mutex_);
    action_.store(action);
}

void ControlWords::set_status(status_t status) {
    std::lock_guard const lock(mutex_);
    status_.store(status);
}

void ControlWords::reset() {
    std::lock_guard const lock(mutex_);
    action_.store(no_action);
    status_.store(ready_status);
}

bool ControlWords::withdraw_think() {
    std::lock_guard const lock(mutex_);
    if (action_.load() != think_action) {
        return false;
    }
    action_.store(no_action);
    return true;
}

bool ControlWords::take_think() {
    std::lock_guard const lock(mutex_);
    if (action_.load() != think_action) {
        return false;
    }
    // In this order, for those who read the two words without the lock.
    status_.store(searching_status);
    action_.store(no_action);
    return true;
}

void ControlWords::take_stop() {
    std::lock_guard const lock(mutex_);
    if (action_.load() == stop_action) {
        action_.store(no_action);
        status_.store(finished_status);
    }
}

}  // namespace orvelin
