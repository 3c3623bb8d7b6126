#include "analyse/utf8.h"

#include <cstddef>
#include <cstdint>

namespace orvelin::analyse {

namespace {

std::uint8_t byte_at(std::string_view text, std::size_t at) {
    return static_cast<std::uint8_t>(text[at]);
}

/// The least second byte and the largest one that may stand behind a first byte: overlong forms,
/// surrogates and what lies beyond Unicode are not letters.
bool second_fits(std::uint8_t first, std::uint8_t second) {
    std::uint8_t least = 0x80;
    std::uint8_t most = 0xBF;
    if (first == 0xE0) {
        least = 0xA0;
    } else if (first == 0xED) {
        most = 0x9F;
    } else if (first == 0xF0) {
        least = 0x90;
    } else if (first == 0xF4) {
        most = 0x8F;
    }
    return second >= least && second <= most;
}

std::size_t length_by_first(std::uint8_t first) {
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return 2;
    }
    if (first >= 0xE0 && first <= 0xEF) {
        return 3;
    }
    return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

/// The length of the letter that begins here; 0 when none does.
std::size_t letter_length(std::string_view text, std::size_t at) {
    std::uint8_t const first = byte_at(text, at);
    std::size_t const length = length_by_first(first);
    if (length == 0 || at + length > text.size()) {
        return 0;
    }
    if (length > 1 && !second_fits(first, byte_at(text, at + 1))) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if ((byte_at(text, at + i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return length;
}

}  // namespace

std::string valid_utf8(std::string_view text) {
    std::string valid;
    valid.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        std::size_t const length = letter_length(text, at);
        if (length > 0) {
            valid += text.substr(at, length);
            at += length;
            continue;
        }
        std::uint8_t const byte = byte_at(text, at++);
        valid += static_cast<char>(0xC0 | byte >> 6);
        valid += static_cast<char>(0x80 | (byte & 0x3F));
    }
    return valid;
}

}  // namespace orvelin::analyse
