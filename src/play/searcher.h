#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "generation/tables.h"
#include "play/clock.h"
#include "play/go_limits.h"
#include "play/line_check.h"
#include "play/options.h"
#include "play/output.h"
#include "play/report.h"
#include "position/chess_position.h"
#include "search/analysis.h"

namespace orvelin::play {

/// One search as it is asked for.
struct SearchOrder {
    GoLimits limits;
    Options options;
    TimePlan plan;
    /// When the time of the plan began.
    std::chrono::steady_clock::time_point start;
    /// Half-moves made in the game.
    int game_ply = 0;
};

/// Owns the tables, the board and the search, and runs one search at a time on a thread of its own.
///
/// The front asks and stops; the search thread reports each iteration that ended and answers
/// `bestmove`. Between searches everything here belongs to the front. While busy() the board and
/// the search belong to the search thread; the front may then only call what is said to be for any
/// time. What the two share is guarded by the mutex, but for the words of `Analysis` that are made
/// to be shared.
class Searcher {
 public:
    explicit Searcher(Output& output);
    /// Stops a running search without an answer.
    ~Searcher();

    Searcher(Searcher const&) = delete;
    Searcher& operator=(Searcher const&) = delete;

    // Between searches.

    Tables const& tables() const { return tables_; }
    ChessPosition& position() { return position_; }
    Analysis& analysis() { return analysis_; }
    /// Forgets the game and all that was learnt: the next search is that of a new process.
    void forget();
    /// Forgets all that was learnt, and keeps the position.
    void clear_hash() { analysis_.forget(); }
    /// A hash table of about so many MiB; false when there is no memory for it, and the old size
    /// stays.
    bool set_hash(int megabytes);
    /// Begins the search of the position.
    void begin(SearchOrder order);

    // Any time.

    bool busy() const;
    /// Ends the search and lets the answer go out. The first line of the first iteration is ended
    /// first, so that there is a move that was looked at; stop_at_once() does not wait for it
    /// either.
    void stop();
    void stop_at_once();
    /// Whether a stop was sent to the search that runs.
    bool stopping() const;
    /// Waits until a search that was stopped, or has ended, has been answered; one that does not
    /// end within `patience` is stopped at once. Nothing to wait for is no fault.
    void wait_for_answer(milliseconds patience);
    /// The expected move was played: from now on the plan holds.
    void ponderhit(TimePlan const& plan, std::chrono::steady_clock::time_point start);
    /// Puts out a line of progress, if a search runs and does not only wait with its answer.
    void tell_progress();

 private:
    void run();
    void search_and_answer();
    void search();
    void prepare(SearchOrder const& order);
    void root_returned(int alpha, int beta, int score);
    void take_iteration();
    void take_unfinished();
    void play_a_level();
    void tell_lines();
    bool wants_another_iteration(int score);
    void answer(std::vector<Move> const& moves);
    void end_looking();
    void wait_for_release();
    /// Waits until it is ready or the deadline has come.
    void wait_until(std::optional<std::chrono::steady_clock::time_point> deadline,
                    std::function<bool()> const& ready);
    SearchUse use() const;

    Output& output_;
    Tables tables_;
    ChessPosition position_;
    Analysis analysis_;
    int hash_megabytes_ = 128;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool ordered_ = false;
    bool busy_ = false;
    /// The answer to the last search is out.
    bool answered_ = true;
    bool quit_ = false;
    /// A stop has come; it is handed on when the first iteration has ended.
    bool stop_wanted_ = false;
    bool first_ended_ = false;
    /// Moves are looked at; else the answer waits, or is out.
    bool looking_ = false;
    /// Of the ranked lines before the search: another one tells that its first line is known.
    int old_version_ = 0;
    /// The answer may go out: neither pondering nor infinite.
    bool released_ = false;
    TimePlan plan_;
    /// When the clock began to run, and when the search did; ponderhit() parts the two.
    std::chrono::steady_clock::time_point start_;
    std::chrono::steady_clock::time_point search_start_;

    // Of the search that runs; the search thread's own.
    SearchOrder order_;
    ReportStyle style_;
    std::optional<LineCheck> check_;
    std::vector<ReportedLine> lines_;
    std::chrono::steady_clock::time_point last_end_;
    int stable_iterations_ = 0;
    int last_score_ = 0;
    /// What is known of the iteration that runs, if its score fell out of the window.
    bound bound_ = bound::exact;
    int bound_score_ = 0;

    std::thread thread_;
};

}  // namespace orvelin::play
