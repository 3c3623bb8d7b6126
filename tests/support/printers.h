#pragma once

#include <iosfwd>

namespace orvelin {

class BitBoard;
class Move;
class MoveList;
class Piece;
class Square;

// What a failed expectation shows of the values of a position: squares and moves, not bytes. Every
// test file is built with this header, so that one type is printed in one way everywhere.

/// "e4", "no_square", or the id of what is no square at all.
void PrintTo(Square const& square, std::ostream* out);
/// "white knight", or the id of what is no piece at all.
void PrintTo(Piece const& piece, std::ostream* out);
/// The squares in the order of their ids: "{a1 h8}".
void PrintTo(BitBoard const& set, std::ostream* out);
/// The move as text, castling as the king taking his rook, and the parts that the text lacks.
void PrintTo(Move const& move, std::ostream* out);
/// The number of moves and each of them.
void PrintTo(MoveList const& list, std::ostream* out);

}  // namespace orvelin
