#include "perft/leaf_counter.h"

#include "position/chess_position.h"
#include "position/move_buffer.h"
#include "position/move_list.h"

namespace orvelin::tools {

std::uint64_t LeafCounter::count(ChessPosition& position, int depth) {
    if (depth == 0) {
        return 1;
    }
    MoveBuffer storage;
    MoveList list(storage.data());
    generator_.generate_moves(position, list);
    if (depth == 1 && !makes_last_moves()) {
        return list.size();
    }
    std::uint64_t leaves = 0;
    for (Move const& move : list) {
        leaves += count_behind(position, move, depth - 1);
    }
    return leaves;
}

std::uint64_t LeafCounter::count_behind(ChessPosition& position, Move const& move, int depth) {
    position.make_move(move);
    std::uint64_t const leaves = count(position, depth);
    position.unmake_move();
    return leaves;
}

std::uint64_t LeafCounter::divide(
    ChessPosition& position, int depth, std::function<void(root_move_t const&)> const& before,
    std::function<void(root_move_t const&, std::uint64_t)> const& after) {
    if (depth == 0) {
        return 1;
    }
    MoveList list;
    generator_.generate_moves(position, list);
    std::uint64_t total = 0;
    root_move_t root{Move(), 0, static_cast<std::size_t>(list.size())};
    for (Move const& move : list) {
        root.move = move;
        before(root);
        std::uint64_t const leaves = count_behind(position, move, depth - 1);
        after(root, leaves);
        total += leaves;
        ++root.index;
    }
    return total;
}

}  // namespace orvelin::tools
