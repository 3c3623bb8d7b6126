#include "search/move_sort.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "position/move.h"

namespace orvelin {

namespace {

/// What fits into the masks; hardly any position has more moves.
constexpr std::uint64_t most_masked = 64;

constexpr std::size_t classes = no_xmove_t + 1;

std::size_t class_of(Move const& move) {
    return move.xcode();
}

}  // namespace

// What the exchanges leave decides nodes: not stable (oddity 49).
void MoveSort::sort_by_class(MoveList& list) {
    if (list.size() <= most_masked) {
        sort_by_masks(list);
    } else {
        exchange_sort(list);
    }
}

void MoveSort::exchange_sort(MoveList& list) {
    int const size = static_cast<int>(list.size());
    for (int i = 0; i < size; ++i) {
        for (int j = i + 1; j < size; ++j) {
            if (list[i].xcode() > list[j].xcode()) {
                std::swap(list[i], list[j]);
            }
        }
    }
}

// Makes the same exchanges without the comparisons in between: a word for each class holds the
// places of the moves of lower class, and the next place to exchange with is its next bit.
void MoveSort::sort_by_masks(MoveList& list) {
    int const size = static_cast<int>(list.size());
    std::array<std::uint64_t, classes + 1> lower{};
    for (int i = 0; i < size; ++i) {
        lower[class_of(list[i]) + 1] |= std::uint64_t{1} << i;
    }
    for (std::size_t c = 1; c < lower.size(); ++c) {
        lower[c] |= lower[c - 1];
    }
    std::uint64_t ahead = ~std::uint64_t{0};
    for (int i = 0; i < size; ++i) {
        ahead &= ahead - 1;
        std::size_t held = class_of(list[i]);
        std::uint64_t next = lower[held] & ahead;
        while (next != 0) {
            int const j = std::countr_zero(next);
            std::uint64_t const place = next & (0 - next);
            std::size_t const found = class_of(list[j]);
            std::swap(list[i], list[j]);
            for (std::size_t c = found + 1; c <= held; ++c) {
                lower[c] &= ~place;
            }
            held = found;
            // All places up to this one have been compared with by now.
            next = lower[held] & ahead & ~(place | (place - 1));
        }
    }
}

}  // namespace orvelin
