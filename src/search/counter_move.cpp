#include "search/counter_move.h"

#include <algorithm>
#include <new>

namespace orvelin {

CounterMove::CounterMove()
    : values_(static_cast<std::int64_t*>(std::calloc(count, sizeof(std::int64_t)))) {
    if (values_ == nullptr) {
        throw std::bad_alloc();
    }
}

void CounterMove::clear() {
    std::fill_n(values_.get(), count, 0);
}

void CounterMove::divide_by_8() {
    std::for_each_n(values_.get(), count, [](std::int64_t& value) { value >>= 3; });
}

}  // namespace orvelin
