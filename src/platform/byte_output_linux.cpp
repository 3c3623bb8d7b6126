#include <cerrno>
#include <poll.h>
#include <unistd.h>

#include "platform/byte_output.h"

namespace orvelin {

// A pipe that somebody else has set to non-blocking takes what it can hold.
std::optional<std::size_t> ByteOutput::write_some(std::string_view bytes) const {
    for (;;) {
        ssize_t const written = ::write(descriptor_, bytes.data(), bytes.size());
        if (written >= 0) {
            return static_cast<std::size_t>(written);
        }
        if (errno == EAGAIN || errno == EWOULDBLOCK) {
            pollfd ready{descriptor_, POLLOUT, 0};
            ::poll(&ready, 1, -1);
        } else if (errno != EINTR) {
            return std::nullopt;
        }
    }
}

}  // namespace orvelin
