#include <cerrno>
#include <ctime>

#include "platform/sleep.h"

namespace orvelin {

void sleep_milliseconds(int milliseconds) {
    timespec remaining{};
    remaining.tv_nsec = milliseconds * 1000000L;
    while (nanosleep(&remaining, &remaining) == -1 && errno == EINTR) {
    }
}

}  // namespace orvelin
