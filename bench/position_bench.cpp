#include <benchmark/benchmark.h>

#include "bench_position.h"
#include "evaluation/evaluation.h"
#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "position/move_list.h"

namespace orvelin::bench {

namespace {

void generate_moves(benchmark::State& state) {
    ChessPosition position(shared_tables());
    position.fen(positions[static_cast<std::size_t>(state.range(0))]);
    MoveGenerator generator(shared_tables());
    MoveList list;
    for (auto _ : state) {
        generator.generate_moves(position, list);
        benchmark::DoNotOptimize(list.size());
    }
}
BENCHMARK(generate_moves)->DenseRange(0, 2);

void make_and_unmake(benchmark::State& state) {
    ChessPosition position(shared_tables());
    position.fen(positions[static_cast<std::size_t>(state.range(0))]);
    MoveGenerator generator(shared_tables());
    MoveList list;
    generator.generate_moves(position, list);
    for (auto _ : state) {
        for (Move const& move : list) {
            position.make_move(move);
            position.unmake_move();
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(list.size()));
}
BENCHMARK(make_and_unmake)->DenseRange(0, 2);

void static_eval(benchmark::State& state) {
    ChessPosition position(shared_tables());
    position.fen(positions[static_cast<std::size_t>(state.range(0))]);
    Evaluation evaluation(position, shared_tables());
    for (auto _ : state) {
        benchmark::DoNotOptimize(evaluation.static_eval());
    }
}
BENCHMARK(static_eval)->DenseRange(0, 2);

}  // namespace

}  // namespace orvelin::bench
