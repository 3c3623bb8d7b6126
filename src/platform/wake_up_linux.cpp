#include <stdexcept>
#include <sys/eventfd.h>
#include <unistd.h>

#include "platform/wake_up.h"

namespace orvelin {

namespace {

int descriptor_of(WakeUp const& flag) {
    return static_cast<int>(flag.handle());
}

}  // namespace

WakeUp::WakeUp() : handle_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (handle_ < 0) {
        throw std::runtime_error("no descriptor is left");
    }
}

WakeUp::~WakeUp() {
    ::close(descriptor_of(*this));
}

void WakeUp::set() {
    std::uint64_t const one = 1;
    [[maybe_unused]] auto const told = ::write(descriptor_of(*this), &one, sizeof one);
}

void WakeUp::take() {
    std::uint64_t count = 0;
    [[maybe_unused]] auto const taken = ::read(descriptor_of(*this), &count, sizeof count);
}

}  // namespace orvelin
