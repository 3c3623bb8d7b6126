#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace orvelin {
class ChessPosition;
class Move;
}  // namespace orvelin

namespace orvelin::test {

/// What a generated move says: from, to, code, check bit, piece id and capture id.
using plain_move_t = std::tuple<int, int, int, bool, int, int>;

plain_move_t plain(Move const& move);

/// Text of a plain move, for failure messages.
std::string text_of(plain_move_t const& move);

/// The rules of chess the slow way: pieces on 64 squares, no bit sets, no tables, no look-ahead.
/// Shares no code with the engine; only the numbering of squares, pieces and move codes is the
/// same.
class PlainBoard {
 public:
    explicit PlainBoard(ChessPosition const& position);

    /// Every legal move, by trying all squares for all pieces and keeping what leaves the king
    /// safe. Sorted.
    std::vector<plain_move_t> legal_moves() const;

    /// The side with this colour (1 White, 0 Black) is in check.
    bool in_check(int colour) const;

 private:
    int piece_of(int colour, int type) const { return colour == 1 ? type : type + 8; }
    bool holds(int square, int colour, int type) const;
    bool owned_by(int square, int colour) const;
    bool attacked(int square, int by_colour) const;
    bool clear_between(int a, int b) const;
    bool reaches(int from, int to) const;
    bool pawn_reaches(int from, int to) const;

    void try_move(int from, int to, int code, std::vector<plain_move_t>& moves) const;
    void try_all_codes(int from, int to, std::vector<plain_move_t>& moves) const;
    void try_castling(int file, std::vector<plain_move_t>& moves) const;
    int king_square(int colour) const;
    PlainBoard after(int from, int to, int code) const;

    std::array<int, 64> pieces_{};
    int side_ = 1;
    int rights_ = 0;
    int ep_ = 64;
};

}  // namespace orvelin::test
