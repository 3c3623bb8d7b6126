#include <benchmark/benchmark.h>

#include "bench_position.h"
#include "position/chess_position.h"
#include "search/analysis.h"

namespace orvelin::bench {

namespace {

/// A whole search from empty tables; the counter is nodes a second.
void search_to_depth_8(benchmark::State& state) {
    ChessPosition position(shared_tables());
    position.fen(positions[static_cast<std::size_t>(state.range(0))]);
    Analysis analysis(position, shared_tables());
    std::uint64_t nodes = 0;
    for (auto _ : state) {
        analysis.init(position);
        analysis.clear();
        analysis.set_depth(8);
        analysis.iterative_search();
        nodes += analysis.get_node_count();
    }
    state.counters["nodes"] =
        benchmark::Counter(static_cast<double>(nodes), benchmark::Counter::kIsRate);
}
BENCHMARK(search_to_depth_8)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvelin::bench
