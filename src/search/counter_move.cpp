#include "search/counter_move.h"

namespace orvelin {

void CounterMove::clear() {
    values_.fill(0);
}

void CounterMove::divide_by_8() {
    for (std::int64_t& value : values_) {
        value >>= 3;
    }
}

}  // namespace orvelin
