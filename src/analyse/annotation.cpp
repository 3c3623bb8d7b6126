#include "analyse/annotation.h"

#include <algorithm>
#include <optional>

#include "analyse/sentence_words.h"
#include "generation/tables.h"
#include "position/chess_position.h"
#include "search/score.h"

namespace orvelin::analyse {

namespace {

/// A longer variation tells a reader nothing.
constexpr std::size_t longest_variation = 12;

bool white_moves(std::string const& fen) {
    return fen.substr(fen.find(' ') + 1, 1) == "w";
}

std::string joined(std::string const& one, std::string const& other) {
    return one + (one.empty() || other.empty() ? "" : " ") + other;
}

/// "White: accuracy 92 %, 3 ?!, 1 ?, 0 ??."
std::string accuracy_text(char const* side, Accuracy const& accuracy) {
    std::optional<double> const percent = accuracy.percent();
    if (!percent) {
        return "";
    }
    std::string text =
        std::string(side) + ": accuracy " + std::to_string(static_cast<int>(*percent + 0.5)) + " %";
    for (move_mark const mark : {move_mark::dubious, move_mark::mistake, move_mark::blunder}) {
        text += ", " + std::to_string(accuracy.count(mark)) + ' ' + std::string(mark_text(mark));
    }
    return text + '.';
}

}  // namespace

// Behind the move it is one ply less to the mate: one move less for the side that played it, and as
// many as before for the other one.
std::string eval_comment(int score, bool white_to_move) {
    if (score >= mate_score - 1) {
        return "";
    }
    int const behind = score >= min_mate_score ? score + 1 : score;
    return "[%eval " + eval_text(behind, white_to_move) + ']';
}

GameAnnotation::GameAnnotation(Tables const& tables, Game const& game)
    : tables_(tables), game_(game), writer_(tables) {
    ChessPosition position(tables);
    position.fen(game.start_fen);
    position.set_chess960(game.chess960);
    fens_.push_back(game.start_fen);
    for (Move const& move : game.moves) {
        position.make_move(move);
        fens_.push_back(position.fen());
        moves_.emplace_back();
        moves_.back().move = move;
    }
    judgements_.resize(moves_.size());
}

void GameAnnotation::add(std::size_t ply, Result const& result) {
    if (ply >= moves_.size() || judgements_[ply].known) {
        return;
    }
    AnnotatedMove& annotated = moves_[ply];
    MoveInGame const move{fens_[ply], annotated.move,
                          taken_by(ply == 0 ? Move() : game_.moves[ply - 1]), &result};
    Judgement const judgement = judge(move, tables_);
    judgements_[ply] = judgement;
    if (!judgement.known) {
        return;
    }
    bool const white = white_moves(move.fen);
    accuracy_[white ? 0 : 1].add(judgement.mark, move_accuracy(judgement));
    if (judgement.mark != move_mark::none) {
        annotated.glyphs = {mark_glyph(judgement.mark)};
    }
    annotated.comment =
        joined(eval_comment(move.line()->score, white), writer_.write(move, judgement));
    if (judgement.mark > move_mark::good && !judgement.is_best) {
        add_variation(move, annotated);
    }
}

void GameAnnotation::add_variation(MoveInGame const& move, AnnotatedMove& annotated) const {
    Line const& best = *move.best();
    Variation variation;
    for (Move const& made : best.moves) {
        if (variation.moves.size() == longest_variation) {
            break;
        }
        variation.moves.emplace_back();
        variation.moves.back().move = made;
    }
    variation.moves.front().comment = eval_comment(best.score, white_moves(move.fen));
    annotated.variations = {variation};
}

AnnotatedGame GameAnnotation::annotated(std::string const& annotator) const {
    AnnotatedGame annotated;
    annotated.tags = game_.tags;
    std::erase_if(annotated.tags, [](Tag const& tag) { return tag.name == "Annotator"; });
    annotated.tags.push_back({"Annotator", annotator});
    annotated.start_fen = game_.start_fen;
    annotated.chess960 = game_.chess960;
    annotated.comment =
        joined(accuracy_text("White", accuracy(true)), accuracy_text("Black", accuracy(false)));
    annotated.moves = moves_;
    annotated.result = game_.result;
    return annotated;
}

}  // namespace orvelin::analyse
