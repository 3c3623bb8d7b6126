#include "bench_position.h"
#include "evaluation/evaluation.h"
#include "evaluation/pht_record.h"

namespace orvelin::bench {

namespace {

/// Runs one step of the evaluation again and again. The steps before it have run once, so that it
/// finds what it builds on; the pawn records come from their table, as most do in a search.
template <auto... Steps>
void evaluation_steps(benchmark::State& state) {
    BenchPosition bench(state);
    Evaluation evaluation(bench.position, common_tables());
    evaluation.static_eval();
    for ([[maybe_unused]] auto _ : state) {
        (static_cast<void>((evaluation.*Steps)()), ...);
        benchmark::ClobberMemory();
    }
}

void evaluate_phase_and_material(benchmark::State& state) {
    evaluation_steps<&Evaluation::compute_phase, &Evaluation::compute_material>(state);
}
BENCHMARK(evaluate_phase_and_material)->Apply(on_all_positions);

void evaluate_mobility(benchmark::State& state) {
    evaluation_steps<&Evaluation::compute_mobility>(state);
}
BENCHMARK(evaluate_mobility)->Apply(on_all_positions);

void evaluate_piece_squares(benchmark::State& state) {
    evaluation_steps<&Evaluation::compute_pst>(state);
}
BENCHMARK(evaluate_piece_squares)->Apply(on_all_positions);

void evaluate_pawns(benchmark::State& state) {
    evaluation_steps<&Evaluation::compute_pawn_eval>(state);
}
BENCHMARK(evaluate_pawns)->Apply(on_all_positions);

void evaluate_kings(benchmark::State& state) {
    evaluation_steps<&Evaluation::compute_king_safety, &Evaluation::compute_king_activity>(state);
}
BENCHMARK(evaluate_kings)->Apply(on_all_positions);

void evaluate_all_else(benchmark::State& state) {
    evaluation_steps<&Evaluation::compute_space, &Evaluation::compute_development,
                     &Evaluation::compute_pinned_pieces,
                     &Evaluation::compute_opposite_colored_bishops>(state);
}
BENCHMARK(evaluate_all_else)->Apply(on_all_positions);

/// The whole evaluation. The blend of the terms is no function of its own that can be called: it
/// is what this takes beyond the steps.
void static_eval(benchmark::State& state) {
    BenchPosition bench(state);
    Evaluation evaluation(bench.position, common_tables());
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(evaluation.static_eval());
    }
}
BENCHMARK(static_eval)->Apply(on_all_positions);

/// What a pawn structure costs that is not in the table.
void new_pawn_record(benchmark::State& state) {
    BenchPosition bench(state);
    PHTrecord record;
    for ([[maybe_unused]] auto _ : state) {
        record.set_pawns(bench.position.white_pawn(), bench.position.black_pawn());
        benchmark::DoNotOptimize(record);
    }
}
BENCHMARK(new_pawn_record)->Apply(on_all_positions);

/// Follows every legal move with the piece-square sums and goes back; an item is a move.
void follow_piece_squares(benchmark::State& state) {
    BenchPosition bench(state);
    Evaluation evaluation(bench.position, common_tables());
    for ([[maybe_unused]] auto _ : state) {
        for (Move const& move : bench.moves) {
            evaluation.make_move(move);
            evaluation.unmake_move(move);
        }
        benchmark::ClobberMemory();
    }
    count_items(state, bench.moves.size());
}
BENCHMARK(follow_piece_squares)->Apply(on_all_positions);

}  // namespace

}  // namespace orvelin::bench
