#include <cerrno>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <windows.h>

#include "platform/changeable_file.h"
#include "platform/descriptor_input.h"
#include "platform/file_descriptor.h"
#include "platform/input_watch.h"
#include "platform/path.h"
#include "platform/process.h"

namespace orvelin {

namespace {

[[noreturn]] void fail(std::string const& name, std::error_code error) {
    throw std::runtime_error("cannot read " + name + ": " + error.message());
}

int open_input(std::string const& name) {
    if (name == "-") {
        return standard_input;
    }
    std::error_code ignored;
    if (std::filesystem::is_directory(path_of(name), ignored)) {
        fail(name, std::make_error_code(std::errc::is_a_directory));
    }
    try {
        return open_to_read(name);
    } catch (std::system_error const& error) {
        fail(name, error.code());
    }
}

}  // namespace

/// A file is read at once; for a pipe or the console a watch waits.
struct DescriptorInput::State {
    std::string name;
    int descriptor;
    WakeUp const* stop;
    WakeUp never{};
    std::optional<InputWatch> watch{};
};

DescriptorInput::DescriptorInput(std::string const& name, WakeUp const* stop)
    : state_(new State{name == "-" ? "standard input" : name, open_input(name), stop}) {
    if (!is_regular_file(state_->descriptor)) {
        state_->watch.emplace(state_->descriptor, standard_output,
                              stop != nullptr ? *stop : state_->never);
    } else if (name == "-") {
        carry_bytes(standard_input);
    }
}

// What a watch reads has a thread that may still be at it.
DescriptorInput::~DescriptorInput() {
    if (state_->descriptor != standard_input && !state_->watch) {
        close_descriptor(state_->descriptor);
    }
}

bool DescriptorInput::ready() const {
    return ended_ || !state_->watch ||
           state_->watch->wait(InputWatch::wanted_t::bytes, std::chrono::milliseconds(0)).input;
}

std::size_t DescriptorInput::read(char* place, std::size_t room) {
    while (!ended_) {
        if (state_->watch) {
            InputWatch::seen_t const seen =
                state_->watch->wait(InputWatch::wanted_t::bytes, std::nullopt);
            ended_ = seen.flag;
            if (ended_ || !seen.input) {
                continue;
            }
        } else if (state_->stop != nullptr &&
                   WaitForSingleObject(reinterpret_cast<HANDLE>(state_->stop->handle()), 0) ==
                       WAIT_OBJECT_0) {
            break;
        }
        try {
            std::optional<std::size_t> const count =
                state_->watch ? state_->watch->read(place, room)
                              : read_some(state_->descriptor, place, room);
            ended_ = count == 0U;
            if (count && *count > 0) {
                bytes_read_ += *count;
                return *count;
            }
        } catch (std::system_error const& error) {
            fail(state_->name, error.code());
        }
    }
    ended_ = true;
    return 0;
}

std::uint64_t size_of_file(std::string const& name) {
    std::error_code error;
    std::filesystem::path const path = name == "-" ? std::filesystem::path() : path_of(name);
    if (!std::filesystem::is_regular_file(path, error)) {
        return 0;
    }
    std::uintmax_t const size = std::filesystem::file_size(path, error);
    return error ? 0 : size;
}

}  // namespace orvelin
