#include "play/perft.h"

#include "generation/move_generator.h"
#include "platform/single_thread.h"
#include "position/move_buffer.h"
#include "position/move_list.h"

namespace orvelin::play {

namespace {

/// Below this depth a count takes no time in which it would have to be stopped.
constexpr int shortest_stopped = 4;

std::uint64_t count_leaves(ChessPosition& position, MoveGenerator& generator, int depth,
                           std::atomic<bool> const& stopped) {
    if (depth == 0) {
        return 1;
    }
    MoveBuffer buffer;
    MoveList list(buffer.data());
    generator.generate_moves(position, list);
    if (depth == 1) {
        return list.size();
    }
    std::uint64_t leaves = 0;
    for (Move const move : list) {
        if (depth >= shortest_stopped) {
            if constexpr (single_thread) {
                look_around();
            }
            if (stopped) {
                break;
            }
        }
        position.make_move(move);
        leaves += count_leaves(position, generator, depth - 1, stopped);
        position.unmake_move();
    }
    return leaves;
}

}  // namespace

std::uint64_t perft(ChessPosition& position, Tables const& tables, int depth) {
    MoveGenerator generator(tables);
    return count_leaves(position, generator, depth, false);
}

std::string perft_report(ChessPosition& position, Tables const& tables, int depth, bool chess960,
                         std::atomic<bool> const& stopped) {
    MoveGenerator generator(tables);
    MoveBuffer buffer;
    MoveList list(buffer.data());
    generator.generate_moves(position, list);
    std::string text;
    std::uint64_t sum = 0;
    for (Move const move : list) {
        position.make_move(move);
        std::uint64_t const leaves = count_leaves(position, generator, depth - 1, stopped);
        position.unmake_move();
        if (stopped) {
            return text;
        }
        text += move.algebraic(chess960) + ": " + std::to_string(leaves) + '\n';
        sum += leaves;
    }
    return text + "\nNodes searched: " + std::to_string(sum) + '\n';
}

}  // namespace orvelin::play
