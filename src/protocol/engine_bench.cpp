#include <cmath>
#include <cstdint>
#include <iostream>
#include <limits>

#include "protocol/engine.h"
#include "search/bench_positions.h"
#include "time/timer.h"

namespace orvelin {

namespace {

constexpr int bench_depth = 12;
constexpr int bench_clock = 6000000;

/// Nodes a second, rounded. What no `int` can hold, as after no time at all, gives the smallest
/// `int`, which is what the processor's own conversion makes of it.
int rounded_rate(std::uint64_t nodes, std::uint64_t milliseconds) {
    double const rate =
        std::round(static_cast<double>(nodes) * 1000.0 / static_cast<double>(milliseconds));
    if (!(rate <= static_cast<double>(std::numeric_limits<int>::max()))) {
        return std::numeric_limits<int>::min();
    }
    return static_cast<int>(rate);
}

}  // namespace

// Runs wholly on the calling thread and writes straight to the standard output; the control words
// of the analysis thread stay as they are.
// Table and board stay as the last search left them (oddity 18).
bool Engine::command_bench(std::istringstream&) {
    gate_.require_no_search();
    std::uint64_t total_nodes = 0;
    std::uint64_t total_milliseconds = 0;
    for (char const* const fen : bench_positions) {
        prepare_bench(fen);
        // Flushed before the search begins: the result follows on the same line.
        std::cout << "position: " << position_.fen() << '\t' << std::flush;

        Timer timer;
        timer.start();
        analysis_.iterative_search();
        timer.stop();

        std::uint64_t const milliseconds = timer.total_time().milliseconds();
        std::uint64_t const nodes = analysis_.get_node_count();
        std::uint64_t const nps = milliseconds > 0 ? nodes * 1000 / milliseconds : 0;
        std::cout << "  depth=" << bench_depth << "  nps=" << nps << "  nodes=" << nodes;
        std::cout.precision(4);
        std::cout << "  time=" << static_cast<double>(milliseconds) / 1000;
        std::cout.precision(2);
        std::cout << "  ebf=" << analysis_.get_ebf() << "  eval=" << analysis_.eval()
                  << "  bestmove " << analysis_.best_move().algebraic(false) << std::endl;
        total_nodes += nodes;
        total_milliseconds += milliseconds;
    }
    std::cout << "-------------------------------------\n"
              << "nodes: \t" << total_nodes << '\n'
              << "time: \t" << total_milliseconds << '\n'
              << "nps:  \t" << rounded_rate(total_nodes, total_milliseconds) << '\n'
              << "-------------------------------------" << std::endl;
    return true;
}

// Clocks and moves to go put the time limits out of reach, so that the depth alone decides.
void Engine::prepare_bench(std::string const& fen) {
    position_.fen(fen);
    analysis_.init(position_);
    analysis_.clear_hash();
    analysis_.clear_killer();
    analysis_.clear_history();
    analysis_.reset();
    analysis_.set_hash_size(bench_hash_megabytes);
    analysis_.set_wtime(bench_clock);
    analysis_.set_btime(bench_clock);
    analysis_.set_movestogo(1);
    analysis_.set_depth(bench_depth);
}

}  // namespace orvelin
