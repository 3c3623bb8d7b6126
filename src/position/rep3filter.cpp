#include "position/rep3filter.h"

#include <algorithm>

namespace orvelin {

bool Rep3filter::repetition() const {
    if (keys_.size() < 2) {
        return false;
    }
    const std::uint64_t current = keys_.back();
    for (auto key = keys_.crbegin() + 1; key != keys_.crend(); ++key) {
        if (*key == wall) {
            return false;
        }
        if (*key == current) {
            return true;
        }
    }
    return false;
}

// Walls do not limit the count (oddity 98).
std::string Rep3filter::result() const {
    if (keys_.size() < 3) {
        return "*";
    }
    auto const occurs_three_times = [this](std::uint64_t key) {
        return key != wall && std::count(keys_.begin(), keys_.end(), key) >= 3;
    };
    bool const draw = occurs_three_times(keys_.back()) || occurs_three_times(*(keys_.end() - 2));
    return draw ? "1/2-1/2 {Draw by threefold repetition}" : "*";
}

}  // namespace orvelin
