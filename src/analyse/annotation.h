#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "analyse/game.h"
#include "analyse/move_judgement.h"
#include "analyse/pgn_writer.h"
#include "analyse/record.h"

namespace orvelin::analyse {

/// What annotated games say of the moves of one game.
///
/// Each move that was judged gets the score behind it, its mark and its sentence, and the best line
/// as a variation where it was dubious or worse. What is told of a move, its score too, is from one
/// record: that of the position before it. So the marks, the scores and the sentences of a game
/// agree. Records may be added in any order and may be missing; they are not kept. The game and the
/// tables must outlive it. One thread at a time.
class GameAnnotation {
 public:
    GameAnnotation(Tables const& tables, Game const& game);

    /// The record of the position before the move of this index, from 0. Without a judgement it
    /// says nothing, nor does one that is behind the last move, or of a move that has one already.
    void add(std::size_t ply, Record const& record);

    Accuracy const& accuracy(bool white) const { return accuracy_[white ? 0 : 1]; }

    /// The game with all that was added, the tag Annotator with this value, and the accuracies
    /// before the first move.
    AnnotatedGame annotated(std::string const& annotator) const;

 private:
    void add_variation(Record const& record, AnnotatedMove& annotated) const;

    Tables const& tables_;
    Game const& game_;
    std::vector<AnnotatedMove> moves_;
    std::vector<bool> judged_;
    std::array<Accuracy, 2> accuracy_;
};

/// The comment that programs read scores from: "[%eval 0.35]", "[%eval #-3]". The score is that of
/// a line from a position in which that side is to move, and stands behind the first move of the
/// line; empty behind a move that mates.
std::string eval_comment(int score, bool white_to_move);

}  // namespace orvelin::analyse
