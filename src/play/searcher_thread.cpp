// The search thread: one search after the other, its reports and its answer.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <exception>
#include <utility>

#include "play/dead_draw.h"
#include "play/searcher.h"
#include "play/strength.h"
#include "play/win_chance.h"
#include "search/score.h"

namespace orvelin::play {

void Searcher::run() {
    for (;;) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return quit_ || ordered_; });
        if (quit_) {
            return;
        }
        ordered_ = false;
        lock.unlock();
        search_and_answer();
    }
}

void Searcher::search_and_answer() {
    ChessPosition const root = position_;
    try {
        search();
    } catch (std::exception const& error) {
        // The moves of the tree that it had made stand on the board.
        position_ = root;
        output_.remark(std::string("the search failed: ") + error.what());
        answer(lines_.empty() ? std::vector<Move>() : lines_[0].moves);
    }
}

void Searcher::search() {
    Options const& options = order_.options;
    style_ = {options.chess960, options.show_wdl, options.engine_units, options.multipv};
    style_.drawn = is_dead_draw(position_);
    lines_.clear();
    last_end_ = std::chrono::steady_clock::now();
    stable_iterations_ = 0;
    last_score_ = 0;
    bound_ = bound::exact;
    check_.emplace(tables_, position_);
    if (check_->root_moves().empty()) {
        int const score = position_.check() ? -mate_score : draw_score;
        style_.drawn = !position_.check();
        output_.line("info depth 0 " + score_text(score, style_));
        end_looking();
        wait_for_release();
        answer({});
        return;
    }
    analysis_.iterative_search(
        [this](int alpha, int beta, int score) { root_returned(alpha, beta, score); });
    end_looking();
    take_unfinished();
    output_.line("info depth " + std::to_string(lines_[0].depth) + use_text(use()));
    if (options.limit_strength) {
        play_a_level();
    }
    wait_for_release();
    answer(lines_[0].moves);
}

// Called by the search behind each search of the root: the iteration has ended, or its score fell
// out of the window and it is searched again, or it was stopped and its lines are not true.
void Searcher::root_returned(int alpha, int beta, int score) {
    if (analysis_.get_action() == stop_action) {
        return;
    }
    if (analysis_.mpv().number() == 1) {
        bool const low = score <= alpha && alpha != -infinite_score;
        bool const high = score >= beta && beta != infinite_score;
        if (low || high) {
            bound_ = low ? bound::upper : bound::lower;
            bound_score_ = score;
            return;
        }
    }
    bound_ = bound::exact;
    take_iteration();
    bool const go_on = wants_another_iteration(lines_.empty() ? score : lines_[0].score);
    std::lock_guard const lock(mutex_);
    first_ended_ = true;
    if (stop_wanted_ || quit_ || !go_on) {
        analysis_.set_action(stop_action);
    } else if (order_.options.limit_strength) {
        // From here on, so that every move has been looked at by the smallest budget too.
        std::uint64_t const budget =
            std::max(level_of(order_.options.elo).nodes, analysis_.get_node_count() + 1);
        analysis_.set_nodes(std::min(budget, order_.limits.nodes.value_or(budget)));
    }
}

void Searcher::take_iteration() {
    Move const old_best = lines_.empty() || lines_[0].moves.empty() ? Move() : lines_[0].moves[0];
    lines_.clear();
    int const depth = analysis_.get_iteration();
    for (PrincipalVariation const& line : analysis_.mpv()) {
        std::vector<Move> const moves = check_->true_part(line);
        // The search has no upper bound for its further lines. Where it gives no reply, the score
        // is known to be no less, and no more is known.
        bool const open = depth > 1 && moves.size() == 1 && !check_->ends_game(moves);
        lines_.push_back({depth, line.score(), moves, open ? bound::lower : bound::exact});
    }
    // The search restricts its first line only.
    std::vector<Move> const& wanted = order_.limits.searchmoves;
    std::erase_if(lines_, [&wanted](ReportedLine const& line) {
        return line.moves.empty() || (!wanted.empty() && std::find(wanted.begin(), wanted.end(),
                                                                   line.moves[0]) == wanted.end());
    });
    tell_lines();
    bool const same = !lines_.empty() && lines_[0].moves[0] == old_best;
    stable_iterations_ = same ? stable_iterations_ + 1 : 1;
}

void Searcher::tell_lines() {
    SearchUse const used = use();
    int const told = std::min(static_cast<int>(lines_.size()), style_.lines);
    for (int rank = 0; rank < told; ++rank) {
        output_.line(line_text(lines_[static_cast<std::size_t>(rank)], rank, used, style_));
    }
}

