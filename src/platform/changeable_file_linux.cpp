#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "platform/changeable_file.h"

namespace orvelin {

namespace {

[[noreturn]] void fail() {
    throw std::system_error(errno, std::generic_category());
}

struct stat status_of(int descriptor) {
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0) {
        fail();
    }
    return status;
}

}  // namespace

changeable_file_t open_to_change(std::string const& name) {
    int descriptor = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    bool const is_new = descriptor >= 0;
    if (descriptor < 0 && errno == EEXIST) {
        descriptor = ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    }
    if (descriptor < 0 && (errno == EACCES || errno == EINVAL || errno == ENXIO)) {
        descriptor = ::open(name.c_str(), O_WRONLY | O_CLOEXEC);
    }
    if (descriptor < 0) {
        fail();
    }
    return {descriptor, is_new};
}

void carry_bytes(int) {}

void remove_and_close(int descriptor, std::string const& name) {
    ::unlink(name.c_str());
    ::close(descriptor);
}

bool is_regular_file(int descriptor) {
    return S_ISREG(status_of(descriptor).st_mode);
}

std::uint64_t size_of(int descriptor) {
    return static_cast<std::uint64_t>(status_of(descriptor).st_size);
}

bool take_alone(int descriptor) {
    int result = 0;
    do {
        result = ::flock(descriptor, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno != EWOULDBLOCK;
}

std::size_t read_at(int descriptor, std::uint64_t from, char* to, std::size_t room) {
    ssize_t count = 0;
    do {
        count = ::pread(descriptor, to, room, static_cast<off_t>(from));
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        fail();
    }
    return static_cast<std::size_t>(count);
}

std::size_t write_at(int descriptor, std::optional<std::uint64_t> place, std::string_view bytes) {
    for (;;) {
        ssize_t const count =
            place ? ::pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(*place))
                  : ::write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (errno == EAGAIN) {
            pollfd asked = {descriptor, POLLOUT, 0};
            ::poll(&asked, 1, -1);
        } else if (errno != EINTR) {
            fail();
        }
    }
}

std::optional<std::uint64_t> place_in(int descriptor) {
    off_t const place = ::lseek(descriptor, 0, SEEK_CUR);
    return place < 0 ? std::nullopt : std::optional(static_cast<std::uint64_t>(place));
}

bool cut_to(int descriptor, std::uint64_t size) {
    if (::ftruncate(descriptor, static_cast<off_t>(size)) != 0) {
        return false;
    }
    ::lseek(descriptor, static_cast<off_t>(size), SEEK_SET);
    return true;
}

}  // namespace orvelin
