#pragma once

#include <string>
#include <vector>

#include "position/bit_board.h"
#include "position/square.h"

namespace orvelin::test {

/// The set of the squares of these names.
inline BitBoard squares(std::vector<std::string> const& names) {
    BitBoard set;
    for (std::string const& name : names) {
        set.set_square(Square(name));
    }
    return set;
}

}  // namespace orvelin::test
