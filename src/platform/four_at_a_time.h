#pragma once

#include <cstdint>
#include <cstring>

#include "platform/language.h"

namespace orvelin {

// Four neighbours of an array in one value: an extension of g++ and clang, which take it to one
// instruction where the processor has it. What may be done in any order is told so, since of a
// plain loop of additions the compiler has to keep the order.
using four_floats_t [[gnu::vector_size(16)]] = float;
using four_words_t [[gnu::vector_size(16)]] = std::int32_t;

/// The four from `first` on.
inline four_floats_t four_floats(float const* first) {
    four_floats_t four;
    std::memcpy(&four, first, sizeof four);
    return four;
}

/// The same of words.
inline four_words_t four_words(void const* first) {
    four_words_t four;
    std::memcpy(&four, first, sizeof four);
    return four;
}

/// Words turned into floats of the same value, rounded.
inline four_floats_t to_floats(four_words_t four) {
    return __builtin_convertvector(four, four_floats_t);
}

/// The bits of the floats joined with `words`.
inline four_floats_t with_bits(four_floats_t four, four_words_t words) {
    return reinterpret_cast<four_floats_t>(reinterpret_cast<four_words_t>(four) | words);
}

/// Without their signs.
inline four_floats_t magnitudes(four_floats_t four) {
    constexpr std::int32_t all_but_sign = 0x7FFFFFFF;
    return reinterpret_cast<four_floats_t>(reinterpret_cast<four_words_t>(four) & all_but_sign);
}

inline float sum_of(four_floats_t four) {
    return (four[0] + four[2]) + (four[1] + four[3]);
}

}  // namespace orvelin
