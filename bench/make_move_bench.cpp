#include "bench_position.h"

namespace orvelin::bench {

namespace {

/// Makes and takes back every legal move; an item is one of them.
void make_and_unmake(benchmark::State& state) {
    BenchPosition bench(state);
    for ([[maybe_unused]] auto _ : state) {
        for (Move const& move : bench.moves) {
            bench.position.make_move(move);
            bench.position.unmake_move();
        }
    }
    count_items(state, bench.moves.size());
}
BENCHMARK(make_and_unmake)->Apply(on_all_positions);

/// The pieces alone, as the static exchange moves them.
void force_and_undo(benchmark::State& state) {
    BenchPosition bench(state);
    for ([[maybe_unused]] auto _ : state) {
        for (Move const& move : bench.moves) {
            bench.position.force_move(move);
            bench.position.undo_forced_move(move);
        }
        benchmark::ClobberMemory();
    }
    count_items(state, bench.moves.size());
}
BENCHMARK(force_and_undo)->Apply(on_all_positions);

}  // namespace

}  // namespace orvelin::bench
