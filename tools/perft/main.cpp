// orvelin-perft: counts the leaves of the legal game tree.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>

#include "generation/tables.h"
#include "perft/checked_leaf_counter.h"
#include "perft/leaf_counter.h"
#include "position/chess_position.h"
#include "support/position_argument.h"
#include "support/progress.h"
#include "support/tool_main.h"

namespace {

using namespace orvelin;
using namespace orvelin::tools;

constexpr int max_depth = 100;

struct arguments_t {
    int depth = 0;
    std::string fen = start_fen;
    bool divide = false;
    bool check = false;
    bool chess960 = false;
};

void add_arguments(CLI::App& app, arguments_t& arguments) {
    app.add_option("DEPTH", arguments.depth, "Plies to the leaves; 0 gives 1")
        ->required()
        ->check(CLI::Range(0, max_depth));
    app.add_option("--fen", arguments.fen,
                   "Position at the root; the start position when not given");
    app.add_flag("--divide", arguments.divide,
                 "Print a line for each root move with the leaves behind it, then their sum");
    app.add_flag("--check", arguments.check,
                 "Hold each move of the tree against the board: legality, check bit and that "
                 "taking it back restores the position; slow");
    app.add_flag("--chess960", arguments.chess960,
                 "Write castling as the king taking his own rook");
}

void print_speed(std::uint64_t leaves, std::chrono::duration<double> time) {
    // A clock too coarse for the smallest trees must not make the speed infinite.
    double const seconds = std::max(time.count(), 1e-6);
    std::cerr << std::fixed << std::setprecision(3) << seconds << " s, " << std::setprecision(0)
              << static_cast<double>(leaves) / seconds << " leaves per second" << std::endl;
}

int count_leaves(arguments_t const& arguments) {
    auto const tables = std::make_unique<Tables>();
    ChessPosition position(*tables);
    position.set_chess960(arguments.chess960);
    set_position(position, arguments.fen);
    std::unique_ptr<LeafCounter> const counter =
        arguments.check ? std::make_unique<CheckedLeafCounter>(*tables, arguments.chess960)
                        : std::make_unique<LeafCounter>(*tables);

    Progress progress;
    auto const start = std::chrono::steady_clock::now();
    std::uint64_t const leaves = counter->divide(
        position, arguments.depth,
        [&](root_move_t const& root) {
            progress.show("root move " + std::to_string(root.index + 1) + " of " +
                          std::to_string(root.count) + ": " +
                          root.move.algebraic(arguments.chess960));
        },
        [&](root_move_t const& root, std::uint64_t behind) {
            if (!arguments.divide) {
                return;
            }
            progress.clear();
            std::cout << root.move.algebraic(arguments.chess960) << ": " << behind << '\n';
        });
    auto const end = std::chrono::steady_clock::now();
    progress.clear();
    std::cout << leaves << '\n' << std::flush;
    print_speed(leaves, end - start);
    return exit_success;
}

std::function<int()> set_up(CLI::App& app) {
    auto const arguments = std::make_shared<arguments_t>();
    add_arguments(app, *arguments);
    return [arguments] { return count_leaves(*arguments); };
}

}  // namespace

int main(int argc, char** argv) {
    return tool_main("orvelin-perft", "Counts the leaves of the legal game tree of a position.",
                     set_up, argc, argv);
}
