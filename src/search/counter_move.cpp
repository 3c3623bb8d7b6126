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
            std::fill_n(above_zero_.data() + row * words_of_row, words_of_row, 0);
        }
    }
    written_.fill(false);
}

void CounterMove::divide_by_8() {
    for (std::size_t word = 0; word < above_zero_.size(); ++word) {
        if (written_[word / words_of_row]) {
            std::uint64_t bits = 0;
            for (std::size_t i = 0; i < word_bits; ++i) {
                std::int64_t& value = values_[word * word_bits + i];
                value >>= 3;
                bits |= std::uint64_t{is_above_zero(value)} << i;
            }
            above_zero_[word] = bits;
        }
    }
}

}  // namespace orvelin
