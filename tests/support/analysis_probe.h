#pragma once

#include <cstdint>
#include <vector>

#include "search/analysis.h"
#include "search/transposition_table.h"

namespace orvelin {

/// Reaches into an Analysis for the tests: sets the state of a node (ply, iteration, ordering
/// tables) and calls the steps that have no public name. Owns nothing; one thread.
class AnalysisProbe {
 public:
    explicit AnalysisProbe(Analysis& analysis) : analysis_(analysis) {}

    void ply(int ply) { analysis_.counters_.ply = ply; }
    void iteration(int iteration) { analysis_.counters_.iteration.store(iteration); }
    void mate_attack_count(int count) { analysis_.counters_.mate_attack_count = count; }
    void date(unsigned char date) { analysis_.counters_.date = date; }
    unsigned char date() const { return analysis_.counters_.date; }
    void best_score(int score) { analysis_.root_.best_score.store(score); }
    void best_moves(Move best, Move ponder) {
        analysis_.root_.best_move.store(best);
        analysis_.root_.ponder_move.store(ponder);
    }
    void seldepth(int ply) { analysis_.counters_.seldepth.store(ply); }
    void leaf_count(std::uint64_t count) { analysis_.counters_.leaf_count = count; }
    void quit() { analysis_.control_.set_quit(); }

    Killer& killers() { return analysis_.killers_; }
    HistoryTable& history() { return analysis_.history_table_; }
    CounterMove& counter_moves() { return *analysis_.counter_moves_; }
    PrincipalVariation& root_line() { return analysis_.root_.root_line; }
    MultiPV& lines() { return analysis_.mpv_; }
    TranspositionTable& table() { return analysis_.transposition_table_; }
    MoveGenerator& generator() { return analysis_.move_generator_; }

    int depth_limit() const { return analysis_.limits_.depth_limit.load(); }
    std::uint64_t max_nodes() const { return analysis_.limits_.max_nodes.load(); }
    unsigned int max_threads() const { return analysis_.max_threads_.load(); }
    int number_of_lines() const { return analysis_.mpv_.number(); }
    bool limit_strength() const { return analysis_.strength_.limit_strength.load(); }
    bool aspiration() const { return analysis_.limits_.aspiration.load(); }
    bool log_on() const { return analysis_.log_on_; }
    std::vector<Move> const& searchmoves() const { return analysis_.limits_.searchmoves; }

    bool take_think_action() { return analysis_.control_.take_think(); }
    void start_clock() { analysis_.time_manager_.start(); }
    bool iteration_wanted() const { return analysis_.iteration_wanted(); }
    bool aspiration_retry(SearchWindow& window, int score) {
        return analysis_.aspiration_retry(window, score);
    }
    void close_iteration() { analysis_.counters_.close_iteration(analysis_.stopped()); }
    int fade(int value) const { return analysis_.fade(value); }

 private:
    Analysis& analysis_;
};

}  // namespace orvelin
