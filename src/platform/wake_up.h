#pragma once

#include <cstdint>

namespace orvelin {

/// A flag that a thread can wait for beside its input. Any thread may set it.
class WakeUp {
 public:
    /// @throws std::runtime_error when the system has none left.
    WakeUp();
    ~WakeUp();
    WakeUp(WakeUp const&) = delete;
    WakeUp& operator=(WakeUp const&) = delete;

    void set();
    /// Sets it back. One that is not set is no fault.
    void take();

    /// What the system waits for: of Linux a file descriptor, which can be read when it is set.
    std::intptr_t handle() const { return handle_; }

 private:
    std::intptr_t handle_;
};

}  // namespace orvelin
