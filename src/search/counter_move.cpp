#include "search/counter_move.h"

#include <algorithm>

namespace orvelin {

CounterMove::CounterMove()
    : memory_(rows * answers_count * sizeof(std::int64_t)),
      values_(static_cast<std::int64_t*>(memory_.data())) {}

void CounterMove::clear() {
    for (std::size_t row = 0; row < rows; ++row) {
        if (written_[row]) {
            std::fill_n(values_ + place(row), answers_count, 0);
        }
    }
    written_.fill(false);
}

void CounterMove::divide_by_8() {
    for (std::size_t row = 0; row < rows; ++row) {
        if (written_[row]) {
            std::for_each_n(values_ + place(row), answers_count,
                            [](std::int64_t& value) { value >>= 3; });
        }
    }
}

}  // namespace orvelin
