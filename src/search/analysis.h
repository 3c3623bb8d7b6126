#pragma once

#include <atomic>
#include <cstdint>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "endgame/egt4_pieces.h"
#include "evaluation/evaluation.h"
#include "generation/move_generator.h"
#include "position/move.h"
#include "position/move_list.h"
#include "position/square.h"
#include "search/action.h"
#include "search/counter_move.h"
#include "search/history_table.h"
#include "search/killer.h"
#include "search/multi_pv.h"
#include "search/principal_variation.h"
#include "search/score.h"
#include "search/tt_record.h"
#include "time/time_manager.h"
#include "time/timer.h"

namespace orvelin {

class ChessPosition;
class LmrTable;
struct Tables;
class TranspositionTable;
class TTmove;

/// Bounds within which the root is searched.
struct SearchWindow {
    int alpha = -infinite_score;
    int beta = infinite_score;
};

/// Told of every return of the root search: the window that was searched and the score.
/// Called on the searching thread, before the window is moved.
using RootObserver = std::function<void(int alpha, int beta, int score)>;

/// The search object and the body of the analysis thread.
///
/// Bound for life to one position, on which it makes and unmakes its moves, and to the
/// tables, which it does not own; owns all else that a search needs. The analysis thread
/// runs operator() and, from it, every search function. The main thread writes the limits,
/// as a rule between searches and now and then during one, talks to the thread through action,
/// status and quit flag, and reads what reporting shows: all those words are atomic, the ranked
/// lines are guarded by the analysis mutex, the list of search moves and the pair of action and
/// status by locks of their own. No two locks are ever held together.
///
/// Every search function leaves the position, the piece-square sums and the ply as it
/// found them, on every path but that of an exception.
class Analysis {
 public:
    /// Binds to the position and the tables, readies for a search and clears the
    /// transposition table.
    Analysis(ChessPosition& position, Tables& tables);
    Analysis(Analysis const&) = delete;
    Analysis& operator=(Analysis const&) = delete;
    ~Analysis();

    // The analysis thread and its control words.

    /// The thread body: polls the action every 5 ms, searches on think_action, returns
    /// once the quit flag is set.
    void operator()();
    void set_action(action_t action) {
        std::lock_guard const lock(control_mutex_);
        action_.store(action);
    }
    /// Takes back a think action that the thread has not yet taken; true when there was one.
    bool withdraw_think();
    action_t get_action() const { return action_.load(); }
    void set_status(int status) {
        std::lock_guard const lock(control_mutex_);
        status_.store(status);
    }
    int get_status() const { return status_.load(); }
    /// Sets the quit flag; a running search must be stopped by an action.
    void quit() { quit_.store(true); }

    // Set-up.

    /// Makes ready for a new position. Throws std::logic_error while a search runs.
    void init(ChessPosition const& position);
    /// Depth limit, search moves and time limits back to their defaults; the node limit stays.
    void reset();

    // Limits of the next search; times in milliseconds.

    void set_wtime(int milliseconds);
    void set_btime(int milliseconds);
    void set_winc(int milliseconds);
    void set_binc(int milliseconds);
    /// Also takes the side to move from the position; a value below 1 gives 30.
    void set_movestogo(int moves);
    void set_depth(int plies);
    /// Writes the depth limit: there is no separate mate search.
    void set_mate(int plies) { set_depth(plies); }
    void set_nodes(std::uint64_t nodes);
    void set_max_nodes(std::uint64_t nodes) { set_nodes(nodes); }
    void reset_max_nodes();
    /// A value of 0 gives 1.
    void set_movetime(int milliseconds);
    void set_infinite(bool on);
    void set_pondering(bool on);
    void ponderhit() { set_pondering(false); }
    void set_lag(int milliseconds);
    /// Restricts the first line of the root to these moves, and clears the transposition
    /// table, also for an empty list, which means no restriction.
    void set_searchmoves(std::vector<Move> moves);
    TimeManager& time_manager() { return time_manager_; }

    // Options.

    /// Wanted number of lines: 0 gives 1, at most 50.
    void set_multipv(unsigned int lines);
    /// 0 gives 1, at most 2; stored and never read, the search has one thread.
    void set_max_threads(unsigned int threads);
    /// Off also lifts the strength limits.
    void set_uci_limitstrength(bool on);
    /// Strength in Elo, clamped to 1500..2200; sets depth limit and margin of weakened play.
    void set_uci_elo(int elo);
    /// Size of the transposition table in MiB, as TranspositionTable::set_size. Endgame tables in
    /// its memory go with the old one.
    void set_hash_size(int megabytes);
    void set_aspiration(bool on) { aspiration_ = on; }
    void hashtable_enabled(bool on);
    /// Opens or closes the trace files "analysis_<position id>.log" and "eval_log.log".
    void set_log(bool on);
    void set_id(int id) { id_ = id; }
    int get_id() const { return id_; }

