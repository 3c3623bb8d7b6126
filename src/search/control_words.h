#pragma once

#include <atomic>
#include <mutex>

#include "search/action.h"

namespace orvelin {

/// The words through which the analysis thread is asked, stopped and watched.
///
/// Part of the search object. The main thread asks through the action and the quit flag, watches
/// the status, and sets it back when it has answered; the analysis thread takes the action, sets
/// the status, and asks for its own stop at a limit. Each word is atomic and may be read without
/// a lock; action and status are written under the lock, so that no stop is lost between the two.
/// The thread announces a search before it clears the action, so that whoever reads the action
/// first and then the status always sees one of the two words set.
class ControlWords {
 public:
    void set_action(action_t action);
    action_t action() const { return action_.load(); }
    void set_status(status_t status);
    status_t status() const { return status_.load(); }
    /// No action and nothing to report; the quit flag stays.
    void reset();
    void set_quit() { quit_.store(true); }
    bool quit() const { return quit_.load(); }

    /// Takes back a think action that the thread has not yet taken; true when there was one.
    bool withdraw_think();

    // For the analysis thread.

    /// Whether a search was asked for; announces it and clears the action.
    bool take_think();
    /// Clears a stop that found no search, and reports it as the end of one.
    void take_stop();

 private:
    std::atomic<action_t> action_{no_action};
    std::atomic<status_t> status_{ready_status};
    std::atomic<bool> quit_{false};
    std::mutex mutex_;
};

}  // namespace orvelin
