#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "evaluation/weight.h"

namespace orvelin {

/// Integer terms by index, with a spare one that fills the last group of four.
using int_terms_t = std::array<std::int32_t, Weight::padded>;

/// Rounds to the nearest integer, halves away from zero, as std::round() does: that is a call into
/// the library here. Below 2^23 the value just under a half carries exactly what is to be rounded
/// away from zero over the next integer; above, every float is an integer.
inline float rounded(float value) {
    constexpr float integers_only = 8388608.0F;
    constexpr float nearly_half = 0.49999997F;
    // Turned round so that a NaN is left to the library too.
    if (!(std::fabs(value) < integers_only)) {
        return std::round(value);
    }
    int const nearest = static_cast<int>(value + std::copysign(nearly_half, value));
    return std::copysign(static_cast<float>(nearest), value);
}

/// Adds the blend of the terms from `First` on to the score and writes them to the variables.
///
/// Each operation rounds to float by itself: end game first, then middle game, then the sum of the
/// two. These are independent of each other, so the compiler takes four terms at a time; the sum
/// over the terms is not and keeps its order. `Used` terms count of `Size`, a multiple of four.
template <std::size_t First, std::size_t Size, std::size_t Used = Size>
[[gnu::always_inline]] inline float add_blend(float score, std::array<float, Size> const& values,
                                              float mg_phase, float eg_phase, float* variables) {
    static_assert(Size % 4 == 0 && Used <= Size && First + Size <= Weight::padded);
    alignas(16) std::array<float, Size> addends;
    for (std::size_t i = 0; i < Size; ++i) {
        float const end_game = values[i] * Weight::eg_row[First + i] * eg_phase;
        float const middle_game = values[i] * Weight::mg_row[First + i] * mg_phase;
        addends[i] = end_game + middle_game;
    }
    for (std::size_t i = 0; i < Used; ++i) {
        variables[First + i] = values[i];
    }
    for (std::size_t i = 0; i < Used; ++i) {
        score += addends[i];
    }
    return score;
}

/// The terms from `First` on as floats.
template <std::size_t First, std::size_t Size>
[[gnu::always_inline]] inline std::array<float, Size> as_floats(int_terms_t const& terms) {
    alignas(16) std::array<float, Size> values;
    for (std::size_t i = 0; i < Size; ++i) {
        values[i] = static_cast<float>(terms[First + i]);
    }
    return values;
}

}  // namespace orvelin