    // What reporting reads.

    std::uint64_t get_node_count() const { return node_count_.load(std::memory_order_relaxed); }
    /// Belongs between searches, as does clear_node_count().
    void add_node_count(std::uint64_t nodes) { node_count_.fetch_add(nodes); }
    void clear_node_count() { node_count_.store(0); }
    /// Milliseconds since the last search began; goes on growing after its end.
    std::uint64_t get_running_time() const;
    /// Effective branching factor of the last finished iteration.
    float get_ebf() const { return ebf_.load(); }
    int get_iteration() const { return iteration_.load(); }
    int get_seldepth() const { return seldepth_.load(); }
    /// Score of the root's best move.
    int eval() const { return best_score_.load(); }
    Move best_move() const { return best_move_.load(); }
    Move pondermove() const { return ponder_move_.load(); }
    /// Use of the transposition table by the current search, 0 to 1000, from a sample.
    int get_hashfull() const;
    /// Copy of the ranked lines, taken under the analysis mutex.
    MultiPV mpv() const;
    /// Copy of the first ranked line, empty when there is none.
    PrincipalVariation pv() const;
    /// Version of the ranked lines.
    int mpv_version() const;

    // Parts and state, for reports, tools and tests.

    ChessPosition& chessposition() const { return position_; }
    CounterMove const& countermove() const { return *counter_moves_; }
    HistoryTable const& historytable() const { return history_table_; }
    Evaluation& evaluation() { return evaluation_; }
    PrincipalVariation const& root_line() const { return root_line_; }
    Egt4Pieces const& kbnk_table() const { return kbnk_table_; }
    Egt4Pieces const& kqkr_table() const { return kqkr_table_; }
    /// Hand-overs from the main search to quiescence since the last finished iteration.
    std::uint64_t leaf_count() const { return leaf_count_; }
    int mate_attack_count() const { return mate_attack_count_; }
    int ply() const { return ply_; }
    int strength_depth() const { return max_strength_depth_.load(); }
    int strength_margin() const { return strength_margin_.load(); }
    int elo() const { return elo_.load(); }

    /// Evaluation of the position from the side to move.
    int static_eval() { return evaluation_.static_eval(); }
    /// Evaluates and returns the report text.
    std::string static_eval_report();

    void clear_hash();
    void clear_killer();
    /// Clears the history table and the counter moves.
    void clear_history();
    /// Kept for symmetry with its siblings: an evaluation has nothing to clear.
    void clear_eval() {}
    /// Clears hash, killers, history and counter moves, and the node count.
    void clear();

    // The search.

    /// Deepens iteration by iteration to the limits; the whole of one `go`.
    void iterative_search();
    /// The same, telling the observer of each return of the root search.
    void iterative_search(RootObserver const& observer);
    /// Searches the root and publishes its lines; the list is not read.
    int root_search(MoveList& list, int depth, int alpha, int beta);
    /// At the root, reduces the list to the moves of the `searchmoves` limit, if one is set.
    void select_searchmoves(MoveList& list);
    /// Takes the first entry equal to the move out of the list, keeping the order.
    void remove(Move const& move, MoveList& list);

    /// Open-window search. `line` becomes the best line when a move raises alpha.
    int pv_search(int const& depth, int alpha, int beta, PrincipalVariation& line);
    /// After a first move that failed low: brings the first later move that beats alpha
    /// in a shallow search to index 1.
    void iidsort(MoveList& list, int depth, int alpha, int beta);

    /// Search with a window one wide; holds all pruning, reductions and learning.
    int nullwindow_search(int depth, int alpha, int beta);
    /// Passes the move and searches reduced; the score is from the caller's side.
    int nullmove_search(int depth, int alpha, int beta);
    bool nullmove_allowed() const;

    /// Settles captures; qdepth counts down from 0.
    int quiescence(int alpha, int beta, int qdepth);
    /// Material gain of the move after the exchange on its destination has run off.
    int see(Move const& move);
    /// What the side to move gains at best by capturing on the square, 0 or more.
    int see(Square square);

    /// Gives each move its class and sorts by it.
    void localsort(MoveList& list, int depth, bool pv, Move hash_move);
    /// Extra plies for the move: 0, 1 or 2.
    int extend(MoveList const& list, Move const& move);

    void make_move(Move const& move);
    /// Takes the same word as make_move: its class is read again. The mate threat test alone hands
    /// in a changed class.
    void unmake_move(Move const& move);
    void make_nullmove();
    void unmake_nullmove();
    /// Cheap screen of a table move; not a test of legality.
    bool is_legal(TTmove& ttmove) const;
    /// Debugging text: the moves from the start of the game to the current node.
    std::string dump_line() const;

    /// Counts a node; asks for a stop at the node limit or, now and then, at the time limit.
    void new_node();
    /// The only way in which the search writes to the transposition table.
    void put_in_tt(bound_t bound, int depth, int score, Move move, unsigned char date);

