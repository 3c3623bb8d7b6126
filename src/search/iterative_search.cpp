#include <cmath>
#include <cstdlib>

#include "search/analysis.h"
#include "time/sleep.h"

namespace orvelin {

namespace {

constexpr int aspiration_half_width = 25;

/// A bound of the aspiration window beyond this opens fully.
constexpr int aspiration_limit = 500;

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
        close_iteration();
        if (stopped()) {
            break;
        }
    }
    if (limit_strength_.load()) {
        weaken();
    }
    search_timer_.stop();
}

void Analysis::begin_search() {
    evaluation_.init();
    time_manager_.start();
    search_timer_.start();
    seldepth_.store(0);
    clear_node_count();
    leaf_count_ = 0;
    mate_attack_count_ = 0;
    best_score_.store(0);
    best_move_.store(Move());
    ponder_move_.store(Move());
    history_table_.divide_by_8();
    counter_moves_->divide_by_8();
    clear_killer();
    root_line_.clear();
    date_.fetch_add(1);
    iteration_.store(0);
}

bool Analysis::iteration_wanted() const {
    int const iteration = iteration_.load();
    if (iteration >= maximum_iteration_) {
        return false;
    }
    if (iteration >= depth_limit_.load()) {
        return false;
    }
    // A mate no longer than the iteration just finished has been found.
    if (std::abs(best_score_.load()) >= mate_score - iteration) {
        return false;
    }
    // Strictly below, so that a strength depth of d lets iteration d + 1 run, by design.
    return !(limit_strength_.load() && max_strength_depth_.load() < iteration);
}

int Analysis::search_iteration(SearchWindow const& window) {
    iteration_.fetch_add(1);
    // Weakened play starts every iteration, a retry included, without hash memory.
    if (limit_strength_.load()) {
        clear_hash();
    }
    ply_ = 0;
    MoveList list;
    return root_search(list, iteration_.load(), window.alpha, window.beta);
}

void Analysis::take_best_moves() {
    std::lock_guard const lock(analysis_mutex_);
    if (mpv_.size() == 0) {
        return;
    }
    PrincipalVariation const& line = mpv_[0];
    if (line.size() > 0) {
        best_move_.store(line[0]);
    }
    ponder_move_.store(line.size() > 1 ? line[1] : Move());
}

// True when the score fell outside the window: the same iteration is to be searched again
// with the window opened on that side.
bool Analysis::aspiration_retry(SearchWindow& window, int score) {
    if (!aspiration_.load() || stopped()) {
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
        iteration_.fetch_sub(1);
        return true;
    }
    if (score >= window.beta && window.beta != infinite_score) {
        window.beta = open_beta(window.beta + width);
        iteration_.fetch_sub(1);
        return true;
    }
    window.alpha = open_alpha(score - aspiration_half_width);
    window.beta = open_beta(score + aspiration_half_width);
    return false;
}

void Analysis::close_iteration() {
    if (!stopped()) {
        float const exponent = 1.0F / static_cast<float>(iteration_.load());
        ebf_.store(static_cast<float>(
            std::pow(static_cast<double>(leaf_count_), static_cast<double>(exponent))));
    }
    leaf_count_ = 0;
}

// Picks among lines near the best, then spends the time that a thinking engine would spend.
void Analysis::weaken() {
    {
        std::lock_guard const lock(analysis_mutex_);
        mpv_.randomize(strength_margin_.load());
        if (mpv_.size() > 0 && mpv_[0].size() > 0) {
            best_move_.store(mpv_[0][0]);
        }
    }
    ponder_move_.store(Move());
    while (!stopped() && !time_manager_.time_to_move()) {
        sleep_milliseconds(50);
    }
}

}  // namespace orvelin
