#include "analyse/line_file.h"

#include <cerrno>
#include <chrono>
#include <exception>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace orvelin::tools {

namespace {

/// A run that was interrupted, on another machine perhaps, may need a moment to its end when the
/// next one takes it up.
constexpr std::chrono::milliseconds last_run_patience{2000};

}  // namespace

LineFile::LineFile(std::string const& name, open_mode mode)
    : shown_name_(name == "-" ? "standard output" : name) {
    if (name == "-") {
        descriptor_ = STDOUT_FILENO;
        return;
    }
    try {
        open(name, mode);
    } catch (...) {
        ::close(descriptor_);
        throw;
    }
}

LineFile::~LineFile() {
    // A run that is refused leaves no file behind that would be in the way of the next.
    if (is_new_ && size_ == 0 && std::uncaught_exceptions() > 0) {
        ::unlink(shown_name_.c_str());
    }
    if (descriptor_ != STDOUT_FILENO) {
        ::close(descriptor_);
    }
}

void LineFile::open(std::string const& name, open_mode mode) {
    descriptor_ = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    is_new_ = descriptor_ >= 0;
    if (descriptor_ < 0 && errno == EEXIST) {
        descriptor_ = ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    }
    if (descriptor_ < 0 && (errno == EACCES || errno == EINVAL || errno == ENXIO)) {
        // A pipe or a device that is there to be written alone.
        descriptor_ = ::open(name.c_str(), O_WRONLY | O_CLOEXEC);
    }
    struct stat status = {};
    if (descriptor_ < 0 || ::fstat(descriptor_, &status) != 0) {
        fail("cannot write", errno);
    }
    is_file_ = S_ISREG(status.st_mode);
    if (!is_file_) {
        if (mode == open_mode::resume) {
            throw std::runtime_error("cannot resume " + shown_name_ + ": it is not a file");
        }
        return;
    }
    lock(mode == open_mode::resume ? last_run_patience : std::chrono::milliseconds(0));
    // Only now nobody else changes it any more.
    if (::fstat(descriptor_, &status) != 0) {
        fail("cannot write", errno);
    }
    size_ = static_cast<std::uint64_t>(status.st_size);
    if (mode == open_mode::replace) {
        cut(0);
    } else if (mode == open_mode::create && size_ > 0) {
        throw std::runtime_error(shown_name_ +
                                 " is there already; --resume goes on with it, --overwrite begins "
                                 "it anew");
    }
}

void LineFile::lock(std::chrono::milliseconds patience) const {
    auto const end = std::chrono::steady_clock::now() + patience;
    while (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            // There are systems of files without locks.
            return;
        }
        if (std::chrono::steady_clock::now() >= end) {
            throw std::runtime_error("cannot write " + shown_name_ +
                                     ": another process is writing it");
        }
        ::poll(nullptr, 0, 20);
    }
}

void LineFile::fail(std::string const& what, int error) const {
    throw std::runtime_error(what + ' ' + shown_name_ + ": " +
                             std::generic_category().message(error));
}

void LineFile::add(std::string_view text) {
    std::size_t written = 0;
    while (written < text.size()) {
        char const* const from = text.data() + written;
        std::size_t const bytes = text.size() - written;
        ssize_t const count =
            is_file_ ? ::pwrite(descriptor_, from, bytes, static_cast<off_t>(size_ + written))
                     : ::write(descriptor_, from, bytes);
        if (count >= 0) {
            written += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            pollfd asked = {descriptor_, POLLOUT, 0};
            ::poll(&asked, 1, -1);
        } else if (errno != EINTR) {
            int const error = errno;
            take_back(written);
            fail("cannot write", error);
        }
    }
    size_ += text.size();
}

// Standard output may be a file that others wrote to before. To a pipe this does nothing.
void LineFile::take_back(std::size_t written) const {
    off_t const end = is_file_ ? static_cast<off_t>(size_)
                               : ::lseek(descriptor_, 0, SEEK_CUR) - static_cast<off_t>(written);
    if (end >= 0 && ::ftruncate(descriptor_, end) == 0) {
        ::lseek(descriptor_, end, SEEK_SET);
    }
}

void LineFile::read(std::uint64_t from, std::size_t bytes, std::string& text) const {
    text.resize(bytes);
    std::size_t have = 0;
    while (have < bytes) {
        ssize_t const count =
            ::pread(descriptor_, text.data() + have, bytes - have, static_cast<off_t>(from + have));
        if (count == 0) {
            break;
        }
        if (count > 0) {
            have += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            fail("cannot read", errno);
        }
    }
    text.resize(have);
}

void LineFile::cut(std::uint64_t size) {
    if (::ftruncate(descriptor_, static_cast<off_t>(size)) != 0) {
        fail("cannot write", errno);
    }
    size_ = size;
}

}  // namespace orvelin::tools