 private:
    /// Lets the tests set the state of a node (ply, iteration, node move) and look into it.
    friend class AnalysisProbe;

    /// State of one null-window node, shared by its stages.
    struct NullWindowNode;

    bool stopped() const { return action_.load() == stop_action; }
    bool take_think_action();
    void take_stop_action();

    void begin_search();
    bool iteration_wanted() const;
    int search_iteration(SearchWindow const& window);
    void take_best_moves();
    bool aspiration_retry(SearchWindow& window, int score);
    void close_iteration();
    void weaken();
    /// Spends spare time on the endgame table of the material on the board, if there is one.
    void build_endgame_table();
    bool lend_memory(Egt4Pieces& table);
    void extend(Egt4Pieces& table, int time_floor);
    int wanted_lines() const;
    void search_further_lines(int depth);
    void search_root_pass(MoveList& list, int depth, PrincipalVariation& pass_line,
                          Move& pass_move);
    void publish(PrincipalVariation const& line);

    /// Applies the mate distance bounds; true when `result` is the node's value.
    bool mate_distance_cut(int& alpha, int& beta, int& result) const;
    /// Quiescence value of a leaf, faded as the fifty-move limit comes near.
    int leaf_value(int alpha, int beta);
    int fade(int value) const;

    Move pv_hash_move() const;
    int search_pv_moves(MoveList& list, Move const& hash_move, int depth, int alpha, int beta,
                        PrincipalVariation& line);
    bool reducible(Move const& move, int extension) const;
    int pv_reduction(Move const& move, int depth, int index, int extension) const;
    int search_pv_move(int index, int depth, int reduction, int alpha, int beta,
                       PrincipalVariation& child_line);
    void raise_root(Move const& move, int depth, int alpha, PrincipalVariation& line);
    /// True when the node's value is found before any move is searched.
    bool pv_early_return(int& result);

    bool nullmove_cut(NullWindowNode& node);
    bool reduced_search_cut(NullWindowNode const& node);
    bool table_cut(NullWindowNode& node, std::uint64_t key, int& result);
    bool hash_move_cut(NullWindowNode const& node);
    int search_null_window_moves(NullWindowNode const& node, MoveList const& list);
    bool skip_late_move(NullWindowNode const& node, Move const& move, int index) const;
    int search_null_window_move(NullWindowNode const& node, MoveList const& list, Move const& move,
                                int index);
    void learn_cutoff(NullWindowNode const& node, MoveList const& list, int index);

    int quiescence_move(Move const& move, int alpha, int beta, int qdepth);

    Move move_before_last() const;
    void classify(MoveList& list);
    /// Gives the quiet moves that counters and history put forward their classes.
    void promote_quiet_moves(MoveList& list) const;
    void test_mate_threat(Move& move, int depth);

    /// What the opponent gains at best on the destination after a move of code normal_move.
    int replies_to(Move const& move) const;
    bool extends_by_one(MoveList const& list, Move const& move);

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
    PrincipalVariation root_line_;
    MultiPV mpv_;
    Killer killers_;
    TimeManager time_manager_;
    Timer search_timer_;
    std::atomic<unsigned int> max_threads_{1};
    std::atomic<action_t> action_{no_action};
    std::atomic<int> status_{ready_status};
    std::atomic<bool> quit_{false};
    /// Held while action and status change as a pair, so that neither thread ever sees an
    /// action taken whose search is not yet announced.
    std::mutex control_mutex_;
    mutable std::mutex analysis_mutex_;
    std::atomic<int> iteration_{0};
    int ply_ = 0;
    std::atomic<int> seldepth_{0};
    std::atomic<unsigned char> date_{0};
    std::atomic<std::uint64_t> node_count_{0};
    int mate_attack_count_ = 0;
    int id_ = 0;
    std::uint64_t leaf_count_ = 0;
    std::atomic<float> ebf_{0.0F};
    std::ofstream log_;
    bool log_on_ = false;
    int maximum_iteration_ = max_iteration;
    std::atomic<int> depth_limit_{max_iteration};
    std::atomic<std::uint64_t> max_nodes_{no_node_limit};
    std::vector<Move> searchmoves_;
    mutable std::mutex searchmoves_mutex_;
    std::atomic<bool> limit_strength_{false};
    std::atomic<int> elo_{2000};
    std::atomic<int> max_strength_depth_{102};
    std::atomic<int> strength_margin_{0};
    std::atomic<int> best_score_{0};
    std::atomic<Move> best_move_{};
    std::atomic<Move> ponder_move_{};
    std::atomic<bool> aspiration_{true};

 public:
    /// The node limit that means none.
    static constexpr std::uint64_t no_node_limit = std::uint64_t{1} << 62;
};

}  // namespace orvelin
