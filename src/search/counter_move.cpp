#include "search/counter_move.h"

#include <algorithm>

namespace orvelin {

CounterMove::CounterMove()
    : memory_(count * sizeof(std::int64_t)), values_(static_cast<std::int64_t*>(memory_.data())) {}

void CounterMove::clear() {
    std::fill_n(values_, count, 0);
}

void CounterMove::divide_by_8() {
    std::for_each_n(values_, count, [](std::int64_t& value) { value >>= 3; });
}

}  // namespace orvelin
