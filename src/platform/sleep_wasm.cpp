#include "platform/sleep.h"

namespace orvelin {

// The exact engine alone sleeps, and only tests run that here.
void sleep_milliseconds(int) {}

}  // namespace orvelin
