#include <stdexcept>
#include <windows.h>

#include "platform/wake_up.h"

namespace orvelin {

namespace {

HANDLE event_of(WakeUp const& flag) {
    return reinterpret_cast<HANDLE>(flag.handle());
}

}  // namespace

WakeUp::WakeUp()
    : handle_(reinterpret_cast<std::intptr_t>(CreateEventW(nullptr, TRUE, FALSE, nullptr))) {
    if (handle_ == 0) {
        throw std::runtime_error("no event is left");
    }
}

WakeUp::~WakeUp() {
    CloseHandle(event_of(*this));
}

void WakeUp::set() {
    SetEvent(event_of(*this));
}

void WakeUp::take() {
    ResetEvent(event_of(*this));
}

}  // namespace orvelin
