#include "search/lmr_table.h"

#include <cmath>

namespace orvelin {

LmrTable::LmrTable() {
    for (int depth = 0; depth < rows; ++depth) {
        for (int index = 0; index < columns; ++index) {
            reduction_[depth][index] = 1;
        }
    }
    for (int depth = 1; depth < rows; ++depth) {
        for (int index = 1; index < columns; ++index) {
            double const v = std::log(depth) * std::log(index * 0.5);
            if (v > 1.0) {
                reduction_[depth][index] = static_cast<std::uint8_t>(v);
            }
        }
    }
}

}  // namespace orvelin
