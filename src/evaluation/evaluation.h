#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "evaluation/distance.h"
#include "evaluation/material.h"
#include "evaluation/mobility.h"
#include "evaluation/pawn_hash_table.h"
#include "evaluation/pht_record.h"
#include "evaluation/piece_square_tables.h"
#include "evaluation/weight.h"
#include "generation/tables.h"
#include "position/bit_board.h"
#include "position/move.h"
#include "position/square.h"

namespace orvelin {

class ChessPosition;

/// Static evaluation of one position: a linear model of 47 terms.
///
/// Owns the variable vector, the weights and all tables behind the terms; refers to the position,
/// which must outlive it. Every term is computed in every call, and the sum blends middle-game
/// and end-game weights by the phase. The piece-square sums are the only part that follows the
/// position move by move: after `init()` every move made or taken back must pass through
/// `make_move()` or `unmake_move()`. Used by one thread at a time, without locks. All arithmetic
/// is single precision unless said, in a fixed order, so scores are the same on every machine.
class Evaluation {
 public:
    /// Builds all members; the piece-square sums are those of the position as it stands.
    Evaluation(ChessPosition const& position, Tables& tables);
    Evaluation(Evaluation const&) = delete;
    Evaluation& operator=(Evaluation const&) = delete;

    /// Recomputes the piece-square sums from the board.
    void init();
    /// Does nothing: no state of an evaluation depends on the game.
    void clear();
    /// Opens (emptied) or closes "eval_log.log", which nothing writes to yet.
    void set_log(bool on);

    /// Score of the position from the point of view of the side to move; a pawn is about 250 in
    /// the middle game and 206 in the end game. Allocates nothing.
    int static_eval();
    /// Follows a move that is made on the position.
    void make_move(Move const& move) { piece_square_tables_.make_move(move); }
    /// Follows a move that is taken back.
    void unmake_move(Move const& move) { piece_square_tables_.unmake_move(move); }

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

    // Each step of static_eval() writes its slots of the variable vector (or the phase).
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

    /// Terms of the last evaluation, in the order of `term`.
    std::vector<float> const& variable_vector() const { return variable_vector_; }
    std::vector<float> const& weight_mg_vector() const { return weight_.mg; }
    std::vector<float> const& weight_eg_vector() const { return weight_.eg; }
    /// Attack maps of the last evaluated position.
    Mobility const& mobility_maps() const { return mobility_; }
    PieceSquareTables const& piece_square_tables() const { return piece_square_tables_; }
    /// Phase of the last evaluation: 1 and 0 with all men on the board, 0 and 1 without any piece.
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
    void compute_stm();
    void blend();
    void scale_opposite_bishops();
    void dispatch_endgame();
    /// Makes the record of pawn key `key` the current one, from the table or anew.
    void fetch_pawn_record(std::uint64_t key);
    /// Copies sets, scores and pawn terms out of the current record.
    void use_pawn_record();

    ChessPosition const& position_;
    PawnHashTable pawn_hash_table_;
    Material material_;
    PieceSquareTables piece_square_tables_;
    Mobility mobility_;
    Distance distance_;
    PHTrecord pht_record_;
    Weight weight_;
    std::vector<float> variable_vector_;
    bool log_ = false;
    std::ofstream log_stream_;
    std::uint64_t total_evals_ = 0;
    std::uint64_t pawn_evals_ = 0;
    std::uint64_t missed_pht_reads_ = 0;
    BitBoard white_passed_;
    BitBoard black_passed_;
    BitBoard white_stop_;
    BitBoard black_stop_;
    BitBoard white_ahead_;
    BitBoard black_ahead_;
    BitBoard white_behind_;
    BitBoard black_behind_;
    BitBoard white_weak_;
    BitBoard black_weak_;
    BitBoard white_open_files_;
    BitBoard black_open_files_;
    float mg_phase_ = 1.0F;
    float eg_phase_ = 0.0F;
    int white_passer_score_ = 0;
    int black_passer_score_ = 0;
    unsigned int white_pawn_shield_ = 0;
    unsigned int black_pawn_shield_ = 0;
    float score_ = 0.0F;
};

}  // namespace orvelin
