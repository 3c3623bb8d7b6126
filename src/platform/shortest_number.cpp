#include "platform/shortest_number.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

namespace orvelin {

namespace {

/// A number above 0: 0.d1d2d3... times ten to the exponent, the last digit not 0.
struct decimal_t {
    std::string digits;
    int exponent;
};

float read(char const* text, float) {
    return std::strtof(text, nullptr);
}

double read(char const* text, double) {
    return std::strtod(text, nullptr);
}

template <typename Number>
Number value_of(decimal_t const& decimal) {
    std::string const text = "0." + decimal.digits + 'e' + std::to_string(decimal.exponent);
    return read(text.c_str(), Number());
}

template <typename Number>
decimal_t rounded_to(Number value, int digits) {
    std::array<char, 40> text;
    std::snprintf(text.data(), text.size(), "%.*e", digits - 1, static_cast<double>(value));
    std::string const mantissa(text.data(), std::find(text.data(), text.data() + text.size(), 'e'));
    decimal_t decimal;
    std::copy_if(mantissa.begin(), mantissa.end(), std::back_inserter(decimal.digits),
                 [](char letter) { return letter != '.'; });
    decimal.exponent = std::atoi(text.data() + mantissa.size() + 1) + 1;
    return decimal;
}

template <typename Number>
decimal_t shortest(Number value) {
    for (int digits = 1; digits < std::numeric_limits<Number>::max_digits10; ++digits) {
        decimal_t decimal = rounded_to(value, digits);
        // Above a power of two the numbers lie twice as far apart as below it: what is not the
        // nearest text may still be nearest to no other number.
        decimal_t above = decimal;
        if (value_of<Number>(decimal) == value) {
            return decimal;
        }
        if (above.digits.back() != '9') {
            ++above.digits.back();
            if (value_of<Number>(above) == value) {
                return above;
            }
        }
    }
    return rounded_to(value, std::numeric_limits<Number>::max_digits10);
}

std::string scientific(decimal_t const& decimal) {
    std::string text = decimal.digits.substr(0, 1);
    if (decimal.digits.size() > 1) {
        text += '.' + decimal.digits.substr(1);
    }
    int const exponent = decimal.exponent - 1;
    std::string const magnitude = std::to_string(std::abs(exponent));
    return text + (exponent < 0 ? "e-" : "e+") + (magnitude.size() < 2 ? "0" : "") + magnitude;
}

/// Of a large number all digits, as its value has them.
std::string fixed(decimal_t const& decimal, double value) {
    int const size = static_cast<int>(decimal.digits.size());
    if (decimal.exponent <= 0) {
        return "0." + std::string(static_cast<std::size_t>(-decimal.exponent), '0') +
               decimal.digits;
    }
    if (decimal.exponent < size) {
        auto const whole = static_cast<std::size_t>(decimal.exponent);
        return decimal.digits.substr(0, whole) + '.' + decimal.digits.substr(whole);
    }
    std::array<char, 400> text;
    std::snprintf(text.data(), text.size(), "%.0f", value);
    return text.data();
}

template <typename Number>
char* write(char* to, Number value) {
    std::string text;
    Number const magnitude = std::fabs(value);
    if (magnitude == 0) {
        text = "0";
    } else if (!std::isfinite(magnitude)) {
        text = std::isnan(magnitude) ? "nan" : "inf";
    } else {
        decimal_t const decimal = shortest(magnitude);
        text = scientific(decimal);
        std::string const other = fixed(decimal, static_cast<double>(magnitude));
        text = other.size() <= text.size() ? other : text;
    }
    if (std::signbit(value)) {
        *to++ = '-';
    }
    return std::copy(text.begin(), text.end(), to);
}

}  // namespace

char* write_shortest_plainly(char* to, float value) {
    return write(to, value);
}

char* write_shortest_plainly(char* to, double value) {
    return write(to, value);
}

}  // namespace orvelin
