#pragma once

#include <sstream>
#include <string>

namespace orvelin {

/// The next blank-separated word of a command line; empty when there is none.
inline std::string read_token(std::istringstream& line) {
    std::string token;
    line >> token;
    return token;
}

/// The next number of a command line. One that is missing or unreadable gives 0, one out of range
/// the nearest `int`; either way the stream has failed, and every token after it reads as empty.
inline int read_number(std::istringstream& line) {
    int number = 0;
    line >> number;
    return number;
}

}  // namespace orvelin
