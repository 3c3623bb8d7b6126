#include <atomic>
#include <optional>
#include <windows.h>

#include "platform/stop_signals.h"

namespace orvelin {

namespace {

std::atomic<bool> event_came = false;
std::optional<WakeUp> stop_flag;

/// Called in a thread of the system's. The second event goes on to what ends the process.
BOOL WINAPI note_event(DWORD event) {
    if (event_came.exchange(true)) {
        return FALSE;
    }
    stop_flag->set();
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        // With the return the process would be ended. The system itself waits no longer.
        Sleep(5000);
    }
    return TRUE;
}

}  // namespace

StopSignals::StopSignals() {
    stop_flag.emplace();
    event_came = false;
    SetConsoleCtrlHandler(note_event, TRUE);
}

StopSignals::~StopSignals() {
    SetConsoleCtrlHandler(note_event, FALSE);
    stop_flag.reset();
}

bool StopSignals::stopped() const {
    return event_came;
}

WakeUp const* StopSignals::flag() const {
    return &*stop_flag;
}

void StopSignals::wake() const {
    stop_flag->set();
}

}  // namespace orvelin
