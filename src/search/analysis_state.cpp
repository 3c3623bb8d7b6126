#include "search/analysis_state.h"

#include <algorithm>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/piece.h"
#include "search/transposition_table.h"

namespace orvelin {

namespace {

constexpr unsigned int most_threads = 2;

}  // namespace

AnalysisState::AnalysisState(ChessPosition& position, Tables& tables)
    : position_(position),
      tables_(tables),
      transposition_table_(tables.transposition_table),
      move_generator_(tables),
      kbnk_table_(tables.attacks, white_knight, white_bishop),
      kqkr_table_(tables.attacks, white_queen, black_rook),
      lmr_table_(tables.lmr_table),
      counter_moves_(std::make_unique<CounterMove>()),
      evaluation_(position, tables) {}

AnalysisState::~AnalysisState() = default;

void AnalysisState::set_wtime(int milliseconds) {
    time_manager_.set_wtime(sign_extended(milliseconds));
}

void AnalysisState::set_btime(int milliseconds) {
    time_manager_.set_btime(sign_extended(milliseconds));
}

void AnalysisState::set_winc(int milliseconds) {
    time_manager_.set_winc(sign_extended(milliseconds));
}

void AnalysisState::set_binc(int milliseconds) {
    time_manager_.set_binc(sign_extended(milliseconds));
}

void AnalysisState::set_movestogo(int moves) {
    time_manager_.set_white_to_move(position_.stm() == 1);
    time_manager_.set_movestogo(moves);
}

void AnalysisState::set_movetime(int milliseconds) {
    time_manager_.set_movetime(sign_extended(milliseconds));
}

void AnalysisState::set_multipv(unsigned int lines) {
    std::lock_guard const lock(analysis_mutex_);
    mpv_.set_number(lines == 0 ? 1 : static_cast<int>(std::min(lines, most_lines)));
}

void AnalysisState::set_max_threads(unsigned int threads) {
    max_threads_.store(threads == 0 ? 1 : std::min(threads, most_threads));
}

void AnalysisState::set_hash_size(int megabytes) {
    std::uint64_t const buckets = transposition_table_.buckets();
    transposition_table_.set_size(megabytes);
    if (transposition_table_.buckets() == buckets) {
        return;
    }
    kbnk_table_.clear();
    kqkr_table_.clear();
}

void AnalysisState::hashtable_enabled(bool on) {
    transposition_table_.set_enabled(on);
}

// Nothing is written to these logs (oddity 10).
void AnalysisState::set_log(bool on) {
    log_on_ = on;
    std::string const name = "analysis_" + std::to_string(position_.id()) + ".log";
    if (on) {
        log_.open(name, std::ios::out);
    } else {
        log_.close();
    }
    evaluation_.set_log(on);
}

// Grows on behind the end of a search (oddity 45).
std::uint64_t AnalysisState::get_running_time() const {
    return search_timer_.running_time().milliseconds();
}

int AnalysisState::get_hashfull() const {
    return transposition_table_.hashfull(counters_.date);
}

MultiPV AnalysisState::mpv() const {
    std::lock_guard const lock(analysis_mutex_);
    return mpv_;
}

PrincipalVariation AnalysisState::pv() const {
    std::lock_guard const lock(analysis_mutex_);
    return mpv_.size() > 0 ? mpv_[0] : PrincipalVariation();
}

int AnalysisState::mpv_version() const {
    std::lock_guard const lock(analysis_mutex_);
    return mpv_.version();
}

std::string AnalysisState::static_eval_report() {
    evaluation_.static_eval();
    return evaluation_.report();
}

void AnalysisState::clear_hash() {
    transposition_table_.clear();
}

void AnalysisState::clear_history() {
    history_table_.clear();
    counter_moves_->clear();
}

void AnalysisState::clear() {
    clear_hash();
    clear_killer();
    clear_history();
    clear_node_count();
}

// The memory comes back into use first, so that it is cleared too.
void AnalysisState::forget() {
    kbnk_table_.clear();
    kqkr_table_.clear();
    transposition_table_.set_threshold_buckets(0);
    clear();
    counters_.date.store(0);
    evaluation_.forget();
}

}  // namespace orvelin
