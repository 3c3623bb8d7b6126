#include "search/move_sort.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace orvelin {

namespace {

/// What fits into the masks; hardly any position has more moves.
constexpr std::uint64_t most_masked = 64;

std::size_t class_of(Move const& move) {
    return move.xcode();
}

}  // namespace

// What the exchanges leave decides nodes: not stable (oddity 49).
void MoveSort::sort_by_class(MoveList& list) {
    MoveSort sort(list);
    for (int place = 0; place < static_cast<int>(list.size()); ++place) {
        sort.fill(place);
    }
}

MoveSort::MoveSort(MoveList& list) : list_(list), masked_(list.size() <= most_masked) {
    if (!masked_) {
        return;
    }
    int const size = static_cast<int>(list.size());
    for (int i = 0; i < size; ++i) {
        lower_[class_of(list[i]) + 1] |= std::uint64_t{1} << i;
    }
    for (std::size_t c = 1; c < lower_.size(); ++c) {
        lower_[c] |= lower_[c - 1];
    }
}

void MoveSort::fill_by_exchanges(int place) {
    int const size = static_cast<int>(list_.size());
    for (int j = place + 1; j < size; ++j) {
        if (list_[place].xcode() > list_[j].xcode()) {
            std::swap(list_[place], list_[j]);
        }
    }
}

// Makes the same exchanges without the comparisons in between: the next place to exchange with is
// the next bit of the word.
void MoveSort::fill_by_masks(int place) {
    // All places up to the last one have been compared with.
    std::uint64_t ahead = ~std::uint64_t{0} << place << 1;
    std::size_t held = class_of(list_[place]);
    while ((lower_[held] & ahead) != 0) {
        int const next = std::countr_zero(lower_[held] & ahead);
        ahead = ~std::uint64_t{0} << next << 1;
        std::size_t const found = class_of(list_[next]);
        std::swap(list_[place], list_[next]);
        for (std::size_t c = found + 1; c <= held; ++c) {
            lower_[c] &= ~(std::uint64_t{1} << next);
        }
        held = found;
    }
}

}  // namespace orvelin
