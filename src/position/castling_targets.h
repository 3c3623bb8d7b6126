#pragma once

#include "position/move.h"
#include "position/square.h"

namespace orvelin {

/// Where king and rook stand after castling.
struct CastlingTargets {
    Square king;
    Square rook;
};

/// The targets of a king and the rook of its castling, given by their squares before the move.
/// `home_rank` is the id of a1 or a8. The squares alone tell the wing (oddity 94): a rook on a
/// higher square means g and f file, however close the pieces stand.
constexpr CastlingTargets castling_targets(Square const& king, Square const& rook, int home_rank) {
    if (rook > king) {
        return {Square(home_rank + 6), Square(home_rank + 5)};
    }
    return {Square(home_rank + 2), Square(home_rank + 3)};
}

/// The targets of a castling word, whose piece tells the rank.
constexpr CastlingTargets castling_targets(Move const& move) {
    return castling_targets(move.from(), move.to(), move.piece().white_king() ? 0 : 56);
}

}  // namespace orvelin
