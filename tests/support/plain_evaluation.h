#pragma once

#include <array>
#include <bitset>
#include <cstddef>

#include "evaluation/piece_square_tables.h"
#include "evaluation/weight.h"

namespace orvelin {
class ChessPosition;
class Move;
}  // namespace orvelin

namespace orvelin::test {

/// The static evaluation the slow way: squares looked at one by one, no table, no cache, nothing
/// kept from one call to the next but the piece-square sums. Of the engine it takes the weights,
/// the values of the squares and the value of a count of pieces. One king a side; without the
/// endgame functions, and without the record that a board without pawns may find in a pawn table.
class PlainEvaluation {
 public:
    using set_t = std::bitset<64>;
    using terms_t = std::array<float, term::count>;

    /// The sums are those of the board as it stands.
    explicit PlainEvaluation(ChessPosition const& position);

    /// Follows a move in the piece-square sums, as the engine's evaluation does.
    void make_move(Move const& move) { follow(move, 1.0F); }
    void unmake_move(Move const& move) { follow(move, -1.0F); }

    /// Computes all terms of the position as it stands; the score for the side to move.
    int score();
    /// Terms of the last score.
    terms_t const& terms() const { return terms_; }

 private:
    struct side_t {
        set_t pawns, near, field, attacked, queen_safe;
        /// Attacks by type, from the pawns (1) to the queens (5).
        std::array<set_t, 6> attacks;
        std::array<int, 6> mobility{};
    };

    void follow(Move const& move, float sign);
    void change(int piece, int square, float sign);
    void read_board();
    set_t pieces(int colour, int type) const;
    set_t all(int colour) const;
    set_t occupied() const { return all(0) | all(1); }
    int king(int colour) const;
    set_t reached(int type, int square, set_t const& occupied) const;
    set_t closed_files(int colour) const;

    void find_phase();
    void find_maps(int colour);
    void find_mobility(int colour, int type);
    void find_piece_terms();
    void find_king_terms();
    void find_pawn_terms();
    int pinned(int colour) const;
    int development(int colour) const;
    int locked_up_rooks(int colour) const;
    int hanging(int colour) const;
    int shield(int colour) const;
    int attack_on_king(int colour) const;
    set_t weak(int colour) const;
    set_t passed(int colour) const;
    int passers(int colour) const;
    int activity(int colour) const;

    ChessPosition const& position_;
    PieceSquareTables const values_;
    std::array<PieceSquareTables::pair_t, 16> sums_{};
    Weight const weights_;
    std::array<int, 64> board_{};
    std::array<side_t, 2> sides_{};
    terms_t terms_{};
    float mg_phase_ = 1.0F;
    float eg_phase_ = 0.0F;
};

}  // namespace orvelin::test
