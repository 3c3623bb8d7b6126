#pragma once

#include "position/bit_board.h"
#include "position/set_steps.h"

namespace orvelin {

/// The battlefield of a king with this block of squares around it: from the rank behind the king to
/// four ranks ahead of it, three files wide.
template <int Side>
constexpr BitBoard battlefield(BitBoard block) {
    return block | ahead<Side>(block, 2) | ahead<Side>(block, 3);
}

}  // namespace orvelin
