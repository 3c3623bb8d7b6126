#include "search/search_counters.h"

#include <cmath>

namespace orvelin {

void SearchCounters::clear() {
    seldepth.store(0);
    node_count.store(0);
    leaf_count = 0;
    mate_attack_count = 0;
}

void SearchCounters::begin_iterations() {
    date.fetch_add(1);
    iteration.store(0);
}

void SearchCounters::close_iteration(bool was_stopped) {
    if (!was_stopped) {
        float const exponent = 1.0F / static_cast<float>(iteration.load());
        ebf.store(static_cast<float>(
            std::pow(static_cast<double>(leaf_count), static_cast<double>(exponent))));
    }
    leaf_count = 0;
}

}  // namespace orvelin
