#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace orvelin::play {

/// The placement of a FEN text, read strictly, so that what is wrong with it can be named before
/// it gets to a position, which takes anything. Squares have ids 0 to 63 from a1 and b1 to h8;
/// pieces are their FEN letters.
class FenBoard {
 public:
    static constexpr char empty = ' ';

    /// No piece anywhere.
    FenBoard() { squares_.fill(empty); }

    /// Reads field 1. The reason why it is none, with the place, or nothing.
    std::string read(std::string_view placement);

    /// Why no game leads to these pieces, whoever is to move, or nothing: kings, pawns and numbers
    /// are looked at.
    std::string find_fault() const;

    /// The piece on a square 0 to 63.
    char at(int square) const { return squares_[static_cast<std::size_t>(square)]; }
    /// Whether a piece of the side attacks the square.
    bool attacked(int square, bool by_white) const;
    /// The square of the king, -1 without one.
    int king(bool white) const;
    /// The square of the rook that a letter of the castling field stands for: `K` and `Q` for the
    /// outermost rook on that side of the king, a file's letter for the rook on that file of the
    /// first rank. -1 when there is none.
    int castling_rook(char letter) const;

 private:
    bool reached_by_step(int square, char piece, int files, int ranks) const;
    bool reached_by_ride(int square, bool by_white, int files, int ranks) const;
    std::string find_fault_of_kings() const;
    std::string find_fault_of_pawns() const;
    std::string find_fault_of_numbers() const;

    std::array<char, 64> squares_;
};

/// "e4" for its id.
std::string square_name(int square);

/// The letter of a piece in the case of the side.
char piece_letter(char small_letter, bool white);

}  // namespace orvelin::play
