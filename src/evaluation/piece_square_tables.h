#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include "position/move.h"

namespace orvelin {

class ChessPosition;

/// Running piece-square sums of a position.
///
/// Owns the constant tables and one pair of sums (middle game, end game) for each piece id. The
/// sums follow the position only if `init()` was called on it and every move made or unmade since
/// then was also passed to `make_move()` or `unmake_move()`. They are sums of floats and drift a
/// little over a long run of moves; the order of the additions is therefore part of the behaviour
/// and decides which nodes the search visits (oddity 116). Used by one thread at a time.
class PieceSquareTables {
 public:
    /// Middle-game value first, end-game value second.
    using pair_t = std::pair<float, float>;
    /// Values of one kind of piece by square id, a1 = 0.
    using table_t = std::array<float, 64>;

    /// Builds the tables; all sums are zero and no position is bound.
    PieceSquareTables();

    /// Binds the position and recomputes all sums from its board.
    void init(ChessPosition const& position);

    /// Follows a move that is made; the null move changes nothing.
    void make_move(Move const& move);
    /// Follows a move that is unmade.
    void unmake_move(Move const& move);

    /// Sum over all pieces of the board, White's view.
    pair_t get_score() const;
    /// White's pawns plus Black's (whose values are negative); the five others likewise.
    pair_t get_pawn_score() const { return both(1); }
    pair_t get_knight_score() const { return both(2); }
    pair_t get_bishop_score() const { return both(3); }
    pair_t get_rook_score() const { return both(4); }
    pair_t get_queen_score() const { return both(5); }
    pair_t get_king_score() const { return both(6); }

    /// Recomputes the sums from the board and compares them with the running ones (tolerance
    /// 0.01). The first difference goes to standard error and gives false. A debugging aid.
    bool verify_score() const;

    /// Running sum of a piece id, 0 to 15.
    pair_t const& score(int piece_id) const { return score_[static_cast<std::size_t>(piece_id)]; }
    /// Table values of a piece id, 0 to 15, on a square id, 0 to 63.
    float middle_game(int piece_id, int square_id) const {
        return value(piece_id, square_id).first;
    }
    float end_game(int piece_id, int square_id) const { return value(piece_id, square_id).second; }
    /// White's sum plus Black's of a type, 1 for pawns to 6 for kings; 7 and 8 are no types and
    /// give 0.
    pair_t both(std::size_t type) const {
        pair_t const& white = score_[type];
        pair_t const& black = score_[type + 8];
        return {white.first + black.first, white.second + black.second};
    }

 private:
    static constexpr std::size_t piece_ids = 16;
    /// By piece id, and a spare entry of 0.
    using sums_t = std::array<pair_t, piece_ids + 1>;
    /// Both values of a piece on a square lie side by side, so that one addition does for both.
    using row_t = std::array<pair_t, 64>;
    using rows_t = std::array<row_t, piece_ids>;

    sums_t board_sums() const;

    pair_t const& value(int piece_id, int square_id) const {
        return rows_[static_cast<std::size_t>(piece_id)][static_cast<std::size_t>(square_id)];
    }
    template <bool Plus>
    void change(int piece_id, int square_id);
    template <bool Make>
    void follow(Move const& move);
    /// All moves but the normal ones.
    template <bool Make>
    void follow_special(Move const& move);
    template <bool Make>
    void follow_promotion(Move const& move, int type);
    template <bool Make>
    void follow_castling(Move const& move);

    ChessPosition const* position_ = nullptr;
    alignas(16) sums_t score_{};
    alignas(64) rows_t rows_{};
};

template <bool Plus>
void PieceSquareTables::change(int piece_id, int square_id) {
    pair_t const& change = value(piece_id, square_id);
    pair_t& sum = score_[static_cast<std::size_t>(piece_id)];
    if constexpr (Plus) {
        sum = {sum.first + change.first, sum.second + change.second};
    } else {
        sum = {sum.first - change.first, sum.second - change.second};
    }
}

// One addition at a time, in this order, and unmaking keeps the order and turns each sign:
// the rounding of the running sums depends on it, and the search on the rounding.
template <bool Make>
inline void PieceSquareTables::follow(Move const& move) {
    if (move.code() != normal_move) {
        follow_special<Make>(move);
        return;
    }
    int const to = move.to_id();
    change<Make>(move.piece_id(), to);
    change<!Make>(move.piece_id(), move.from_id());
    change<!Make>(move.capture_id(), to);
}

inline void PieceSquareTables::make_move(Move const& move) {
    follow<true>(move);
}

inline void PieceSquareTables::unmake_move(Move const& move) {
    follow<false>(move);
}

}  // namespace orvelin
