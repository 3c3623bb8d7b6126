#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "evaluation/weight.h"
#include "platform/four_at_a_time.h"
#include "platform/language.h"

namespace orvelin {

/// The terms that are floats before they are weighted: blended by the phase, or scaled.
constexpr bool is_float_term(std::size_t index) {
    return (index >= term::pst_pawn && index <= term::pst_king) || index == term::king_attack ||
           index == term::king_activity;
}

/// Values of the terms by index, with a spare one that fills the last group of four.
///
/// A term is an integer or a float by is_float_term(), and its place among the others is 0. So the
/// bits of its value are those of the integer as a float joined with those of the float, for every
/// term, and four of them can be taken at a time.
struct terms_t {
    alignas(16) std::array<std::int32_t, Weight::padded> integers{};
    alignas(16) std::array<std::uint32_t, Weight::padded> float_bits{};

    template <std::size_t Index>
    void set_float(float value) {
        static_assert(is_float_term(Index));
        float_bits[Index] = bit_cast<std::uint32_t>(value);
    }

    float value(std::size_t index) const {
        float const integer = static_cast<float>(integers[index]);
        return bit_cast<float>(bit_cast<std::uint32_t>(integer) | float_bits[index]);
    }
};

/// Neighbouring terms whose part of the sum is taken in one go.
struct group_t {
    std::size_t first;
    std::size_t last;

    constexpr std::size_t terms() const { return last - first + 1; }
    /// The number of terms up to a multiple of four.
    constexpr std::size_t size() const { return (terms() + 3) / 4 * 4; }
    /// The number of terms up to the last float among them, up to a multiple of four.
    constexpr std::size_t joined() const {
        std::size_t number = terms();
        while (number > 0 && !is_float_term(first + number - 1)) {
            --number;
        }
        return (number + 3) / 4 * 4;
    }
    constexpr bool follows(group_t const& other) const { return first == other.last + 1; }
};

/// The groups of the sum, in the order of the vector; the side to move comes last and alone.
namespace group {

inline constexpr group_t material_to_space{term::material, term::space};
inline constexpr group_t pst_of_pieces{term::pst_pawn, term::pst_rook};
inline constexpr group_t pst_to_king_attack{term::pst_queen, term::king_attack};
inline constexpr group_t castling_to_battlefield{term::castling_rights,
                                                 term::queen_battlefield_attack};
inline constexpr group_t king_activity_to_bishops{term::king_activity,
                                                  term::opposite_colored_bishops};

static_assert(material_to_space.first == 0);
static_assert(pst_of_pieces.follows(material_to_space));
static_assert(pst_to_king_attack.follows(pst_of_pieces));
static_assert(castling_to_battlefield.follows(pst_to_king_attack));
static_assert(king_activity_to_bishops.follows(castling_to_battlefield));
static_assert(term::stm == king_activity_to_bishops.last + 1 && term::count == term::stm + 1);
static_assert(term::count <= Weight::padded && Weight::padded % 4 == 0);
// Groups begin where four terms can be loaded at once, and find_pst_terms() stores eight from here.
static_assert(pst_of_pieces.first % 4 == 0 && pst_of_pieces.size() == 4);
static_assert(pst_to_king_attack.first % 4 == 0 && pst_to_king_attack.size() == 4);
static_assert(castling_to_battlefield.first % 4 == 0 && king_activity_to_bishops.first % 4 == 0);

}  // namespace group

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

/// The terms of a group as floats. Two plain loops, which the compiler takes four terms at a time;
/// told term by term what it need not join, it stores some of them one by one, and what is stored
/// so can be loaded by four only when it has reached the cache.
template <group_t Group>
[[gnu::always_inline]] inline void find_values(terms_t const& terms, float* values) {
    for (std::size_t i = 0; i < Group.size(); ++i) {
        values[i] = static_cast<float>(terms.integers[Group.first + i]);
    }
    for (std::size_t i = 0; i < Group.joined(); ++i) {
        values[i] =
            bit_cast<float>(bit_cast<std::uint32_t>(values[i]) | terms.float_bits[Group.first + i]);
    }
}

/// Adds the blend of the terms of a group to the score.
///
/// Each operation rounds to float by itself: end game first, then middle game, then the sum of the
/// two. These are independent of each other, so the compiler takes four terms at a time; the sum
/// over the terms is not and keeps its order.
template <group_t Group>
[[gnu::always_inline]] inline float add_blend(float score, terms_t const& terms, float mg_phase,
                                              float eg_phase) {
    constexpr std::size_t size = Group.size();
    static_assert(Group.first + size <= Weight::padded);
    alignas(16) std::array<float, size> values;
    find_values<Group>(terms, values.data());
    alignas(16) std::array<float, size> addends;
    for (std::size_t i = 0; i < size; ++i) {
        float const end_game = values[i] * Weight::eg_row[Group.first + i] * eg_phase;
        float const middle_game = values[i] * Weight::mg_row[Group.first + i] * mg_phase;
        addends[i] = end_game + middle_game;
    }
    for (std::size_t i = 0; i < Group.terms(); ++i) {
        score += addends[i];
    }
    return score;
}

/// The same sum with one weight for both phases, and in whatever order is quick: four at a time.
///
/// It is not the sum that counts, but tells how near that is. The two together round less often
/// than 128 times for a term, additions included, and each time by 2^-24 of the terms' magnitudes
/// at most; shares and weights are not negative, so that nothing cancels within a term.
struct loose_sum_t {
    four_floats_t sums{};
    four_floats_t magnitudes_of_terms{};

    template <group_t Group>
    [[gnu::always_inline]] void add(terms_t const& terms, Weight::row_t const& weights) {
        for (std::size_t i = 0; i < Group.size(); i += 4) {
            four_floats_t values = to_floats(four_words(&terms.integers[Group.first + i]));
            if (i < Group.joined()) {
                values = with_bits(values, four_words(&terms.float_bits[Group.first + i]));
            }
            four_floats_t const addends = values * four_floats(&weights[Group.first + i]);
            sums += addends;
            magnitudes_of_terms += magnitudes(addends);
        }
    }

    float sum() const { return sum_of(sums); }
    /// What the sum in the right order, with the side to move behind it, can be off it.
    float error() const {
        constexpr float side_to_move = 16.0F;
        constexpr float of_magnitudes = 0x1p-17F;
        return (sum_of(magnitudes_of_terms) + side_to_move) * of_magnitudes;
    }
};

}  // namespace orvelin
