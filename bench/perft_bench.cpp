#include "bench_position.h"
#include "perft/leaf_counter.h"

namespace orvelin::bench {

namespace {

/// Leaves of the legal game tree; an item is a leaf.
void perft(benchmark::State& state) {
    BenchPosition bench(state);
    tools::LeafCounter counter(common_tables());
    std::uint64_t leaves = 0;
    for ([[maybe_unused]] auto _ : state) {
        leaves = counter.count(bench.position, 4);
    }
    count_items(state, leaves);
}
BENCHMARK(perft)->Apply(on_all_positions)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvelin::bench
