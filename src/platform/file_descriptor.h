#pragma once

#include <cstddef>
#include <string>

namespace orvelin {

// Files as the system numbers them. What fails throws std::system_error with the system's reason.

/// Opens a file, as bytes; what is not there cannot be opened.
int open_to_read(std::string const& name);
void close_descriptor(int descriptor);
/// Puts the next bytes at a place with so much room and returns their number, 0 at the end.
std::size_t read_some(int descriptor, char* to, std::size_t room);

}  // namespace orvelin
