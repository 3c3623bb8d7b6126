#pragma once

#include "platform/wake_up.h"

namespace orvelin {

/// Ctrl-C and a request to end, from now on to the end of the object's life. One at a time.
///
/// A second signal of the kind ends the program at once, as one that was never waited for does. A
/// closed pipe is told by the failure to write to it, not by a signal.
class StopSignals {
 public:
    StopSignals();
    ~StopSignals();
    StopSignals(StopSignals const&) = delete;
    StopSignals& operator=(StopSignals const&) = delete;

    /// Whether one has come.
    bool stopped() const;
    /// Set once one has come: what waits for input can wait for this too.
    WakeUp const* flag() const;
    /// Sets the flag, as a signal would, without being one.
    void wake() const;
};

/// The exit code of a program that was ended by Ctrl-C.
inline constexpr int exit_stopped = 130;

}  // namespace orvelin
