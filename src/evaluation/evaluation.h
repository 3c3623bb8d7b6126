#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "evaluation/distance.h"
#include "evaluation/linear_model.h"
#include "evaluation/material.h"
#include "evaluation/mobility.h"
#include "evaluation/pawn_hash_table.h"
#include "evaluation/pht_record.h"
#include "evaluation/piece_square_tables.h"
#include "evaluation/weight.h"
#include "position/bit_board.h"
#include "position/move.h"
#include "position/square.h"

namespace orvelin {

class ChessPosition;
struct Tables;

/// Static evaluation of one position: a linear model of `term::count` terms.
///
/// Owns the variable vector, the weights and all tables behind the terms; refers to the position,
/// which must outlive it. An evaluation computes every term again, unless nothing but the side to
/// move can differ from the last one, whose terms then hold; there is no early exit. The sum
/// blends middle-game and end-game weights by the phase. The piece-square sums are the only part
/// that follows the position move by move: after `init()` every move made or unmade must pass
/// through `make_move()` or `unmake_move()`. Used by one thread at a time, without locks. All
/// arithmetic is single precision unless said, and scores are those of a fixed order, so that they
/// are the same on every machine: the sum is taken in another order where that cannot be seen.
class Evaluation {
 public:
    /// Builds all members; the piece-square sums are those of the position as it stands.
    Evaluation(ChessPosition const& position, Tables& tables);
    Evaluation(Evaluation const&) = delete;
    Evaluation& operator=(Evaluation const&) = delete;

    /// Recomputes the piece-square sums from the board.
    void init();
    /// Does nothing: a new game keeps what stands in the way of none of its evaluations.
    void clear();
    /// Leaves nothing of the positions evaluated so far that a later evaluation or search reads:
    /// passed pawns and attack maps, which a search may read before its own first evaluation, and
    /// the pawn record of a board without pawns are those of a new object. The counters stay, and
    /// so do the phase and score of the last evaluation and what only spares work.
    void forget();
    /// Opens (emptied) or closes "eval_log.log", which nothing writes to yet.
    void set_log(bool on);

    /// Score of the position from the point of view of the side to move; a pawn is about 250 in
    /// the middle game and 206 in the end game. Allocates nothing.
    int static_eval();
    /// Follows a move that is made on the position.
    void make_move(Move const& move) {
        terms_may_differ_ = true;
        piece_square_tables_.make_move(move);
    }
    /// Follows a move that is unmade.
    void unmake_move(Move const& move) {
        terms_may_differ_ = true;
        piece_square_tables_.unmake_move(move);
    }

    /// Asks for the pawn record of the position as it stands, ahead of the evaluation that will
    /// need it; changes nothing.
    void prefetch_pawns() const;

    /// Table of the terms of the last evaluation, without the endgame functions.
    std::string report();
    /// One line of counters.
    std::string stats() const;
    /// FEN of the position.
    std::string fen() const;

    /// Variables of the last evaluation, truncated.
    int material() const;
    int mobility() const;
    int king_safety() const;
    /// Passed pawns of both sides, as the last evaluation left them.
    BitBoard passed_pawns() const;
    /// King steps between two squares.
    int distance_between(Square const& from, Square const& to) const;
    /// Least king steps to a member of the set, 8 for the empty set.
    int distance_between(Square const& from, BitBoard const& set) const;

    // Each step of static_eval() writes its slots of the variable vector (or the phase). The next
    // evaluation takes nothing from an earlier one.
    void compute_phase();
    void compute_material();
    void compute_mobility();
    void compute_pst();
    void compute_pawn_eval();
    void compute_development();
    void compute_space();
    void compute_king_safety();
    void compute_king_activity();
    void compute_pinned_pieces();
    void compute_opposite_colored_bishops();

    // Specialised endgames: the score from White's point of view, on the blended score.
    int KQK();
    int KRK();
    int KNNK() const;
    int KBBK() const;
    int KBNK();
    int KPK() const;
    int KBPK() const;
    int KRPKR() const;
    int KQKR();

