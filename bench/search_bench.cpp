#include "bench_position.h"
#include "search/analysis.h"

namespace orvelin::bench {

namespace {

/// A whole search from empty tables; an item is a node.
void search_to_depth_9(benchmark::State& state) {
    BenchPosition bench(state);
    Analysis analysis(bench.position, common_tables());
    std::uint64_t nodes = 0;
    for ([[maybe_unused]] auto _ : state) {
        // To empty 128 MiB of table takes as long as a small search.
        state.PauseTiming();
        analysis.init(bench.position);
        analysis.clear();
        analysis.set_depth(9);
        state.ResumeTiming();
        analysis.iterative_search();
        nodes += analysis.get_node_count();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(nodes));
}
BENCHMARK(search_to_depth_9)->Apply(on_all_positions)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvelin::bench
