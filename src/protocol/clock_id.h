#pragma once

#include <chrono>

namespace orvelin {

/// The low 9 bits of a moment's tick count, 0 to 511: enough to keep apart the log files
/// of programs that run side by side.
inline int clock_id(std::chrono::system_clock::time_point moment) {
    return static_cast<int>(moment.time_since_epoch().count() & 0x1ff);
}

}  // namespace orvelin
