#include "bench_position.h"
#include "position/side.h"

namespace orvelin::bench {

namespace {

template <int Side>
void set_checkstatus_of_all(BenchPosition& bench) {
    for (Move& move : bench.moves) {
        bench.generator.set_checkstatus<Side>(bench.position, move);
    }
}

/// Whether a move gives check, for all legal moves; an item is one of them.
void set_checkstatus(benchmark::State& state) {
    BenchPosition bench(state);
    bool const white = bench.position.white_to_move();
    for ([[maybe_unused]] auto _ : state) {
        if (white) {
            set_checkstatus_of_all<side::white>(bench);
        } else {
            set_checkstatus_of_all<side::black>(bench);
        }
        benchmark::ClobberMemory();
    }
    count_items(state, bench.moves.size());
}
BENCHMARK(set_checkstatus)->Apply(on_all_positions);

/// Whether the side to move is in check, from the board.
void look_for_check(benchmark::State& state) {
    BenchPosition bench(state);
    for ([[maybe_unused]] auto _ : state) {
        bench.position.look_for_check();
        benchmark::DoNotOptimize(bench.position.check());
    }
}
BENCHMARK(look_for_check)->Apply(on_all_positions);

/// Pinned and discovering pieces and the squares for queen checks, as every made move works them
/// out.
void find_pinned_pieces(benchmark::State& state) {
    BenchPosition bench(state);
    for ([[maybe_unused]] auto _ : state) {
        bench.position.find_pinned_pieces();
        benchmark::ClobberMemory();
    }
}
BENCHMARK(find_pinned_pieces)->Apply(on_all_positions);

}  // namespace

}  // namespace orvelin::bench
