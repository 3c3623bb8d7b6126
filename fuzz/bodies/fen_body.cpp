#include <stdexcept>
#include <string>

#include "bodies/fuzz_bodies.h"
#include "bodies/position_queries.h"
#include "bodies/require.h"
#include "position/chess_position.h"

namespace orvelin::fuzz {

namespace {

/// The pieces on the squares: the first field of the FEN text.
std::string placement(ChessPosition const& position) {
    std::string const fen = position.fen();
    return fen.substr(0, fen.find(' '));
}

}  // namespace

void fuzz_fen(std::string_view input) {
    ChessPosition position(small_tables());
    try {
        position.fen(std::string(input));
    } catch (std::logic_error const&) {
        // By design: a character of the placement that is no piece.
        return;
    }
    std::string const pieces = placement(position);
    ChessPosition other(small_tables());
    other.fen(position.fen());
    require(placement(other) == pieces, "the pieces come back from the text that was written");
    other.flip();
    other.flip();
    require(placement(other) == pieces, "two flips bring the pieces back");
    other.flop();
    other.flop();
    require(placement(other) == pieces, "two flops bring the pieces back");

    search_a_little(position);
    query(position);
    other.flip();
    query(other);
    other.fen(std::string(input));
    other.flop();
    query(other);
}

}  // namespace orvelin::fuzz
