#include "play/bench.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <new>

#include "play/searcher.h"
#include "search/bench_positions.h"

namespace orvelin::play {

std::string bench(Searcher& searcher, int depth, int hash_megabytes,
                  std::atomic<bool> const& stopped) {
    Analysis& analysis = searcher.analysis();
    ChessPosition& position = searcher.position();
    ChessPosition const kept = position;
    std::string text;
    std::uint64_t nodes = 0;
    if (!searcher.set_hash(bench_hash_megabytes)) {
        throw std::bad_alloc();
    }
    // Without what lies between the searches: at small depths that takes longer than they do.
    std::chrono::duration<double> time{0};
    for (char const* const fen : bench_positions) {
        searcher.forget();
        position.fen(fen);
        analysis.init(position);
        analysis.reset();
        analysis.reset_max_nodes();
        analysis.set_multipv(1);
        analysis.set_infinite(true);
        analysis.set_depth(depth);
        auto const start = std::chrono::steady_clock::now();
        analysis.iterative_search([&](int, int, int) {
            // A stop that came before the search began was forgotten with what was before.
            if (stopped) {
                analysis.set_action(stop_action);
            }
        });
        time += std::chrono::steady_clock::now() - start;
        if (stopped) {
            break;
        }
        nodes += analysis.get_node_count();
        text += std::string(fen) + "  nodes " + std::to_string(analysis.get_node_count()) +
                "  bestmove " + analysis.best_move().algebraic(false) + '\n';
    }
    searcher.forget();
    position = kept;
    searcher.set_hash(hash_megabytes);
    if (stopped) {
        return text;
    }
    return text + "Nodes searched: " + std::to_string(nodes) + "\nNodes/second: " +
           std::to_string(static_cast<std::uint64_t>(static_cast<double>(nodes) /
                                                     std::max(time.count(), 1e-6))) +
           '\n';
}

}  // namespace orvelin::play
