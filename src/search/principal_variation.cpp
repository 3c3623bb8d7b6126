#include "search/principal_variation.h"

#include <algorithm>
#include <stdexcept>

namespace orvelin {

PrincipalVariation::PrincipalVariation(PrincipalVariation const& other)
    : size_(other.size()),
      score_(other.score()),
      depth_(other.depth()),
      moves_(other.moves_),
      version_(other.version_) {}

PrincipalVariation& PrincipalVariation::operator=(PrincipalVariation const& other) {
    size_.store(other.size());
    score_.store(other.score());
    depth_.store(other.depth());
    moves_ = other.moves_;
    ++version_;
    return *this;
}

void PrincipalVariation::clear() {
    size_.store(0);
    score_.store(0);
}

std::string PrincipalVariation::str() const {
    std::string text;
    for (Move const& move : *this) {
        text += move.algebraic(false);
        text += ' ';
    }
    return text + '\n';
}

void PrincipalVariation::throw_out_of_range() {
    throw std::logic_error("PrincipalVariation::operator[]() parameter out of range");
}

PrincipalVariation operator+(Move move, PrincipalVariation const& line) {
    int const size = line.size();
    if (size >= PrincipalVariation::capacity) {
        PrincipalVariation::throw_out_of_range();
    }
    PrincipalVariation joined;
    joined.moves_[0] = move;
    std::copy_n(line.cbegin(), size, joined.begin() + 1);
    joined.size_.store(size + 1);
    return joined;
}

}  // namespace orvelin
