#include "time/duration.h"

#include <cmath>

namespace orvelin {

std::uint64_t truncated(double number) {
    constexpr double two_63 = 9223372036854775808.0;
    constexpr double two_64 = 18446744073709551616.0;
    if (number >= two_63 && number < two_64) {
        return static_cast<std::uint64_t>(number);
    }
    if (number >= -two_63 && number < two_63) {
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(number));
    }
    return std::uint64_t{1} << 63;
}

void Duration::seconds(float count) {
    seconds_ = std::trunc(static_cast<double>(count) * 1000.0) / 1000.0;
}

}  // namespace orvelin
