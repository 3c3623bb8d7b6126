#include "position/square.h"

#include <stdexcept>

#include "position/bit_board.h"

namespace orvelin {

Square::Square(std::string const& text) {
    if (text.size() != 2) {
        throw std::logic_error("Square::Square(string)  size() error");
    }
    int const id =
        (static_cast<signed char>(text[0]) - 'a') + 8 * (static_cast<signed char>(text[1]) - '1');
    if (id < 0 || id > 63) {
        throw std::logic_error("Square::Square(string)  out of range");
    }
    square_ = id;
}

std::string Square::name() const {
    if (square_ < 0 || square_ > 64) {
        throw std::logic_error("Square::name()const msquare=" + std::to_string(square_));
    }
    if (square_ == 64) {
        return "no_square";
    }
    return {file(), rank()};
}

}  // namespace orvelin
