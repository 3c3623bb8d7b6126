#include <array>
#include <cstddef>
#include <utility>

#include "search/analysis.h"

namespace orvelin {

// Empties the table, for an empty list too (oddity 24).
void AnalysisState::set_searchmoves(std::vector<Move> moves) {
    clear_hash();
    limits_.set_searchmoves(std::move(moves));
}

// A move given twice is listed twice (oddity 59).
void Analysis::select_searchmoves(MoveList& list) {
    std::lock_guard const lock(limits_.searchmoves_mutex);
    if (counters_.ply != 0 || limits_.searchmoves.empty() || list.size() == 0) {
        return;
    }
    std::array<Move, MoveList::capacity> chosen;
    std::size_t count = 0;
    for (Move const move : list) {
        for (Move const& wanted : limits_.searchmoves) {
            if (move == wanted && count < chosen.size()) {
                chosen[count++] = move;
            }
        }
    }
    list.set_size(static_cast<int>(count));
    for (std::size_t i = 0; i < count; ++i) {
        list[static_cast<int>(i)] = chosen[i];
    }
}

void Analysis::remove(Move const& move, MoveList& list) {
    int const size = static_cast<int>(list.size());
    for (int i = 0; i < size; ++i) {
        if (list[i] != move) {
            continue;
        }
        for (int j = i + 1; j < size; ++j) {
            list[j - 1] = list[j];
        }
        list.set_size(size - 1);
        return;
    }
}

}  // namespace orvelin
