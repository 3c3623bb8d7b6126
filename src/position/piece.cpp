#include "position/piece.h"

#include <array>
#include <iostream>
#include <stdexcept>

namespace orvelin {

namespace {

constexpr std::array<char const*, 15> names{
    "no piece",     "white pawn",   "white knight", "white bishop", "white rook",
    "white queen",  "white king",   nullptr,        nullptr,        "black pawn",
    "black knight", "black bishop", "black rook",   "black queen",  "black king"};

static_assert(names[0] != nullptr && names[14] != nullptr && names[7] == nullptr);

bool is_listed(int id) {
    return id >= 0 && id < static_cast<int>(names.size()) &&
           names[static_cast<std::size_t>(id)] != nullptr;
}

}  // namespace

int Piece::value() const {
    if (!is_listed(id_)) {
        std::cout << "Piece: " << id_ << '\n';
        throw std::logic_error("Piece::value out of range");
    }
    return black_piece() ? -abs_value() : abs_value();
}

void Piece::throw_no_value() {
    throw std::logic_error("Piece::abs_value out of range:");
}

std::string Piece::name() const {
    if (!is_listed(id_)) {
        throw std::logic_error("Piece::unknown piece");
    }
    return names[static_cast<std::size_t>(id_)];
}

}  // namespace orvelin
