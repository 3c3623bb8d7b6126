#include "support/perft.h"

#include "position/chess_position.h"

namespace orvelin::test {

std::uint64_t Perft::count(ChessPosition& position, int depth) {
    if (depth == 0) return 1;
    std::array<Move, max_moves> storage;
    MoveList list(storage.data());
    generator_.generate_moves(position, list);
    if (depth == 1) return list.size();
    std::uint64_t leaves = 0;
    for (Move const& move : list) {
        position.make_move(move);
        leaves += count(position, depth - 1);
        position.unmake_move();
    }
    return leaves;
}

std::map<std::string, std::uint64_t> Perft::divide(ChessPosition& position, int depth,
                                                   bool chess960) {
    MoveList list;
    generator_.generate_moves(position, list);
    std::map<std::string, std::uint64_t> counts;
    for (Move const& move : list) {
        position.make_move(move);
        counts[move.algebraic(chess960)] = count(position, depth - 1);
        position.unmake_move();
    }
    return counts;
}

}  // namespace orvelin::test
