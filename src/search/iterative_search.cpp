#include <cstdlib>

#include "platform/sleep.h"
#include "search/analysis.h"

namespace orvelin {

namespace {

constexpr int aspiration_half_width = 25;

/// A bound of the aspiration window beyond this opens fully.
constexpr int aspiration_limit = 500;

/// Weakened play looks at clock and action in these steps while it spends its time.
constexpr int wait_step_milliseconds = 50;

int open_alpha(int alpha) {
    return alpha < -aspiration_limit ? -infinite_score : alpha;
}

int open_beta(int beta) {
    return beta > aspiration_limit ? infinite_score : beta;
}

}  // namespace

void Analysis::iterative_search() {
    iterative_search([](int, int, int) {});
}

void Analysis::iterative_search(RootObserver const& observer) {
    begin_search();
    SearchWindow window;
    while (iteration_wanted()) {
        int const score = search_iteration(window);
        observer(window.alpha, window.beta, score);
        take_best_moves();
        if (aspiration_retry(window, score)) {
            continue;
        }
        counters_.close_iteration(stopped());
        if (stopped()) {
            break;
        }
    }
    if (strength_.limit_strength.load()) {
        weaken();
    }
    search_timer_.stop();
}

// Nodes, leaves and seldepth are cleared before the tables are aged, which takes a while: reporting
// reads them meanwhile.
void Analysis::begin_search() {
    evaluation_.init();
    time_manager_.start();
    search_timer_.start();
    counters_.clear();
    root_.clear();
    history_table_.divide_by_8();
    counter_moves_->divide_by_8();
    clear_killer();
    counters_.begin_iterations();
}

// A root without moves has no mate score, and runs through all iterations (oddity 64).
bool Analysis::iteration_wanted() const {
    int const iteration = counters_.iteration.load();
    if (iteration >= SearchLimits::maximum_iteration) {
        return false;
    }
    if (iteration >= limits_.depth_limit.load()) {
        return false;
    }
    // A mate no longer than the iteration just finished has been found.
    if (std::abs(root_.best_score.load()) >= mate_score - iteration) {
        return false;
    }
    // Strictly below, so that a strength depth of d lets iteration d + 1 run (oddity 46).
    return !(strength_.limit_strength.load() && strength_.max_strength_depth.load() < iteration);
}

int Analysis::search_iteration(SearchWindow const& window) {
    counters_.iteration.fetch_add(1);
    // Weakened play starts every iteration, a retry included, without hash memory (oddity 47).
    if (strength_.limit_strength.load()) {
        clear_hash();
    }
    counters_.ply = 0;
    MoveList list;
    return root_search(list, counters_.iteration.load(), window.alpha, window.beta);
}

void Analysis::take_best_moves() {
    std::lock_guard const lock(analysis_mutex_);
    if (mpv_.size() == 0) {
        return;
    }
    PrincipalVariation const& line = mpv_[0];
    if (line.size() > 0) {
        root_.best_move.store(line[0]);
    }
    root_.ponder_move.store(line.size() > 1 ? line[1] : Move());
}

// True when the score fell outside the window: the same iteration is to be searched again
// with the window opened on that side.
bool Analysis::aspiration_retry(SearchWindow& window, int score) {
    if (!limits_.aspiration.load() || stopped()) {
        return false;
    }
    {
        std::lock_guard const lock(analysis_mutex_);
        if (mpv_.number() != 1) {
            return false;
        }
    }
    int const width = window.beta - window.alpha;
    if (score <= window.alpha && window.alpha != -infinite_score) {
        window.alpha = open_alpha(window.alpha - width);
        counters_.iteration.fetch_sub(1);
        return true;
    }
    if (score >= window.beta && window.beta != infinite_score) {
        window.beta = open_beta(window.beta + width);
        counters_.iteration.fetch_sub(1);
        return true;
    }
    window.alpha = open_alpha(score - aspiration_half_width);
    window.beta = open_beta(score + aspiration_half_width);
    return false;
}

// Picks among lines near the best, then spends the time that a thinking engine would spend
// (oddity 48).
void Analysis::weaken() {
    {
        std::lock_guard const lock(analysis_mutex_);
        mpv_.randomize(strength_.strength_margin.load());
        if (mpv_.size() > 0 && mpv_[0].size() > 0) {
            root_.best_move.store(mpv_[0][0]);
        }
    }
    root_.ponder_move.store(Move());
    while (!stopped() && !time_manager_.time_to_move()) {
        sleep_milliseconds(wait_step_milliseconds);
    }
}

}  // namespace orvelin
