#include <algorithm>
#include <cstdint>

#include "platform/single_thread.h"
#include "position/chess_position.h"
#include "search/analysis.h"
#include "search/transposition_table.h"

namespace orvelin {

namespace {

/// The clock is read at a node whose number has none of these bits, and only behind this ply.
constexpr std::uint64_t clock_mask = 0x3fff;
constexpr int clock_ply = 2;

/// Where there is one thread, it looks around at a node whose number has none of these bits.
constexpr std::uint64_t look_mask = 0x3ff;

/// Reversible plies up to which a leaf keeps its whole value, and what each further one takes.
constexpr int fade_start = 50;
constexpr double fade_per_ply = 0.02;

}  // namespace

// A node limit keeps the clock out (oddity 42), which is looked at now and then, and away from the
// root (oddity 43).
void Analysis::new_node() {
    std::uint64_t const nodes = counters_.node_count.load(std::memory_order_relaxed);
    if constexpr (single_thread) {
        if ((nodes & look_mask) == 0) {
            look_around();
        }
    }
    std::uint64_t const max_nodes = limits_.max_nodes.load(std::memory_order_relaxed);
    if (max_nodes != SearchLimits::no_node_limit) {
        if (max_nodes <= nodes) {
            set_action(stop_action);
            return;
        }
    } else if ((nodes & clock_mask) == 0 && counters_.ply > clock_ply) {
        if (time_manager_.time_to_move()) {
            set_action(stop_action);
            return;
        }
    }
    // The searching thread is the only writer during a search, so a plain store of the
    // sum is as good as a locked add, and cheaper.
    counters_.node_count.store(nodes + 1, std::memory_order_relaxed);
}

void Analysis::put_in_tt(bound_t bound, int depth, int score, Move move, unsigned char date) {
    TTrecord record;
    record.set_date(date);
    record.set_draft(static_cast<unsigned char>(depth));
    record.set_bound(bound);
    // Turns a mate score into the distance from this node.
    record.set_score(score, counters_.ply);
    record.set_move(TTmove(move));
    record.set_key(position_.get_hash());
    transposition_table_.write(record);
}

std::optional<int> Analysis::mate_distance_cut(int& alpha, int& beta) const {
    int const mating = mate_score - counters_.ply;
    if (mating < beta) {
        if (mating <= alpha) {
            return mating;
        }
        beta = mating;
    }
    int const mated = counters_.ply - mate_score;
    if (mated > alpha) {
        if (mated >= beta) {
            return mated;
        }
        alpha = mated;
    }
    return std::nullopt;
}

int Analysis::value_without_moves() const {
    return position_.check() ? counters_.ply - mate_score : draw_score;
}

int Analysis::leaf_value(int alpha, int beta) {
    ++counters_.leaf_count;
    return fade(quiescence(alpha, beta, 0));
}

int Analysis::fade(int value) const {
    if (position_.get_dfz() <= fade_start) {
        return value;
    }
    // Past 100 the factor is negative and turns the sign of the value (oddity 67).
    return static_cast<int>(static_cast<double>(value) * fading());
}

double Analysis::fading() const {
    double const dfz = position_.get_dfz();
    return std::min(1.0, 1.0 - (dfz - double{fade_start}) * fade_per_ply);
}

// Asked before the move is made.
bool Analysis::reducible(Move const& move, int extension) const {
    return extension == 0 && !position_.check() && move.xcode() != good_capture &&
           move.xcode() != killer && !move.check();
}

}  // namespace orvelin
