#pragma once

#include <array>
#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>

#include "generation/move_generator.h"
#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/move_list.h"

namespace orvelin::bench {

/// A position and the name under which its figures are printed.
struct named_position_t {
    char const* name;
    char const* fen;
};

/// What makes one kind of work dear is cheap for another: many moves, pins, checks, few pieces.
inline constexpr std::array<named_position_t, 8> positions{{
    {"start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
    {"tactical", "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"},
    {"quiet", "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10"},
    {"black", "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N2N2/PP2BPPP/R1BQ1RK1 b - - 0 9"},
    {"check", "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1"},
    {"queens", "3q1rk1/p4pp1/1p2p2p/3rQ3/3P4/P4N2/1P3PPP/2R3K1 w - - 0 24"},
    {"pawns", "8/pp3pk1/2p3pp/4p3/P1P1P3/1P3PP1/5K1P/8 w - - 0 36"},
    {"rooks", "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1"},
}};

/// Tables built once for all benchmarks.
inline Tables& common_tables() {
    static Tables tables;
    return tables;
}

/// Runs a benchmark on each of the positions.
inline void on_all_positions(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("position")->DenseRange(0, static_cast<int>(positions.size()) - 1);
}

/// The position that the argument of the benchmark names, with its legal moves.
class BenchPosition {
 public:
    explicit BenchPosition(benchmark::State& state)
        : position(common_tables()), generator(common_tables()) {
        named_position_t const& chosen = positions[static_cast<std::size_t>(state.range(0))];
        state.SetLabel(chosen.name);
        position.fen(chosen.fen);
        // Leaves the working state of the generator filled, as its finer functions want it.
        generator.generate_moves(position, moves);
    }

    ChessPosition position;
    MoveGenerator generator;
    MoveList moves;
};

/// Counts so many items for each iteration, so that their rate is printed too.
inline void count_items(benchmark::State& state, std::uint64_t items) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(items));
}

}  // namespace orvelin::bench
