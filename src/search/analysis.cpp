#include "search/analysis.h"

#include <stdexcept>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/piece.h"
#include "search/lmr_table.h"
#include "search/transposition_table.h"

namespace orvelin {

Analysis::Analysis(ChessPosition& position, Tables& tables)
    : position_(position),
      tables_(tables),
      transposition_table_(tables.transposition_table),
      move_generator_(tables),
      kbnk_table_(tables.attacks, white_knight, white_bishop),
      kqkr_table_(tables.attacks, white_queen, black_rook),
      lmr_table_(tables.lmr_table),
      counter_moves_(std::make_unique<CounterMove>()),
      evaluation_(position, tables) {
    init(position);
    clear_hash();
}

Analysis::~Analysis() = default;

void Analysis::init(ChessPosition const& position) {
    if (get_status() == searching_status) {
        throw std::logic_error("Analysis::init  init() call while thinking not allowed");
    }
    if (&position != &position_) {
        position_ = position;
    }
    {
        std::lock_guard const lock(control_mutex_);
        action_.store(no_action);
        status_.store(ready_status);
    }
    evaluation_.init();
    time_manager_.reset();
}

void Analysis::reset() {
    depth_limit_.store(maximum_iteration_);
    {
        std::lock_guard const lock(searchmoves_mutex_);
        searchmoves_.clear();
    }
    time_manager_.reset();
}

void Analysis::new_node() {
    std::uint64_t const nodes = node_count_.load(std::memory_order_relaxed);
    std::uint64_t const max_nodes = max_nodes_.load(std::memory_order_relaxed);
    if (max_nodes != no_node_limit) {
        // A node limit alone decides: no clock is polled beside it.
        if (max_nodes <= nodes) {
            set_action(stop_action);
            return;
        }
    } else if ((nodes & 0x3fff) == 0 && ply_ > 2) {
        if (time_manager_.time_to_move()) {
            set_action(stop_action);
            return;
        }
    }
    // The searching thread is the only writer during a search, so a plain store of the
    // sum is as good as a locked add, and cheaper.
    node_count_.store(nodes + 1, std::memory_order_relaxed);
}

void Analysis::put_in_tt(bound_t bound, int depth, int score, Move move, unsigned char date) {
    TTrecord record;
    record.set_date(date);
    record.set_draft(static_cast<unsigned char>(depth));
    record.set_bound(bound);
    // Turns a mate score into the distance from this node.
    record.set_score(score, ply_);
    record.set_move(TTmove(move));
    record.set_key(position_.get_hash());
    transposition_table_.write(record);
}

}  // namespace orvelin
