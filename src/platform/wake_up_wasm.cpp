#include "platform/wake_up.h"

namespace orvelin {

// There is one thread, which waits nowhere else.

WakeUp::WakeUp() : handle_(0) {}

WakeUp::~WakeUp() = default;

void WakeUp::set() {}

void WakeUp::take() {}

}  // namespace orvelin
