#include "position/move_list.h"

#include <algorithm>

namespace orvelin {

MoveList::MoveList() : moves_(new Move[capacity]()), owns_moves_(true) {}

MoveList::MoveList(MoveList const& other)
    : size_(other.size_), moves_(new Move[capacity]()), owns_moves_(true) {
    std::copy(other.begin(), other.end(), moves_);
}

MoveList& MoveList::operator=(MoveList const& other) {
    if (this == &other) {
        return *this;
    }
    size_ = other.size_;
    std::copy(other.begin(), other.end(), moves_);
    return *this;
}

MoveList::~MoveList() {
    if (owns_moves_) {
        delete[] moves_;
    }
}

}  // namespace orvelin
