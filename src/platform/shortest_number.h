#pragma once

#include <charconv>
#include <version>

namespace orvelin {

/// Writes a number with as few digits as give it back bit for bit, and of several such texts the
/// nearest one, as std::to_chars() does. There must be room for 32 letters. Gives the end.
char* write_shortest_plainly(char* to, float value);
char* write_shortest_plainly(char* to, double value);

/// By the library, where it can do so.
template <typename Number>
char* write_shortest(char* to, Number value) {
#ifdef __cpp_lib_to_chars
    constexpr int room = 32;
    return std::to_chars(to, to + room, value).ptr;
#else
    return write_shortest_plainly(to, value);
#endif
}

}  // namespace orvelin
