#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "platform/new_file.h"

namespace orvelin {

bool create_new_file(std::filesystem::path const& name, std::filesystem::path const& like) {
    int const descriptor = ::open(name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        if (errno == EEXIST) {
            return false;
        }
        throw std::system_error(errno, std::generic_category());
    }
    struct stat old {};
    if (::stat(like.c_str(), &old) == 0) {
        ::fchmod(descriptor, old.st_mode & 07777);
    }
    ::close(descriptor);
    return true;
}

void check_writable(std::filesystem::path const& name) {
    if (::access(name.c_str(), W_OK) != 0) {
        throw std::system_error(errno, std::generic_category());
    }
}

}  // namespace orvelin
