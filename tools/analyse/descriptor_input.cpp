#include "analyse/descriptor_input.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace orvelin::tools {

namespace {

[[noreturn]] void fail(std::string const& name, int error) {
    throw std::runtime_error("cannot read " + name + ": " + std::generic_category().message(error));
}

int open_input(std::string const& name) {
    if (name == "-") {
        return STDIN_FILENO;
    }
    int const descriptor = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        fail(name, errno);
    }
    struct stat status;
    if (::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        ::close(descriptor);
        fail(name, EISDIR);
    }
    return descriptor;
}

}  // namespace

DescriptorInput::DescriptorInput(std::string const& name, int stop)
    : name_(name == "-" ? "standard input" : name), descriptor_(open_input(name)), stop_(stop) {}

DescriptorInput::~DescriptorInput() {
    if (descriptor_ != STDIN_FILENO) {
        ::close(descriptor_);
    }
}

bool DescriptorInput::ready() const {
    pollfd asked = {descriptor_, POLLIN, 0};
    return ended_ || ::poll(&asked, 1, 0) != 0;
}

bool DescriptorInput::wait_for_input() const {
    std::array<pollfd, 2> asked = {{{descriptor_, POLLIN, 0}, {stop_, POLLIN, 0}}};
    while (::poll(asked.data(), asked.size(), -1) < 0) {
        if (errno != EINTR) {
            fail(name_, errno);
        }
    }
    return asked[1].revents == 0;
}

std::size_t DescriptorInput::read(char* place, std::size_t room) {
    while (!ended_ && wait_for_input()) {
        ssize_t const count = ::read(descriptor_, place, room);
        if (count > 0) {
            bytes_read_ += static_cast<std::uint64_t>(count);
            return static_cast<std::size_t>(count);
        }
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            fail(name_, errno);
        }
        ended_ = count == 0;
    }
    ended_ = true;
    return 0;
}

std::uint64_t size_of_file(std::string const& name) {
    struct stat status;
    if (name == "-" || ::stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return 0;
    }
    return static_cast<std::uint64_t>(status.st_size);
}

}  // namespace orvelin::tools