bool Searcher::wants_another_iteration(int score) {
    auto const now = std::chrono::steady_clock::now();
    SearchProgress progress;
    progress.last_iteration = std::chrono::duration_cast<milliseconds>(now - last_end_);
    progress.depth = analysis_.get_iteration();
    progress.stable_iterations = stable_iterations_;
    progress.score_drop = std::max(0, to_centipawns(last_score_) - to_centipawns(score));
    progress.moves = order_.limits.searchmoves.empty()
                         ? static_cast<int>(check_->root_moves().size())
                         : static_cast<int>(order_.limits.searchmoves.size());
    progress.mate_found = std::abs(score) > max_ordinary_score;
    last_end_ = now;
    last_score_ = score;
    std::lock_guard const lock(mutex_);
    progress.elapsed = std::chrono::duration_cast<milliseconds>(now - start_);
    bool const pondering = order_.limits.ponder && !released_;
    if (order_.options.limit_strength) {
        // The budget of nodes ends it, so that the same is played on a slow machine too.
        return pondering || !plan_.limited || progress.elapsed < plan_.maximum;
    }
    return pondering || begin_next_iteration(plan_, progress);
}

// The best line of an iteration that was stopped is newer than all that was told. Where not even
// the first iteration ended, what the search holds for best is played, or else any legal move.
void Searcher::take_unfinished() {
    PrincipalVariation const& newest = analysis_.root_line();
    if (newest.size() > 0 && (lines_.empty() || newest.depth() > lines_[0].depth)) {
        ReportedLine line{newest.depth(), newest.score(), check_->true_part(newest)};
        if (!line.moves.empty()) {
            std::erase_if(lines_, [&line](ReportedLine const& other) {
                return other.moves[0] == line.moves[0];
            });
            // Its score is as little exact as it was when the iteration was begun again.
            line.kind =
                bound_ == bound::lower && line.score == bound_score_ ? bound_ : bound::exact;
            lines_.insert(lines_.begin(), std::move(line));
            output_.line(line_text(lines_[0], 0, use(), style_));
            bound_ = bound::exact;
        }
    }
    if (bound_ != bound::exact) {
        output_.line(bound_text(analysis_.get_iteration(), bound_score_, bound_, use(), style_));
    }
    if (!lines_.empty()) {
        return;
    }
    std::vector<Move> const& legal = check_->root_moves();
    std::vector<Move> const& wanted = order_.limits.searchmoves;
    std::vector<Move> const& allowed = wanted.empty() ? legal : wanted;
    Move const best = analysis_.best_move();
    bool const known = std::find(allowed.begin(), allowed.end(), best) != allowed.end();
    // The sums that a search was ended with may be off by what was rounded.
    analysis_.evaluation().init();
    lines_.push_back({0, analysis_.static_eval(), {known ? best : allowed[0]}});
    output_.line(line_text(lines_[0], 0, use(), style_));
}

void Searcher::play_a_level() {
    std::vector<Candidate> candidates;
    for (ReportedLine const& line : lines_) {
        candidates.push_back({line.moves[0], line.score});
    }
    std::size_t const chosen = choose(candidates, position_.get_hash(), order_.options.elo);
    if (chosen != 0) {
        // The move that is played is the first that the GUI shows.
        auto const place = lines_.begin() + static_cast<std::ptrdiff_t>(chosen);
        std::rotate(lines_.begin(), place, place + 1);
        tell_lines();
    }
    milliseconds const pause =
        thinking_pause(order_.limits, position_.white_to_move(), position_.get_hash());
    std::unique_lock lock(mutex_);
    auto const end = start_ + pause;
    lock.unlock();
    wait_until(end, [this] { return quit_ || stop_wanted_; });
}

void Searcher::end_looking() {
    std::lock_guard const lock(mutex_);
    looking_ = false;
}

// Where the only thread cannot wait, the page holds the answer back.
void Searcher::wait_for_release() {
    wait_until(std::nullopt, [this] { return quit_ || released_; });
}

// The board is the front's again before the answer is out, so that a GUI that answers at once is
// not refused.
void Searcher::answer(std::vector<Move> const& moves) {
    std::string const text = bestmove_text(moves, order_.options.chess960);
    {
        std::lock_guard const lock(mutex_);
        if (quit_) {
            return;
        }
        busy_ = false;
    }
    output_.line(text);
    {
        std::lock_guard const lock(mutex_);
        answered_ = true;
    }
    changed_.notify_all();
}

SearchUse Searcher::use() const {
    std::chrono::milliseconds const time = [this] {
        std::lock_guard const lock(mutex_);
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - search_start_);
    }();
    return {analysis_.get_seldepth(), analysis_.get_node_count(), time, analysis_.get_hashfull()};
}

}  // namespace orvelin::play
