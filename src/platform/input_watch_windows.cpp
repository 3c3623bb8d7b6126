#include <array>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <io.h>
#include <mutex>
#include <thread>
#include <vector>
#include <windows.h>

#include "platform/input_watch.h"
#include "platform/process.h"

namespace orvelin {

/// Here nothing waits for a pipe and for something else at a time, so that a thread of its own
/// reads. It outlives the watch, since it may wait for input for ever, and so does this.
struct InputWatch::State {
    int input = 0;
    HANDLE flag = nullptr;
    /// Set while there is something to take.
    HANDLE filled = nullptr;
    /// Set when the reading thread may read on.
    HANDLE emptied = nullptr;
    std::array<char, 1 << 16> buffer;
    std::size_t begin = 0;
    std::size_t end = 0;
    bool ended = false;
    std::mutex mutex;

    void read_on();
};

void InputWatch::State::read_on() {
    for (;;) {
        int const number = _read(input, buffer.data(), static_cast<unsigned int>(buffer.size()));
        if (number <= 0) {
            outlast_interruption(input);
        }
        {
            std::lock_guard const lock(mutex);
            begin = 0;
            end = number > 0 ? static_cast<std::size_t>(number) : 0;
            ended = number <= 0;
        }
        SetEvent(filled);
        if (number <= 0) {
            return;
        }
        WaitForSingleObject(emptied, INFINITE);
    }
}

InputWatch::InputWatch(int input, int, WakeUp const& flag) : state_(std::make_unique<State>()) {
    _setmode(input, _O_BINARY);
    state_->input = input;
    state_->flag = reinterpret_cast<HANDLE>(flag.handle());
    state_->filled = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    state_->emptied = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::thread([state = state_.get()] { state->read_on(); }).detach();
}

InputWatch::~InputWatch() {
    // Its thread goes on to use it.
    [[maybe_unused]] State* const kept = state_.release();
}

// What comes from the console ends the process by itself, as prepare_process() has asked.
void InputWatch::block_signals() {}

// That nobody reads the output any more is found out by writing.
InputWatch::seen_t InputWatch::wait(wanted_t wanted,
                                    std::optional<std::chrono::milliseconds> most) {
    // Of an input that is not read on, nothing is heard here.
    bool const reads = wanted == wanted_t::bytes;
    std::array<HANDLE, 2> const sources{state_->flag, state_->filled};
    WaitForMultipleObjects(reads ? 2 : 1, sources.data(), FALSE,
                           most ? static_cast<DWORD>(most->count()) : INFINITE);
    seen_t seen;
    seen.flag = WaitForSingleObject(state_->flag, 0) == WAIT_OBJECT_0;
    seen.input = reads && WaitForSingleObject(state_->filled, 0) == WAIT_OBJECT_0;
    return seen;
}

std::optional<std::size_t> InputWatch::read(char* to, std::size_t room) {
    std::lock_guard const lock(state_->mutex);
    std::size_t const number = std::min(room, state_->end - state_->begin);
    std::memcpy(to, state_->buffer.data() + state_->begin, number);
    state_->begin += number;
    if (number > 0 && state_->begin == state_->end) {
        ResetEvent(state_->filled);
        SetEvent(state_->emptied);
    }
    return number > 0 || state_->ended ? std::optional<std::size_t>(number) : std::nullopt;
}

}  // namespace orvelin
