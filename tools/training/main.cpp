// orvelin-training: searches what the profile of the build is counted on.
//
//     orvelin-training < tools/training_positions.txt
//
// All of it runs on one thread, and no clock is asked about anything: so the counts, and the
// programs that are arranged by them, are the same each time. A program that waits for its input,
// or for a search on another thread, would count how long it waited.

#include <cstdlib>
#include <iostream>
#include <string>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "search/analysis.h"
#include "search/bench_positions.h"

namespace {

using namespace orvelin;

constexpr int bench_depth = 12;

/// Searches a position on the table that the last search left, as in a game.
void search(Analysis& analysis, ChessPosition& position, std::string const& fen, int depth) {
    position.fen(fen);
    analysis.init(position);
    analysis.reset();
    analysis.reset_max_nodes();
    analysis.set_infinite(true);
    analysis.set_depth(depth);
    analysis.iterative_search();
}

/// Lines of a depth and a FEN; `#` begins a comment.
bool search_lines(Analysis& analysis, ChessPosition& position) {
    std::string word;
    int searched = 0;
    while (std::cin >> word) {
        std::string rest;
        std::getline(std::cin >> std::ws, rest);
        if (word[0] != '#') {
            search(analysis, position, rest, std::stoi(word));
            ++searched;
        }
    }
    return searched > 0;
}

}  // namespace

int main() {
    Tables tables;
    ChessPosition position(tables);
    position.newgame();
    Analysis analysis(position, tables);
    if (!search_lines(analysis, position)) {
        std::cerr << "orvelin-training: there is no position to search\n";
        return EXIT_FAILURE;
    }
    analysis.set_hash_size(bench_hash_megabytes);
    for (char const* const fen : bench_positions) {
        analysis.clear_hash();
        analysis.clear_killer();
        analysis.clear_history();
        search(analysis, position, fen, bench_depth);
    }
    return EXIT_SUCCESS;
}
