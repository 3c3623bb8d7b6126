#include "board/evaluation_text.h"

#include <algorithm>

#include "analyse/term_names.h"
#include "analyse/term_scores.h"

namespace orvelin::board {

namespace {

std::string group_id(std::string_view name) {
    std::string id(name);
    std::replace(id.begin(), id.end(), ' ', '_');
    return id;
}

void write_term(std::size_t index, WhiteEvaluation const& evaluation, double pawn,
                JsonWriter& answer) {
    analyse::TermName const& name = analyse::term_names()[index];
    float const units = evaluation.terms[index];
    answer.open('{');
    answer.text("id", name.code);
    answer.text("name", name.full);
    answer.text("meaning", name.meaning);
    answer.number("units", units);
    answer.number("value", static_cast<double>(units) / pawn);
    answer.close('}');
}

// In double precision the sum of numbers in single precision of this size is exact.
void write_group(analyse::term_group group, WhiteEvaluation const& evaluation, double pawn,
                 JsonWriter& answer) {
    std::string_view const name = analyse::group_name(group);
    answer.open('{');
    answer.text("id", group_id(name));
    answer.text("name", name);
    double sum = 0;
    answer.open("terms", '[');
    for (std::size_t i = 0; i < evaluation.terms.size(); ++i) {
        if (analyse::term_names()[i].group == group) {
            sum += static_cast<double>(evaluation.terms[i]);
            write_term(i, evaluation, pawn, answer);
        }
    }
    answer.close(']');
    answer.number("units", sum);
    answer.number("value", sum / pawn);
    answer.close('}');
}

}  // namespace

void write_evaluation(WhiteEvaluation const& evaluation, JsonWriter& answer) {
    play::WinDrawLoss const chances = evaluation.score.chances();
    double const pawn = analyse::pawn_value(evaluation.fen);
    answer.text("fen", evaluation.fen);
    answer.number("score", std::int64_t{evaluation.score.units});
    answer.number("cp", std::int64_t{evaluation.score.centipawns()});
    answer.open("wdl", '{');
    answer.number("win", std::int64_t{chances.win});
    answer.number("draw", std::int64_t{chances.draw});
    answer.number("loss", std::int64_t{chances.loss});
    answer.close('}');
    answer.number("winChance", evaluation.score.points());
    answer.number("pawn", pawn);
    answer.flag("isSum", evaluation.is_sum);
    answer.open("groups", '[');
    for (std::size_t group = 0; group < analyse::term_group_count; ++group) {
        write_group(static_cast<analyse::term_group>(group), evaluation, pawn, answer);
    }
    answer.close(']');
}

}  // namespace orvelin::board
