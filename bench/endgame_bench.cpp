#include <benchmark/benchmark.h>

#include "endgame/egt4_pieces.h"
#include "generation/attacks.h"
#include "position/piece.h"

namespace orvelin {

namespace {

/// Builds a whole table.
void build_table(benchmark::State& state) {
    Attacks const attacks;
    for ([[maybe_unused]] auto _ : state) {
        Egt4Pieces table(attacks, static_cast<piece_t>(state.range(0)),
                         static_cast<piece_t>(state.range(1)));
        while (!table.ready()) {
            table.create();
        }
        state.SetLabel(table.name());
    }
}

BENCHMARK(build_table)
    ->Args({white_knight, white_bishop})
    ->Args({white_queen, black_rook})
    ->Args({white_rook, black_knight})
    ->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvelin
