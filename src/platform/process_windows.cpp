#include <cstdlib>
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <windows.h>
// Needs the one before it.
#include <timeapi.h>

#include "platform/process.h"

namespace orvelin {

void prepare_process() {
    _setmode(standard_output, _O_BINARY);
    // Without this a sleep of 5 ms may take 16.
    timeBeginPeriod(1);
}

bool is_open(int descriptor) {
    // For a descriptor that never was, the library says -2.
    auto const handle = _get_osfhandle(descriptor);
    return handle != reinterpret_cast<intptr_t>(INVALID_HANDLE_VALUE) && handle != -2;
}

bool is_terminal(int descriptor) {
    return _isatty(descriptor) != 0;
}

int process_id() {
    return _getpid();
}

}  // namespace orvelin
