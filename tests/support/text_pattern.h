#pragma once

#include <regex.h>
#include <stdexcept>
#include <string>

namespace orvelin::test {

/// Whether the whole text matches a POSIX extended regular expression; "\d" stands for a digit.
/// The standard library's expressions draw false warnings in sanitizer builds.
inline bool matches(std::string const& text, std::string pattern) {
    for (std::size_t at = pattern.find("\\d"); at != std::string::npos;
         at = pattern.find("\\d", at)) {
        pattern.replace(at, 2, "[0-9]");
    }
    regex_t compiled;
    if (regcomp(&compiled, ("^" + pattern + "$").c_str(), REG_EXTENDED | REG_NOSUB) != 0) {
        throw std::runtime_error("bad pattern: " + pattern);
    }
    bool const found = regexec(&compiled, text.c_str(), 0, nullptr, 0) == 0;
    regfree(&compiled);
    return found;
}

}  // namespace orvelin::test