    /// Terms of the last evaluation, in the order of `term`. The reference goes on to those of the
    /// next evaluation with the next call.
    std::vector<float> const& variable_vector() const;
    std::vector<float> const& weight_mg_vector() const { return weight_.mg; }
    std::vector<float> const& weight_eg_vector() const { return weight_.eg; }
    /// Attack maps of the last evaluated position.
    Mobility const& mobility_maps() const { return mobility_; }
    PieceSquareTables const& piece_square_tables() const { return piece_square_tables_; }
    /// Phase of the last evaluation: 1 and 0 with all pieces on the board, 0 and 1 without any.
    float mg_phase() const { return mg_phase_; }
    float eg_phase() const { return eg_phase_; }
    /// Score of the last evaluation, the endgame function's result where one applies, before the
    /// sign of the side to move; White's view.
    float score() const { return score_; }
    /// Whether set_log() switched the log on.
    bool log() const { return log_; }
    /// Counters since construction.
    std::uint64_t total_evals() const { return total_evals_; }
    std::uint64_t pawn_evals() const { return pawn_evals_; }
    std::uint64_t missed_pht_reads() const { return missed_pht_reads_; }

 private:
    // These fill `terms_`.
    void find_phase();
    void find_phase_and_material();
    void find_mobility_terms();
    void find_pst_terms();
    /// Makes the record of the position's pawn key the current one, from the table or computed.
    void find_pawn_record();
    /// The relations of the position's pawns and kings, kept in its record where that can be. The
    /// record and the maps around the kings have to be those of the position.
    king_relations_t const& find_king_relations();
    /// Computes them on the record and the maps as they stand; the squares of the kings stay.
    void compute_king_relations(king_relations_t& relations) const;
    /// The same, kept in no record.
    king_relations_t const& loose_king_relations();
    void find_pawn_terms(king_relations_t const& relations);
    void find_development();
    void find_king_activity(king_relations_t const& relations);
    void find_pinned_pieces();
    void find_opposite_colored_bishops();
    void find_stm();
    /// A step by itself may be taken on another position than the last evaluation was.
    void forget_last_evaluation();

    float blend_stm(float score) const;
    /// Whether all but the side to move is as at the last evaluation, which this one becomes.
    bool terms_are_current();
    /// Computes all terms but the side to move, and their loose sum.
    void evaluate_terms();
    /// Finds the score unless the loose sum leaves two, and says whether it has.
    bool score_by_loose_sum();
    void score_by_ordered_sum();
    float scaled_by_bishops(float score) const;
    /// False for nearly all material that has no endgame function.
    static bool may_have_endgame(MaterialIndex material) {
        return (material.index() & ~endgame_material_bits) == 0;
    }
    void dispatch_endgame();

    /// All bits of the material words that have an endgame function.
    static constexpr std::uint64_t endgame_material_bits = 0x0001133100011331;

    ChessPosition const& position_;
    PawnHashTable pawn_hash_table_;
    Material material_;
    PieceSquareTables piece_square_tables_;
    Mobility mobility_;
    Distance distance_;
    /// The empty record that is the current one at first. A board without pawns has key 0 and finds
    /// it as its own then (oddity 110).
    PHTrecord first_record_;
    /// The record of the last pawn structure seen: the first one or a slot of the table.
    PHTrecord* pawn_record_ = &first_record_;
    /// The last relations that no record keeps.
    king_relations_t loose_relations_;
    Weight weight_;
    /// The terms as floats, written when they are asked for: a search never does.
    mutable std::vector<float> variable_vector_;
    bool log_ = false;
    std::ofstream log_stream_;
    std::uint64_t total_evals_ = 0;
    std::uint64_t pawn_evals_ = 0;
    std::uint64_t missed_pht_reads_ = 0;
    /// Terms of the position, as they go into the variable vector.
    terms_t terms_;
    /// Material word of the phase below; no board has all pieces of each kind.
    static constexpr std::uint64_t no_material = ~std::uint64_t{0};
    std::uint64_t phase_material_ = no_material;
    /// Since the last evaluation a move was made or unmade, or a step was taken by itself.
    bool terms_may_differ_ = true;
    /// The state of the position at the last evaluation, see terms_are_current().
    std::uint64_t evaluated_moves_ = 0;
    std::uint64_t evaluated_set_ups_ = 0;
    /// See loose_sum_t.
    float loose_sum_ = 0.0F;
    float loose_sum_error_ = 0.0F;
    /// Those of the phase below.
    Weight::row_t const* blended_weights_ = &Weight::blended_row(Weight::most_phases);
    float mg_phase_ = 1.0F;
    float eg_phase_ = 0.0F;
    float score_ = 0.0F;
};

}  // namespace orvelin
