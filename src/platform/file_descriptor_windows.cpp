#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <system_error>

#include "platform/file_descriptor.h"
#include "platform/path.h"

namespace orvelin {

int open_to_read(std::string const& name) {
    int const descriptor = _wopen(path_of(name).c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category());
    }
    return descriptor;
}

void close_descriptor(int descriptor) {
    _close(descriptor);
}

std::size_t read_some(int descriptor, char* to, std::size_t room) {
    constexpr std::size_t most = std::size_t{1} << 30;
    int const got = _read(descriptor, to, static_cast<unsigned int>(std::min(room, most)));
    if (got < 0) {
        throw std::system_error(errno, std::generic_category());
    }
    return static_cast<std::size_t>(got);
}

}  // namespace orvelin
