#pragma once

#include "evaluation/counting.h"
#include "evaluation/distance.h"
#include "evaluation/pht_record.h"
#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/square.h"

/// Where the kings of an end game go.
namespace orvelin::king_activity {

/// Without pawns: the middle is good, the edge is bad.
inline int centralisation(BitBoard king) {
    return presence(king, centre) + presence(king, bigcentre) - presence(king, border);
}

/// With pawns: the king goes to weak enemy pawns and ahead of its own passed pawns. A set that is
/// empty is as far as no square on the board.
inline int way_to_pawns(Square king, BitBoard enemy_weak, BitBoard own_ahead,
                        Distance const& distance) {
    return -2 * distance(king, enemy_weak) - 3 * distance(king, own_ahead);
}

/// White minus Black, before the share of the end game.
inline int difference(ChessPosition const& position, PHTrecord const& pawns,
                      Distance const& distance) {
    if (position.white_pawn() | position.black_pawn()) {
        return way_to_pawns(position.white_kingsfield(), pawns.black_weak, pawns.white_ahead,
                            distance) -
               way_to_pawns(position.black_kingsfield(), pawns.white_weak, pawns.black_ahead,
                            distance);
    }
    return centralisation(position.white_king()) - centralisation(position.black_king());
}

}  // namespace orvelin::king_activity
