#include "analyse/annotation.h"

#include <algorithm>
#include <optional>

#include "analyse/sentence_words.h"
#include "generation/tables.h"
#include "play/position_reader.h"
#include "play/reader_text.h"
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
    : tables_(tables), game_(game), judged_(game.moves.size(), false) {
    for (Move const& move : game.moves) {
        moves_.emplace_back();
        moves_.back().move = move;
    }
}

void GameAnnotation::add(std::size_t ply, Record const& record) {
    if (ply >= moves_.size() || judged_[ply] || !record.played || !record.played->judgement) {
        return;
    }
    judged_[ply] = true;
    PlayedMove const& played = *record.played;
    RecordJudgement const& judgement = *played.judgement;
    AnnotatedMove& annotated = moves_[ply];
    bool const white = white_moves(record.fen);
    accuracy_[white ? 0 : 1].add(judgement.mark, judgement.accuracy);
    if (judgement.mark != move_mark::none) {
        annotated.glyphs = {mark_glyph(judgement.mark)};
    }
    std::string const eval = played.line ? eval_comment(played.line->score.units, white) : "";
    annotated.comment = joined(eval, judgement.sentence);
    if (judgement.mark > move_mark::good) {
        add_variation(record, annotated);
    }
}

/// Nothing where the best line begins with the move itself.
void GameAnnotation::add_variation(Record const& record, AnnotatedMove& annotated) const {
    if (record.lines.empty()) {
        return;
    }
    RecordLine const& best = record.lines.front();
    std::vector<std::string_view> const words = play::words_of(best.moves);
    if (words.empty() || words.front() == record.played->move) {
        return;
    }
    ChessPosition position(tables_);
    position.fen(record.fen);
    Variation variation;
    for (std::string_view const word : words) {
        Move const move = play::find_legal_move(position, tables_, word);
        if (move.word() == 0 || variation.moves.size() == longest_variation) {
            break;
        }
        variation.moves.emplace_back();
        variation.moves.back().move = move;
        position.make_move(move);
    }
    if (!variation.moves.empty()) {
        variation.moves.front().comment = eval_comment(best.score.units, white_moves(record.fen));
        annotated.variations = {variation};
    }
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
