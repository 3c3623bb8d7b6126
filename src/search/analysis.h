#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "position/move.h"
#include "position/move_list.h"
#include "position/square.h"
#include "search/analysis_state.h"
#include "search/principal_variation.h"
#include "search/search_window.h"
#include "search/tt_record.h"

namespace orvelin {

class ChessPosition;
class Egt4Pieces;
struct Tables;
class TTmove;

/// The search object and the body of the analysis thread.
///
/// Makes and unmakes its moves on the position that it is bound to. The analysis thread runs
/// operator() and, from it, every search function; whoever drives the search without that body may
/// call them on a thread of his own, one at a time. Other threads keep to set-up between searches
/// and to what AnalysisState offers them. Every search function leaves position, piece-square sums
/// and ply as it found them, on every path but that of an exception.
class Analysis : public AnalysisState {
 public:
    /// Binds to the position and the tables, readies for a search and clears the
    /// transposition table.
    Analysis(ChessPosition& position, Tables& tables);

    /// The thread body: polls the action every 5 ms, searches on think_action, returns
    /// once the quit flag is set.
    void operator()();
    /// Makes ready for a new position. Throws std::logic_error while a search runs.
    void init(ChessPosition const& position);
    /// Depth limit, search moves and time limits back to their defaults; the node limit stays.
    void reset();

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
    /// Makes a null move and searches reduced; the score is from the caller's side.
    int nullmove_search(int depth, int alpha, int beta);
    bool nullmove_allowed() const;

    /// Settles captures; qdepth counts down from 0.
    int quiescence(int alpha, int beta, int qdepth);
    /// Material gain of the move after the exchange on its destination has run off.
    int see(Move const& move);
    /// What the side to move gains at best by capturing on the square, 0 or more.
    int see(Square square);
    /// What the value of a leaf is multiplied by as the fifty-move limit comes near; 1 far from it,
    /// and below 0 past 100 reversible plies.
    double fading() const;

    /// Gives each move its class and sorts by it.
    void localsort(MoveList& list, int depth, bool pv, Move hash_move);
    /// Extra plies for the move: 0, 1 or 2.
    int extend(MoveList const& list, Move const& move);

    void make_move(Move const& move);
    /// Takes the same word as make_move: its class is read again. Only the mate threat test hands
    /// in a changed class.
    void unmake_move(Move const& move);
    void make_nullmove();
    void unmake_nullmove();
    /// Cheap screen of a hash move; not a test of legality.
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

    // Iterations, lines of the root, endgame tables.
    void begin_search();
    bool iteration_wanted() const;
    int search_iteration(SearchWindow const& window);
    void take_best_moves();
    bool aspiration_retry(SearchWindow& window, int score);
    void weaken();
    int wanted_lines() const;
    void search_further_lines(int depth);
    void search_root_pass(MoveList& list, int depth, PrincipalVariation& pass_line,
                          Move& pass_move);
    void publish(PrincipalVariation const& line);
    void build_endgame_table();
    bool lend_memory(Egt4Pieces& table);
    void build_while_time_remains(Egt4Pieces& table, int time_floor);

    // What every node does.
    /// Narrows the window to what mates allow; the node's value when nothing is left of it.
    std::optional<int> mate_distance_cut(int& alpha, int& beta) const;
    /// Mate or stalemate.
    int value_without_moves() const;
    /// Quiescence value of a leaf, faded as the fifty-move limit comes near.
    int leaf_value(int alpha, int beta);
    int fade(int value) const;
    bool reducible(Move const& move, int extension) const;

    // The open window. A value is returned where it is found before any move is searched.
    std::optional<int> pv_early_return();
    Move pv_hash_move() const;
    int search_pv_moves(MoveList& list, Move const& hash_move, int depth, int alpha, int beta,
                        PrincipalVariation& line);
    int pv_reduction(Move const& move, int depth, int index, int extension) const;
    int search_pv_move(int index, int depth, int reduction, int alpha, int beta,
                       PrincipalVariation& child_line);
    void raise_root(Move const& move, int depth, int alpha, PrincipalVariation& line);

    // The null window and quiescence.
    bool nullmove_cut(NullWindowNode& node);
    bool reduced_search_cut(NullWindowNode const& node);
    std::optional<int> table_cut(NullWindowNode& node, std::uint64_t key);
    bool hash_move_cut(NullWindowNode const& node);
    int search_null_window_moves(NullWindowNode const& node, MoveList& list);
    bool skip_late_move(NullWindowNode const& node, Move const& move, int index) const;
    int search_null_window_move(NullWindowNode const& node, MoveList const& list, Move const& move,
                                int index);
    void learn_cutoff(NullWindowNode const& node, MoveList const& list, int index);
    int quiescence_move(Move const& move, int alpha, int beta, int qdepth);

    // Order and depth of moves.
    Move move_before_last() const;
    /// localsort() without the sort.
    void give_classes(MoveList& list, int depth, bool pv, Move hash_move);
    void classify(MoveList& list);
    /// Gives the quiet moves that counters and history put forward their classes.
    void promote_quiet_moves(MoveList& list) const;
    void test_mate_threat(Move& move, int depth);
    /// What the opponent gains at best on the destination after a move of code normal_move.
    int replies_to(Move const& move) const;
    bool extends_by_one(MoveList const& list, Move const& move);
};

}  // namespace orvelin
