#pragma once

#include <atomic>
#include <cstdint>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "endgame/egt4_pieces.h"
#include "evaluation/evaluation.h"
#include "generation/move_generator.h"
#include "position/move.h"
#include "search/action.h"
#include "search/control_words.h"
#include "search/counter_move.h"
#include "search/history_table.h"
#include "search/killer.h"
#include "search/multi_pv.h"
#include "search/principal_variation.h"
#include "search/root_result.h"
#include "search/search_counters.h"
#include "search/search_limits.h"
#include "search/strength_limits.h"
#include "time/time_manager.h"
#include "time/timer.h"

namespace orvelin {

class ChessPosition;
class LmrTable;
struct Tables;
class TranspositionTable;

/// All of the search object but the searching: its parts, the words through which it is asked and
/// stopped, its limits and options, and what reporting reads.
///
/// Bound for life to one position and to the tables, which it does not own; owns all else. The
/// main thread writes limits and options, as a rule between searches and now and then during one,
/// talks to the analysis thread through action, status and quit flag, and reads what reporting
/// shows. Those words are atomic, the ranked lines are guarded by the analysis mutex, the search
/// moves and the pair of action and status by locks of their own. No two locks are ever held
/// together. All else belongs to the analysis thread while it searches.
class AnalysisState {
 public:
    AnalysisState(AnalysisState const&) = delete;
    AnalysisState& operator=(AnalysisState const&) = delete;

    // The control words.

    void set_action(action_t action) { control_.set_action(action); }
    /// Takes back a think action that the thread has not yet taken; true when there was one.
    bool withdraw_think() { return control_.withdraw_think(); }
    action_t get_action() const { return control_.action(); }
    void set_status(status_t status) { control_.set_status(status); }
    status_t get_status() const { return control_.status(); }
    /// Sets the quit flag; a running search must be stopped by an action.
    void quit() { control_.set_quit(); }

    // Limits of the next search; times in milliseconds.

    void set_wtime(int milliseconds);
    void set_btime(int milliseconds);
    void set_winc(int milliseconds);
    void set_binc(int milliseconds);
    /// Also takes the side to move from the position; a value below 1 gives 30.
    void set_movestogo(int moves);
    void set_depth(int plies) { limits_.depth_limit.store(plies); }
    /// Writes the depth limit: there is no separate mate search.
    void set_mate(int plies) { set_depth(plies); }
    void set_nodes(std::uint64_t nodes) { limits_.max_nodes.store(nodes); }
    void set_max_nodes(std::uint64_t nodes) { set_nodes(nodes); }
    void reset_max_nodes() { set_nodes(SearchLimits::no_node_limit); }
    /// A value of 0 gives 1.
    void set_movetime(int milliseconds);
    void set_infinite(bool on) { time_manager_.set_infinite(on); }
    void set_pondering(bool on) { time_manager_.set_pondering(on); }
    void ponderhit() { set_pondering(false); }
    void set_lag(int milliseconds) { time_manager_.set_lag(milliseconds); }
    /// Restricts the first line of the root to these moves, and clears the transposition table,
    /// also for an empty list, which means no restriction.
    void set_searchmoves(std::vector<Move> moves);
    TimeManager& time_manager() { return time_manager_; }

    // Options.

    static constexpr unsigned int most_lines = 50;
    /// Wanted number of lines: 0 gives 1, at most `most_lines`.
    void set_multipv(unsigned int lines);
    /// 0 gives 1, at most 2; stored and never read, the search has one thread.
    void set_max_threads(unsigned int threads);
    void set_uci_limitstrength(bool on) { strength_.set_limit_strength(on); }
    void set_uci_elo(int elo) { strength_.set_elo(elo); }
    /// Size of the transposition table in MiB. Endgame tables in its memory go with the old one.
    void set_hash_size(int megabytes);
    void set_aspiration(bool on) { limits_.aspiration.store(on); }
    void hashtable_enabled(bool on);
    /// Opens or closes the trace files "analysis_<position id>.log" and "eval_log.log".
    void set_log(bool on);
    void set_id(int id) { id_ = id; }
    int get_id() const { return id_; }

    // What reporting reads.

