#include "analyse/duration_text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace orvelin::tools {

namespace {

std::string two_digits(std::int64_t value) {
    return (value < 10 ? "0" : "") + std::to_string(value);
}

}  // namespace

std::string duration_text(double seconds) {
    // A hundred years is long enough, and fits.
    constexpr double most = 100.0 * 365 * 24 * 3600;
    std::int64_t const whole = std::llround(std::clamp(seconds, 0.0, most));
    std::int64_t const minutes = whole / 60;
    if (minutes < 60) {
        return std::to_string(minutes) + ':' + two_digits(whole % 60);
    }
    return std::to_string(minutes / 60) + ':' + two_digits(minutes % 60) + ':' +
           two_digits(whole % 60);
}

std::string rate_text(double per_second) {
    if (per_second < 10) {
        std::int64_t const tenths = std::llround(per_second * 10);
        return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + "/s";
    }
    return std::to_string(std::llround(per_second)) + "/s";
}

}  // namespace orvelin::tools
