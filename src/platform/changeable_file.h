#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvelin {

// Files that are read, written and cut by one process at a time. What fails throws
// std::system_error with the system's reason.

/// A file as the system numbers it.
struct changeable_file_t {
    int descriptor;
    /// It was not there before.
    bool is_new;
};

/// Opens a file, as bytes, and makes it where there is none; a pipe or a device that can only be
/// written is opened so.
changeable_file_t open_to_change(std::string const& name);
/// Makes a descriptor carry bytes as they are.
void carry_bytes(int descriptor);
/// Removes a file that open_to_change() has opened, and closes it.
void remove_and_close(int descriptor, std::string const& name);

/// Neither a pipe nor a device.
bool is_regular_file(int descriptor);
std::uint64_t size_of(int descriptor);
/// Takes the file for this process until it is closed; false when another process has it. There are
/// systems of files without locks.
bool take_alone(int descriptor);

/// Reads into a place with so much room, and returns the number of bytes, 0 at the end.
std::size_t read_at(int descriptor, std::uint64_t from, char* to, std::size_t room);
/// Writes some of the bytes and returns their number, waiting until one at least is taken: to a
/// place of a file, or behind what was written last.
std::size_t write_at(int descriptor, std::optional<std::uint64_t> place, std::string_view bytes);
/// Where the next bytes without a place go; nothing in a pipe.
std::optional<std::uint64_t> place_in(int descriptor);
/// False when it cannot be cut.
bool cut_to(int descriptor, std::uint64_t size);

}  // namespace orvelin
