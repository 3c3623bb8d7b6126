#include "search/search_limits.h"

#include <utility>

namespace orvelin {

void SearchLimits::reset() {
    depth_limit.store(maximum_iteration);
    set_searchmoves({});
}

void SearchLimits::set_searchmoves(std::vector<Move> moves) {
    std::lock_guard const lock(searchmoves_mutex);
    searchmoves = std::move(moves);
}

}  // namespace orvelin
