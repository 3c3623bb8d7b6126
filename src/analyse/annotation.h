#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "analyse/game.h"
#include "analyse/move_judgement.h"
#include "analyse/pgn_writer.h"
#include "analyse/position_search.h"
#include "analyse/sentence.h"

namespace orvelin::analyse {

/// What annotated games say of the moves of one game.
///
/// Each move that was searched gets the score behind it, its mark and a sentence, and the best line
/// as a variation where it was dubious or worse. What is told of a move, its score too, is from one
/// answer: the line that begins with it and the best one of the same position. So the marks, the
/// scores and the sentences of a game agree. Answers may be added in any order and may be missing;
/// they are not kept. The game and the tables must outlive it. One thread at a time.
class GameAnnotation {
 public:
    GameAnnotation(Tables const& tables, Game const& game);

    /// The answer for the position before the move of this index, from 0; one behind the last is
    /// not looked at.
    void add(std::size_t ply, Result const& result);

    /// The position before the move of this index, or behind the last, as the answers are for.
    std::string const& fen(std::size_t ply) const { return fens_.at(ply); }
    /// Nothing is known of a move that has no answer.
    Judgement const& judgement(std::size_t ply) const { return judgements_.at(ply); }
    Accuracy const& accuracy(bool white) const { return accuracy_[white ? 0 : 1]; }

    /// The game with all that was added, the tag Annotator with this value, and the accuracies
    /// before the first move.
    AnnotatedGame annotated(std::string const& annotator) const;

 private:
    void add_variation(MoveInGame const& move, AnnotatedMove& annotated) const;

    Tables const& tables_;
    Game const& game_;
    SentenceWriter writer_;
    /// One more than there are moves.
    std::vector<std::string> fens_;
    std::vector<AnnotatedMove> moves_;
    std::vector<Judgement> judgements_;
    std::array<Accuracy, 2> accuracy_;
};

/// The comment that programs read scores from: "[%eval 0.35]", "[%eval #-3]". The score is that of
/// a line from a position in which that side is to move, and stands behind the first move of the
/// line; empty behind a move that mates.
std::string eval_comment(int score, bool white_to_move);

}  // namespace orvelin::analyse
