#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <system_error>

#include "platform/new_file.h"

namespace orvelin {

// What may be done with a file is told by its folder.
bool create_new_file(std::filesystem::path const& name, std::filesystem::path const&) {
    int const descriptor =
        _wopen(name.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
    if (descriptor < 0) {
        if (errno == EEXIST) {
            return false;
        }
        throw std::system_error(errno, std::generic_category());
    }
    _close(descriptor);
    return true;
}

void check_writable(std::filesystem::path const& name) {
    constexpr int write = 2;
    if (_waccess(name.c_str(), write) != 0) {
        throw std::system_error(errno, std::generic_category());
    }
}

}  // namespace orvelin
