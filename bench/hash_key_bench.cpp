#include "bench_position.h"
#include "position/hasher.h"

namespace orvelin::bench {

namespace {

/// The position key with rights, en passant square and side to move.
void position_key(benchmark::State& state) {
    BenchPosition bench(state);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(bench.position.get_hash());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(position_key)->Apply(on_all_positions);

/// Follows every legal move with both keys and goes back; an item is a move.
void follow_keys(benchmark::State& state) {
    BenchPosition bench(state);
    Hasher<1> hasher(common_tables());
    hasher.init(&bench.position);
    for ([[maybe_unused]] auto _ : state) {
        for (Move const& move : bench.moves) {
            hasher.make_move(move);
            benchmark::DoNotOptimize(hasher.pawn_hash());
            hasher.pop();
        }
    }
    count_items(state, bench.moves.size());
}
BENCHMARK(follow_keys)->Apply(on_all_positions);

/// Both keys from the pieces, as after reading a FEN.
void keys_anew(benchmark::State& state) {
    BenchPosition bench(state);
    Hasher<1> hasher(common_tables());
    for ([[maybe_unused]] auto _ : state) {
        hasher.init(&bench.position);
        benchmark::DoNotOptimize(hasher.pawn_hash());
    }
}
BENCHMARK(keys_anew)->Apply(on_all_positions);

}  // namespace

}  // namespace orvelin::bench
