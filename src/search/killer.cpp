#include "search/killer.h"

namespace orvelin {

void Killer::clear() {
    for (auto& [killer_a, killer_b] : pairs_) {
        killer_a.clear();
        killer_b.clear();
    }
}

}  // namespace orvelin
