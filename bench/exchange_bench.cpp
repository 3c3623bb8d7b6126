#include "bench_position.h"
#include "search/analysis.h"

namespace orvelin::bench {

namespace {

/// The static exchange value of every legal move but castling; an item is one of them.
void static_exchange(benchmark::State& state) {
    BenchPosition bench(state);
    Analysis analysis(bench.position, common_tables());
    std::uint64_t moves = 0;
    for (Move const& move : bench.moves) {
        moves += move.code() == castling ? 0 : 1;
    }
    for ([[maybe_unused]] auto _ : state) {
        for (Move const& move : bench.moves) {
            if (move.code() != castling) {
                benchmark::DoNotOptimize(analysis.see(move));
            }
        }
    }
    count_items(state, moves);
}
BENCHMARK(static_exchange)->Apply(on_all_positions);

/// The same for captures alone, which is what the search mostly asks for.
void static_exchange_of_captures(benchmark::State& state) {
    BenchPosition bench(state);
    Analysis analysis(bench.position, common_tables());
    movetable_t table;
    bench.generator.create_movetable(bench.position, table);
    MoveList captures;
    bench.generator.serialize_captures(bench.position, table, captures);
    for ([[maybe_unused]] auto _ : state) {
        for (Move const& move : captures) {
            benchmark::DoNotOptimize(analysis.see(move));
        }
    }
    count_items(state, captures.size());
}
// The positions that have captures.
BENCHMARK(static_exchange_of_captures)->ArgName("position")->Arg(1)->Arg(2)->Arg(3)->Arg(5)->Arg(7);

}  // namespace

}  // namespace orvelin::bench
