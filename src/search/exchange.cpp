#include <algorithm>
#include <array>
#include <stdexcept>

#include "position/chess_position.h"
#include "search/analysis.h"

namespace orvelin {

namespace {

/// Gain of a promotion by move code.
constexpr std::array<int, 8> promotion_gain{0, 0, 800, 400, 200, 200, 0, 0};

/// What the winner of an enemy king is given.
constexpr int king_capture_score = 32000;

/// Throws std::logic_error for a captured id that is no piece.
int gain_of(Move const& move) {
    return move.capture().abs_value() + promotion_gain[move.code()];
}

}  // namespace

int Analysis::see(Move const& move) {
    int const gain = gain_of(move);
    position_.force_move(move);
    int const result = gain - see(move.to());
    position_.undo_forced_move(move);
    return result;
}

int Analysis::see(Square square) {
    int const side = position_.stm();
    if (side != 0 && side != 1) {
        throw std::logic_error("Analysis::see   side to move is corrupt");
    }
    // Looked for on the board as it stands, so a slider behind an earlier captor counts.
    Square const attacker = side == 1 ? position_.white_weakest_attacker(square)
                                      : position_.black_weakest_attacker(square);
    if (attacker == Square()) {
        return 0;
    }
    Move const move = position_.convert_to_move(attacker, square, normal_move);
    // Only illegal moves of the interface bring this about: a set names a man whom the squares
    // do not hold. Without him there is nothing to play, and no end to the exchange.
    if (move.code() == nullmove) {
        return 0;
    }
    if (move.capture().king()) {
        return king_capture_score;
    }
    // A pawn that recaptures on the last rank stays a pawn here, by design.
    int const gain = gain_of(move);
    position_.force_move(move);
    int const result = gain - see(square);
    position_.undo_forced_move(move);
    // The side may decline to go on.
    return std::max(result, 0);
}

}  // namespace orvelin
