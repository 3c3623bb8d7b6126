#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

#include "platform/file_descriptor.h"

namespace orvelin {

int open_to_read(std::string const& name) {
    int const descriptor = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category());
    }
    return descriptor;
}

void close_descriptor(int descriptor) {
    ::close(descriptor);
}

std::size_t read_some(int descriptor, char* to, std::size_t room) {
    ssize_t got = 0;
    do {
        got = ::read(descriptor, to, room);
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
        throw std::system_error(errno, std::generic_category());
    }
    return static_cast<std::size_t>(got);
}

}  // namespace orvelin
