#include <windows.h>

#include "platform/sleep.h"

namespace orvelin {

// No signal interrupts it here. The step of the timers was set when the process began.
void sleep_milliseconds(int milliseconds) {
    Sleep(static_cast<DWORD>(milliseconds));
}

}  // namespace orvelin
