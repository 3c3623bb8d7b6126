#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "book/book.h"
#include "play/command_queue.h"
#include "play/options.h"
#include "play/output.h"
#include "play/position_reader.h"
#include "play/searcher.h"
#include "position/hasher.h"

namespace orvelin::play {

/// Acts on the commands of the GUI, one after the other, on the main thread.
///
/// Between two commands it sleeps until the next one, or until the search has to be stopped or
/// looked at. Nothing that a GUI sends throws or ends the process: what cannot be done is told in
/// one `info string`. While a search runs only what leaves it alone is done.
class Front {
 public:
    Front(CommandQueue& queue, Output& output);
    ~Front();
    Front(Front const&) = delete;
    Front& operator=(Front const&) = delete;

    /// Until `quit` or the end of the input.
    void run();
    /// Acts on one line; false for `quit`.
    bool act(Command const& command);
    /// Acts on the lines that wait, and waits for no more; false behind `quit`.
    bool act_on_all();

 private:
    using handler_t = void (Front::*)(std::string_view arguments);
    using time_point = std::chrono::steady_clock::time_point;

    /// After a stop that waits for the first iteration the search is stopped by force.
    static constexpr std::chrono::milliseconds patience{10};

    struct command_t {
        std::string_view word;
        handler_t handler;
        /// Other words may stand behind it.
        bool takes_words = false;
    };

    static command_t const* find_command(std::string_view word);

    void command_uci(std::string_view arguments);
    void command_isready(std::string_view arguments);
    void command_ucinewgame(std::string_view arguments);
    void command_setoption(std::string_view arguments);
    void command_position(std::string_view arguments);
    void command_go(std::string_view arguments);
    void command_stop(std::string_view arguments);
    void command_ponderhit(std::string_view arguments);
    void command_debug(std::string_view arguments);
    void command_register(std::string_view arguments);
    void command_display(std::string_view arguments);
    void command_eval(std::string_view arguments);
    void command_flip(std::string_view arguments);
    void command_bench(std::string_view arguments);
    void command_perft(std::string_view arguments);
    void command_help(std::string_view arguments);

    /// Tells that the command has to wait for the end of the search; true when one runs.
    bool refused_while_searching(std::string_view what);
    /// The same, and where there is no position either.
    bool nothing_to_show(std::string_view what);
    void remark(std::vector<std::string> const& lines);
    /// Puts out what the function returns, which is to end soon when the word that it is given
    /// becomes true: that is when `stop` comes in. No clock of a game runs meanwhile.
    void tell_unless_stopped(std::function<std::string(std::atomic<bool> const&)> const& work);
    void tell_perft(int depth);
    /// Why there is no position.
    std::string refusal_text() const;
    void tell_hash_size(int wanted);
    void apply_book();
    bool open_book(std::string const& name);
    void apply_log();
    /// Whether a move of the book is wanted and can be looked for. Tells once that there is none.
    bool wants_book(GoLimits const& limits);
    /// Answers with a move of the book, if that is wanted and there is one.
    bool answer_from_book(GoLimits const& limits);

    /// What a search does beside itself where it has the only thread: takes lines, and stops or
    /// tells what it was asked to. Waits for a line until the deadline.
    void attend(std::optional<time_point> deadline);
    std::optional<time_point> next_look() const;
    void look_at_search();
    void plan_looks(TimePlan const& plan, time_point start);

    CommandQueue& queue_;
    Output& output_;
    Options options_;
    Searcher searcher_;
    Book book_;
    Hasher<1> hasher_;
    /// What was wrong with the last `position`; a search is refused then.
    Refusal refusal_;
    /// Of the last `go`: limits, and the side that moves, which the running search hides.
    GoLimits limits_;
    bool white_moves_ = true;
    int game_ply_ = 0;
    time_point arrival_;
    /// When the last count or benchmark had ended.
    time_point work_ended_;
    /// When the search has to be stopped, when it is stopped by force, and the next report.
    std::optional<time_point> stop_at_;
    std::optional<time_point> force_at_;
    time_point report_at_;
    /// That there is no book was told already.
    bool missing_book_told_ = false;
    bool quit_ = false;
};

}  // namespace orvelin::play
