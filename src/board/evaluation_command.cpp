#include "analyse/term_scores.h"
#include "board/board_game.h"
#include "board/commands.h"
#include "board/core_state.h"
#include "board/evaluation_text.h"
#include "evaluation/linear_model.h"

namespace orvelin::board {

void answer_evaluation(Request const& request, CoreState& core, JsonWriter& answer) {
    BoardGame game(request, core.tables());
    analyse::Question question;
    question.fen = game.position().fen();
    question.chess960 = game.chess960();
    question.limit = {analyse::Limit::kind::static_eval, 0};
    analyse::Result const result = core.search().answer(question);
    int const units = game.position().white_to_move() ? result.static_score : -result.static_score;
    bool const is_sum = static_cast<int>(rounded(analyse::sum_of(result.terms))) == units;
    // Where the game is drawn the terms decide nothing, and the score is that of a draw.
    write_evaluation({question.fen, {result.drawn ? 0 : units, result.drawn}, result.terms, is_sum},
                     answer);
}

}  // namespace orvelin::board
