#include "position/bit_board.h"

#include <iomanip>
#include <iostream>
#include <sstream>

namespace orvelin {

namespace {

constexpr std::array<BitBoard, 65> make_squares() {
    std::array<BitBoard, 65> table;
    for (std::size_t i = 0; i < 64; ++i) {
        table[i] = BitBoard(std::uint64_t{1} << i);
    }
    return table;
}

// Counts by taking the lowest bit away: the count of i is one more than that of i & (i - 1).
constexpr std::array<std::int8_t, 65536> make_popcnt16() {
    std::array<std::int8_t, 65536> table{};
    for (unsigned int i = 1; i < table.size(); ++i) {
        table[i] = static_cast<std::int8_t>(table[i & (i - 1)] + 1);
    }
    return table;
}

}  // namespace

constinit const std::array<std::int8_t, 65536> BitBoard::m_popcnt16 = make_popcnt16();

constinit const std::array<BitBoard, 65> Square::bb = make_squares();

std::vector<Square> BitBoard::get_squares() const {
    std::vector<Square> squares;
    std::uint64_t rest = word_;
    while (rest != 0) {
        squares.emplace_back(get_reset_square(rest));
    }
    return squares;
}

std::string BitBoard::dump() const {
    std::ostringstream text;
    text << std::hex << std::setw(16) << std::setfill('0') << word_ << '\n';
    for (int rank = 7; rank >= 0; --rank) {
        for (int file = 0; file < 8; ++file) {
            text << ((word_ >> (8 * rank + file)) & 1);
        }
        text << '\n';
    }
    return text.str();
}

void BitBoard::write() const {
    std::cout << std::endl;
    std::istringstream lines(dump());
    for (std::string line; std::getline(lines, line);) {
        std::cout << line << std::endl;
    }
}

}  // namespace orvelin