    std::uint64_t get_node_count() const {
        return counters_.node_count.load(std::memory_order_relaxed);
    }
    /// Belongs between searches, as does clear_node_count().
    void add_node_count(std::uint64_t nodes) { counters_.node_count.fetch_add(nodes); }
    void clear_node_count() { counters_.node_count.store(0); }
    /// Milliseconds since the last search began; goes on growing after its end.
    std::uint64_t get_running_time() const;
    float get_ebf() const { return counters_.ebf.load(); }
    int get_iteration() const { return counters_.iteration.load(); }
    int get_seldepth() const { return counters_.seldepth.load(); }
    /// Score of the root's best move.
    int eval() const { return root_.best_score.load(); }
    Move best_move() const { return root_.best_move.load(); }
    Move pondermove() const { return root_.ponder_move.load(); }
    /// The move of the root that the search has begun last, and its number in the list of that
    /// line, from 1; the empty move and 0 before the first. For whoever watches a long search; the
    /// two may be of different moves.
    Move current_root_move() const { return root_.current_move.load(std::memory_order_relaxed); }
    int current_root_number() const { return root_.current_number.load(std::memory_order_relaxed); }
    /// Use of the transposition table by the current search, 0 to 1000, from a sample.
    int get_hashfull() const;
    /// Copies of the ranked lines and of the first of them, empty when there is none.
    MultiPV mpv() const;
    PrincipalVariation pv() const;
    /// Version of the ranked lines.
    int mpv_version() const;

    // Parts and state, for reports, tools and tests.

    ChessPosition& chessposition() const { return position_; }
    CounterMove const& countermove() const { return *counter_moves_; }
    HistoryTable const& historytable() const { return history_table_; }
    Evaluation& evaluation() { return evaluation_; }
    PrincipalVariation const& root_line() const { return root_.root_line; }
    Egt4Pieces const& kbnk_table() const { return kbnk_table_; }
    Egt4Pieces const& kqkr_table() const { return kqkr_table_; }
    /// Hand-overs from the main search to quiescence since the last finished iteration.
    std::uint64_t leaf_count() const { return counters_.leaf_count; }
    int mate_attack_count() const { return counters_.mate_attack_count; }
    int ply() const { return counters_.ply; }
    int strength_depth() const { return strength_.max_strength_depth.load(); }
    int strength_margin() const { return strength_.strength_margin.load(); }
    int elo() const { return strength_.elo.load(); }

    /// Evaluation of the position from the side to move.
    int static_eval() { return evaluation_.static_eval(); }
    /// Evaluates and returns the report text.
    std::string static_eval_report();

    void clear_hash();
    void clear_killer() { killers_.clear(); }
    /// Clears the history table and the counter moves.
    void clear_history();
    /// Kept for symmetry with its siblings: a new game clears nothing of an evaluation (see
    /// forget()).
    void clear_eval() {}
    /// Clears hash, killers, history and counter moves, and the node count.
    void clear();
    /// Between searches: leaves nothing of earlier ones that the next search reads. Beside what
    /// clear() clears, that is the table's memory lent to the endgame tables, the date, and what
    /// the evaluation has in mind. With the same limits and options the next search is that of a
    /// new object. Results, as lines and counters, stay until it begins.
    void forget();

 protected:
    AnalysisState(ChessPosition& position, Tables& tables);
    ~AnalysisState();

    bool stopped() const { return control_.action() == stop_action; }

    ChessPosition& position_;
    Tables& tables_;
    TranspositionTable& transposition_table_;
    MoveGenerator move_generator_;
    Egt4Pieces kbnk_table_;
    Egt4Pieces kqkr_table_;
    LmrTable const& lmr_table_;
    HistoryTable history_table_;
    std::unique_ptr<CounterMove> counter_moves_;
    Evaluation evaluation_;
    MultiPV mpv_;
    Killer killers_;
    TimeManager time_manager_;
    Timer search_timer_;
    std::atomic<unsigned int> max_threads_{1};
    ControlWords control_;
    mutable std::mutex analysis_mutex_;
    int id_ = 0;
    std::ofstream log_;
    bool log_on_ = false;
    SearchCounters counters_;
    SearchLimits limits_;
    StrengthLimits strength_;
    RootResult root_;
};

}  // namespace orvelin
