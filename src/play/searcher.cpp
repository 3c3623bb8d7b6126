#include "play/searcher.h"

#include <algorithm>
#include <new>
#include <utility>

#include "platform/single_thread.h"
#include "play/strength.h"
#include "search/zeroed_pages.h"

namespace orvelin::play {

namespace {

/// Above every iteration, as the engine has it for a search without a depth.
constexpr int no_depth_limit = 102;

/// A level plays with a table of this size whatever the GUI has set, in MiB, so that it plays alike
/// everywhere.
constexpr int level_hash_megabytes = 16;

}  // namespace

Searcher::Searcher(Output& output)
    : output_(output), position_(tables_), analysis_(position_, tables_) {
    position_.newgame();
    analysis_.init(position_);
    if constexpr (!single_thread) {
        thread_ = std::thread([this] { run(); });
    }
}

Searcher::~Searcher() {
    {
        std::lock_guard const lock(mutex_);
        quit_ = true;
        analysis_.set_action(stop_action);
    }
    changed_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void Searcher::forget() {
    position_.newgame();
    analysis_.forget();
}

// The table itself gives its memory back before it takes new memory, so that it is asked first
// whether there is enough.
bool Searcher::set_hash(int megabytes) {
    try {
        ZeroedPages(static_cast<std::size_t>(megabytes) << 20);
        analysis_.set_hash_size(megabytes);
    } catch (std::bad_alloc const&) {
        analysis_.set_hash_size(hash_megabytes_);
        return false;
    }
    hash_megabytes_ = megabytes;
    return true;
}

bool Searcher::busy() const {
    std::lock_guard const lock(mutex_);
    return busy_;
}

void Searcher::begin(SearchOrder order) {
    prepare(order);
    {
        std::lock_guard const lock(mutex_);
        plan_ = order.plan;
        start_ = order.start;
        search_start_ = order.start;
        released_ = !order.limits.infinite && !order.limits.ponder;
        stop_wanted_ = false;
        first_ended_ = false;
        looking_ = true;
        old_version_ = analysis_.mpv_version();
        order_ = std::move(order);
        busy_ = true;
        answered_ = false;
        ordered_ = true;
    }
    if constexpr (single_thread) {
        ordered_ = false;
        search_and_answer();
        return;
    }
    changed_.notify_all();
}

// The same steps as before every search of the engine, so that the search is the same. The clock is
// kept here, so that the search itself has none.
void Searcher::prepare(SearchOrder const& order) {
    GoLimits const& limits = order.limits;
    Options const& options = order.options;
    analysis_.init(position_);
    analysis_.reset();
    analysis_.set_depth(limits.depth ? *limits.depth : limits.mate.value_or(no_depth_limit));
    analysis_.reset_max_nodes();
    if (limits.nodes) {
        analysis_.set_nodes(*limits.nodes);
    }
    analysis_.set_infinite(true);
    int lines = options.multipv;
    if (options.limit_strength) {
        lines = std::max(lines, level_of(options.elo).lines);
        analysis_.set_hash_size(level_hash_megabytes);
        analysis_.forget();
    } else {
        analysis_.set_hash_size(hash_megabytes_);
    }
    analysis_.set_multipv(static_cast<unsigned int>(lines));
    if (!limits.searchmoves.empty()) {
        analysis_.set_searchmoves(limits.searchmoves);
    }
}

void Searcher::stop() {
    {
        std::lock_guard const lock(mutex_);
        stop_wanted_ = true;
        released_ = true;
        if (first_ended_ || analysis_.mpv_version() != old_version_) {
            analysis_.set_action(stop_action);
        }
    }
    changed_.notify_all();
}

void Searcher::stop_at_once() {
    stop();
    std::lock_guard const lock(mutex_);
    if (busy_) {
        analysis_.set_action(stop_action);
    }
}

bool Searcher::stopping() const {
    std::lock_guard const lock(mutex_);
    return busy_ && stop_wanted_;
}

void Searcher::wait_for_answer(milliseconds patience) {
    // On the only thread a search has ended before the next line is acted on.
    if constexpr (single_thread) {
        return;
    }
    std::unique_lock lock(mutex_);
    auto const answered = [this] { return answered_; };
    if (!changed_.wait_for(lock, patience, answered)) {
        analysis_.set_action(stop_action);
        changed_.wait(lock, answered);
    }
}

void Searcher::ponderhit(TimePlan const& plan, std::chrono::steady_clock::time_point start) {
    {
        std::lock_guard const lock(mutex_);
        plan_ = plan;
        start_ = start;
        released_ = true;
    }
    changed_.notify_all();
}

void Searcher::wait_until(std::optional<std::chrono::steady_clock::time_point> deadline,
                          std::function<bool()> const& ready) {
    if constexpr (single_thread) {
        while (can_wait() && !ready() &&
               (!deadline || std::chrono::steady_clock::now() < *deadline)) {
            wait_around(deadline);
        }
        return;
    }
    std::unique_lock lock(mutex_);
    if (deadline) {
        changed_.wait_until(lock, *deadline, ready);
    } else {
        changed_.wait(lock, ready);
    }
}

void Searcher::tell_progress() {
    Move const move = analysis_.current_root_move();
    // Before the first iteration there is nothing to tell.
    if (move == Move()) {
        return;
    }
    std::string const text = "info depth " + std::to_string(analysis_.get_iteration()) +
                             " currmove " + move.algebraic(order_.options.chess960) +
                             " currmovenumber " + std::to_string(analysis_.current_root_number()) +
                             use_text(use());
    std::lock_guard const lock(mutex_);
    if (busy_ && looking_) {
        output_.line(text);
    }
}

}  // namespace orvelin::play
