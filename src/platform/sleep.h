#pragma once

namespace orvelin {

/// Puts the calling thread to sleep for the whole of the given time, 0 to 999: a signal
/// that interrupts the sleep does not shorten it.
void sleep_milliseconds(int milliseconds);

}  // namespace orvelin
