#include "bench_position.h"

namespace orvelin::bench {

namespace {

void create_movetable(benchmark::State& state) {
    BenchPosition bench(state);
    movetable_t table;
    for ([[maybe_unused]] auto _ : state) {
        bench.generator.create_movetable(bench.position, table);
        benchmark::DoNotOptimize(table);
    }
}
BENCHMARK(create_movetable)->Apply(on_all_positions);

/// Moves from a table that is already there; an item is a move.
template <auto Serialize>
void serialize(benchmark::State& state) {
    BenchPosition bench(state);
    movetable_t table;
    bench.generator.create_movetable(bench.position, table);
    MoveList list;
    for ([[maybe_unused]] auto _ : state) {
        (bench.generator.*Serialize)(bench.position, table, list);
        benchmark::DoNotOptimize(list.size());
    }
    count_items(state, list.size());
}
BENCHMARK(serialize<&MoveGenerator::serialize_captures>)
    ->Name("serialize_captures")
    ->Apply(on_all_positions);
BENCHMARK(serialize<&MoveGenerator::serialize_moves>)
    ->Name("serialize_moves")
    ->Apply(on_all_positions);

/// Table and all moves in one go.
void generate_moves(benchmark::State& state) {
    BenchPosition bench(state);
    MoveList list;
    for ([[maybe_unused]] auto _ : state) {
        bench.generator.generate_moves(bench.position, list);
        benchmark::DoNotOptimize(list.size());
    }
    count_items(state, list.size());
}
BENCHMARK(generate_moves)->Apply(on_all_positions);

}  // namespace

}  // namespace orvelin::bench
