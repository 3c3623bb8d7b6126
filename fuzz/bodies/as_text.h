#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orvelin::fuzz {

/// The bytes that the fuzzer hands over, as a text.
inline std::string_view as_text(std::uint8_t const* data, std::size_t size) {
    return {reinterpret_cast<char const*>(data), size};
}

}  // namespace orvelin::fuzz
