#include <utility>

#include "platform/single_thread.h"
#include "platform/wasm_imports.h"

namespace orvelin {

namespace {

interlude_t interlude;

}  // namespace

void set_interlude(interlude_t function) {
    interlude = std::move(function);
}

void look_around() {
    wait_around(std::chrono::steady_clock::time_point::min());
}

void wait_around(std::optional<std::chrono::steady_clock::time_point> deadline) {
    if (interlude) {
        interlude(deadline);
    }
}

bool can_wait() {
    return orvelin_can_wait() != 0;
}

}  // namespace orvelin
