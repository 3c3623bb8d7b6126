#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "platform/descriptor_input.h"
#include "platform/process.h"

namespace orvelin {

namespace {

[[noreturn]] void fail(std::string const& name, int error) {
    throw std::runtime_error("cannot read " + name + ": " + std::generic_category().message(error));
}

int open_input(std::string const& name) {
    if (name == "-") {
        return standard_input;
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

struct DescriptorInput::State {
    std::string name;
    int descriptor;
    int stop;

    /// False when the reading is to end.
    bool wait_for_input() const;
};

bool DescriptorInput::State::wait_for_input() const {
    std::array<pollfd, 2> asked = {{{descriptor, POLLIN, 0}, {stop, POLLIN, 0}}};
    while (::poll(asked.data(), asked.size(), -1) < 0) {
        if (errno != EINTR) {
            fail(name, errno);
        }
    }
    return asked[1].revents == 0;
}

DescriptorInput::DescriptorInput(std::string const& name, WakeUp const* stop)
    : state_(
          std::make_unique<State>(State{name == "-" ? "standard input" : name, open_input(name),
                                        stop != nullptr ? static_cast<int>(stop->handle()) : -1})) {
}

DescriptorInput::~DescriptorInput() {
    if (state_->descriptor != standard_input) {
        ::close(state_->descriptor);
    }
}

bool DescriptorInput::ready() const {
    pollfd asked = {state_->descriptor, POLLIN, 0};
    return ended_ || ::poll(&asked, 1, 0) != 0;
}

std::size_t DescriptorInput::read(char* place, std::size_t room) {
    while (!ended_ && state_->wait_for_input()) {
        ssize_t const count = ::read(state_->descriptor, place, room);
        if (count > 0) {
            bytes_read_ += static_cast<std::uint64_t>(count);
            return static_cast<std::size_t>(count);
        }
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            fail(state_->name, errno);
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

}  // namespace orvelin
