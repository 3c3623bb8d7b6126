#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>

#include "generation/attacks.h"
#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/set_steps.h"
#include "position/side.h"
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

/// The pieces of both colours that attack a square, while one after the other goes there.
class ExchangeBoard {
 public:
    ExchangeBoard(ChessPosition const& position, Attacks const& attacks, Move const& move)
        : position_(position),
          attacks_(attacks),
          square_(move.to()),
          occupied_((position.pieces() & ~move.from().bitboard()) | square_.bitboard()),
          diagonal_sliders_(position.white_bishop() | position.black_bishop() |
                            position.white_queen() | position.black_queen()),
          line_sliders_(position.white_rook() | position.black_rook() | position.white_queen() |
                        position.black_queen()),
          attackers_(
              (pawn_attacks<side::black>(square_.bitboard()) & position.white_pawn()) |
              (pawn_attacks<side::white>(square_.bitboard()) & position.black_pawn()) |
              (attacks.knight(square_) & (position.white_knight() | position.black_knight())) |
              (attacks.king(square_) & (position.white_king() | position.black_king()))) {
        find_sliders();
    }

    /// Takes the weakest attacker of a side off the board, of equals the one on the lowest square,
    /// and gives it; no piece when there is none.
    template <int Side>
    Piece take_weakest() {
        using own = SideOf<Side>;
        for (int const id :
             {own::pawn, own::knight, own::bishop, own::rook, own::queen, own::king}) {
            BitBoard found = attackers_ & position_.piece(id);
            if (!found) {
                continue;
            }
            occupied_ &= ~found.get_reset_square();
            find_sliders();
            return Piece(id);
        }
        return Piece();
    }

 private:
    /// What stood behind a piece that has gone attacks now.
    void find_sliders() {
        attackers_ |= (attacks_.bishop(square_, occupied_) & diagonal_sliders_) |
                      (attacks_.rook(square_, occupied_) & line_sliders_);
        attackers_ &= occupied_;
    }

    ChessPosition const& position_;
    Attacks const& attacks_;
    Square const square_;
    BitBoard occupied_;
    BitBoard const diagonal_sliders_;
    BitBoard const line_sliders_;
    BitBoard attackers_;
};

}  // namespace

// The moves that change more than two squares or a piece's kind are rare: they are made on the
// board, and the exchange is played out there. That form would serve for all, and it has to where
// sets and squares may disagree.
int Analysis::see(Move const& move) {
    int const gain = gain_of(move);
    if (move.code() == normal_move && !position_.board_is_inconsistent()) {
        return gain - replies_to(move);
    }
    position_.force_move(move);
    int const result = gain - see(move.to());
    position_.undo_forced_move(move);
    return result;
}

int Analysis::replies_to(Move const& move) const {
    ExchangeBoard board(position_, tables_.attacks, move);
    // What each capture takes; each captor takes off one piece, so that they cannot be more.
    std::array<int, 64> gains;
    std::size_t captures = 0;
    Piece standing = move.piece();
    bool white = position_.stm() != 1;
    int result = 0;
    for (Piece captor; captures < gains.size(); white = !white, standing = captor) {
        captor = white ? board.take_weakest<side::white>() : board.take_weakest<side::black>();
        if (captor.no_piece()) {
            break;
        }
        if (standing.king()) {
            result = king_capture_score;
            break;
        }
        gains[captures++] = standing.abs_value();
    }
    // From the last capture back: each side may decline to go on.
    while (captures > 0) {
        result = std::max(gains[--captures] - result, 0);
    }
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
    // Only illegal moves of the GUI bring this about: a set names a piece that the squares do not
    // hold. Without it there is nothing to play, and no end to the exchange.
    if (move.code() == nullmove) {
        return 0;
    }
    if (move.capture().king()) {
        return king_capture_score;
    }
    // A pawn that recaptures on the last rank stays a pawn here (oddity 73).
    int const gain = gain_of(move);
    position_.force_move(move);
    int const result = gain - see(square);
    position_.undo_forced_move(move);
    // The side may decline to go on.
    return std::max(result, 0);
}

}  // namespace orvelin
