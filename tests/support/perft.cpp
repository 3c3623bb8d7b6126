#include "support/perft.h"

namespace orvelin::test {

std::map<std::string, std::uint64_t> Perft::divide(ChessPosition& position, int depth,
                                                   bool chess960) {
    std::map<std::string, std::uint64_t> counts;
    counter_.divide(
        position, depth, [](tools::root_move_t const&) {},
        [&](tools::root_move_t const& root, std::uint64_t leaves) {
            counts[root.move.algebraic(chess960)] = leaves;
        });
    return counts;
}

}  // namespace orvelin::test
