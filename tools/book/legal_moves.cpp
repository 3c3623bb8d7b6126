#include "book/legal_moves.h"

#include <algorithm>

#include "generation/move_generator.h"
#include "position/move_list.h"

namespace orvelin::tools {

bool is_legal(MoveGenerator& generator, ChessPosition const& position, Move move) {
    MoveList list;
    generator.generate_moves(position, list);
    return std::any_of(list.begin(), list.end(), [&](Move legal) {
        legal.check(move.check());
        return legal == move;
    });
}

std::optional<Move> find_legal_move(MoveGenerator& generator, ChessPosition const& position,
                                    std::string const& text) {
    MoveList list;
    generator.generate_moves(position, list);
    // The king taking his rook comes first: from e1 to g1 he may find it there in Chess960.
    for (bool const king_takes_rook : {true, false}) {
        Move const* const move = std::find_if(list.begin(), list.end(), [&](Move const& legal) {
            return legal.algebraic(king_takes_rook) == text;
        });
        if (move != list.end()) {
            return *move;
        }
    }
    return std::nullopt;
}

}  // namespace orvelin::tools
