#include "play/perft.h"

#include "generation/move_generator.h"
#include "position/move_buffer.h"
#include "position/move_list.h"

namespace orvelin::play {

namespace {

std::uint64_t count_leaves(ChessPosition& position, MoveGenerator& generator, int depth) {
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
        position.make_move(move);
        leaves += count_leaves(position, generator, depth - 1);
        position.unmake_move();
    }
    return leaves;
}

}  // namespace

std::uint64_t perft(ChessPosition& position, Tables const& tables, int depth) {
    MoveGenerator generator(tables);
    return count_leaves(position, generator, depth);
}

std::string perft_report(ChessPosition& position, Tables const& tables, int depth, bool chess960) {
    MoveGenerator generator(tables);
    MoveBuffer buffer;
    MoveList list(buffer.data());
    generator.generate_moves(position, list);
    std::string text;
    std::uint64_t sum = 0;
    for (Move const move : list) {
        position.make_move(move);
        std::uint64_t const leaves = count_leaves(position, generator, depth - 1);
        position.unmake_move();
        text += move.algebraic(chess960) + ": " + std::to_string(leaves) + '\n';
        sum += leaves;
    }
    return text + "\nNodes searched: " + std::to_string(sum) + '\n';
}

}  // namespace orvelin::play
