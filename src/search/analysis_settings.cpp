#include <algorithm>
#include <utility>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "search/analysis.h"
#include "search/transposition_table.h"

namespace orvelin {

namespace {

constexpr int unlimited_strength_depth = 102;

}  // namespace

void Analysis::set_wtime(int milliseconds) {
    time_manager_.set_wtime(sign_extended(milliseconds));
}

void Analysis::set_btime(int milliseconds) {
    time_manager_.set_btime(sign_extended(milliseconds));
}

void Analysis::set_winc(int milliseconds) {
    time_manager_.set_winc(sign_extended(milliseconds));
}

void Analysis::set_binc(int milliseconds) {
    time_manager_.set_binc(sign_extended(milliseconds));
}

void Analysis::set_movestogo(int moves) {
    time_manager_.set_white_to_move(position_.stm() == 1);
    time_manager_.set_movestogo(moves);
}

void Analysis::set_depth(int plies) {
    depth_limit_.store(plies);
}

void Analysis::set_nodes(std::uint64_t nodes) {
    max_nodes_.store(nodes);
}

void Analysis::reset_max_nodes() {
    max_nodes_.store(no_node_limit);
}

void Analysis::set_movetime(int milliseconds) {
    time_manager_.set_movetime(sign_extended(milliseconds));
}

void Analysis::set_infinite(bool on) {
    time_manager_.set_infinite(on);
}

void Analysis::set_pondering(bool on) {
    time_manager_.set_pondering(on);
}

void Analysis::set_lag(int milliseconds) {
    time_manager_.set_lag(milliseconds);
}

void Analysis::set_searchmoves(std::vector<Move> moves) {
    clear_hash();
    std::lock_guard const lock(searchmoves_mutex_);
    searchmoves_ = std::move(moves);
}

void Analysis::set_multipv(unsigned int lines) {
    std::lock_guard const lock(analysis_mutex_);
    mpv_.set_number(lines == 0 ? 1 : static_cast<int>(std::min(lines, 50U)));
}

void Analysis::set_max_threads(unsigned int threads) {
    max_threads_.store(threads == 0 ? 1 : std::min(threads, 2U));
}

void Analysis::set_uci_limitstrength(bool on) {
    limit_strength_.store(on);
    if (!on) {
        max_strength_depth_.store(unlimited_strength_depth);
        strength_margin_.store(0);
    }
}

void Analysis::set_uci_elo(int elo) {
    int const clamped = std::clamp(elo, 1500, 2200);
    elo_.store(clamped);
    // By design the strongest level leaves the depth at what it was.
    if (clamped < 2200) {
        max_strength_depth_.store(2 + 2 * ((clamped - 1500) / 100));
    }
    strength_margin_.store(clamped < 2000 ? (2000 - clamped) * 200 / 500 : 0);
}

void Analysis::set_hash_size(int megabytes) {
    std::uint64_t const buckets = transposition_table_.buckets();
    transposition_table_.set_size(megabytes);
    if (transposition_table_.buckets() == buckets) {
        return;
    }
    kbnk_table_.clear();
    kqkr_table_.clear();
}

void Analysis::hashtable_enabled(bool on) {
    transposition_table_.set_enabled(on);
}

void Analysis::set_log(bool on) {
    log_on_ = on;
    std::string const name = "analysis_" + std::to_string(position_.id()) + ".log";
    if (on) {
        log_.open(name, std::ios::out);
    } else {
        log_.close();
    }
    evaluation_.set_log(on);
}

std::uint64_t Analysis::get_running_time() const {
    return search_timer_.running_time().milliseconds();
}

int Analysis::get_hashfull() const {
    return transposition_table_.hashfull(date_);
}

MultiPV Analysis::mpv() const {
    std::lock_guard const lock(analysis_mutex_);
    return mpv_;
}

PrincipalVariation Analysis::pv() const {
    std::lock_guard const lock(analysis_mutex_);
    return mpv_.size() > 0 ? mpv_[0] : PrincipalVariation();
}

int Analysis::mpv_version() const {
    std::lock_guard const lock(analysis_mutex_);
    return mpv_.version();
}

std::string Analysis::static_eval_report() {
    evaluation_.static_eval();
    return evaluation_.report();
}

void Analysis::clear_hash() {
    transposition_table_.clear();
}

void Analysis::clear_killer() {
    killers_.clear();
}

void Analysis::clear_history() {
    history_table_.clear();
    counter_moves_->clear();
}

void Analysis::clear() {
    clear_hash();
    clear_killer();
    clear_history();
    clear_node_count();
}

}  // namespace orvelin
