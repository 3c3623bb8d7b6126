#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/wake_up.h"

namespace orvelin {

/// Reads a file or standard input, and ends early when a flag is set, as that of StopSignals is.
/// One thread reads; bytes_read() may be asked from any.
class DescriptorInput {
 public:
    /// Opens the file; "-" is standard input. A null `stop` never ends anything.
    /// @throws std::runtime_error when it cannot be opened, or is a directory.
    DescriptorInput(std::string const& name, WakeUp const* stop);
    ~DescriptorInput();
    DescriptorInput(DescriptorInput const&) = delete;
    DescriptorInput& operator=(DescriptorInput const&) = delete;

    /// Puts the next bytes at a place with so much room and returns their number, 0 at the end.
    /// @throws std::runtime_error when reading fails.
    std::size_t read(char* place, std::size_t room);
    /// Whether read() will not have to wait.
    bool ready() const;
    std::uint64_t bytes_read() const { return bytes_read_; }

 private:
    /// What the system needs for it.
    struct State;

    std::unique_ptr<State> state_;
    std::atomic<std::uint64_t> bytes_read_ = 0;
    bool ended_ = false;
};

/// The bytes in a file; nothing for standard input, a pipe, or what cannot be looked at.
std::uint64_t size_of_file(std::string const& name);

}  // namespace orvelin
