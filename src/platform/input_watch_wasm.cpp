#include "platform/input_watch.h"
#include "platform/wasm_imports.h"

namespace orvelin {

struct InputWatch::State {};

InputWatch::InputWatch(int, int, WakeUp const&) {}

InputWatch::~InputWatch() = default;

void InputWatch::block_signals() {}

// There are no signals, and the page takes every output. What is behind a full queue waits there.
InputWatch::seen_t InputWatch::wait(wanted_t wanted,
                                    std::optional<std::chrono::milliseconds> most) {
    seen_t seen;
    if (wanted == wanted_t::bytes) {
        seen.input = orvelin_wait(most ? static_cast<double>(most->count()) : -1.0) != 0;
    }
    return seen;
}

std::optional<std::size_t> InputWatch::read(char* to, std::size_t room) {
    int const number = orvelin_read(to, static_cast<int>(room));
    return number > 0 ? std::optional<std::size_t>(number) : std::nullopt;
}

}  // namespace orvelin
