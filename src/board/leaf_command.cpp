#include <cmath>

#include "analyse/record.h"
#include "analyse/san.h"
#include "board/board_game.h"
#include "board/commands.h"
#include "board/core_state.h"
#include "board/evaluation_text.h"
#include "play/win_chance.h"
#include "search/score.h"

namespace orvelin::board {

namespace {

/// Lines of a search are no longer.
constexpr std::size_t longest_line = max_iteration;

/// The score in engine units. A page may know no more than the hundredths that the protocol has,
/// each of which stands for three units: the nearest is near enough to find the leaf.
int score_of(Request const& request) {
    auto const units = request.number("score");
    auto const centipawns = request.number("cp");
    if (units.has_value() == centipawns.has_value()) {
        throw RequestError("a score in engine units or cp, in hundredths, is expected");
    }
    if (units) {
        return static_cast<int>(request.number("score", 0, -infinite_score, infinite_score));
    }
    int const most = play::to_centipawns(infinite_score);
    auto const wanted = static_cast<double>(request.number("cp", 0, -most, most));
    return static_cast<int>(std::lround(wanted * play::even_chance_score / 100.0));
}

void write_leaf(analyse::Line const& line, BoardGame const& game, std::size_t played,
                CoreState& core, JsonWriter& answer) {
    std::string const fen = game.fen_at(played);
    analyse::Leaf const& leaf = line.leaf;
    bool const white = fen.find(" w ") != std::string::npos;
    answer.open("leaf", '{');
    answer.text("fen", leaf.fen);
    answer.number("score", std::int64_t{leaf.score});
    answer.number("fading", leaf.fading);
    answer.open("moves", '[');
    for (Move const& move : leaf.moves) {
        answer.text(move.algebraic(game.chess960()));
    }
    answer.close(']');
    answer.open("sans", '[');
    for (std::string const& san : analyse::san_line(fen, core.tables(), leaf.moves)) {
        answer.text(san);
    }
    answer.close(']');
    answer.open("evaluation", '{');
    write_evaluation({leaf.fen, {white ? leaf.score : -leaf.score, false}, leaf.terms, true},
                     answer);
    answer.close('}');
    answer.close('}');
    answer.null("why");
}

}  // namespace

void answer_leaf(Request const& request, CoreState& core, JsonWriter& answer) {
    BoardGame game(request, core.tables());
    std::size_t const played = game.moves().size();
    auto const texts = request.texts("line", longest_line);
    if (texts.empty()) {
        throw RequestError("line: one move at least is expected");
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
        game.make(texts[i], i + 1);
    }
    analyse::Line line;
    line.depth = 1;
    line.score = score_of(request);
    line.moves.assign(game.moves().begin() + static_cast<std::ptrdiff_t>(played),
                      game.moves().end());
    core.search().explain(game.fen_at(played), game.chess960(), line);
    if (line.why_not == analyse::unexplained::none) {
        write_leaf(line, game, played, core, answer);
        return;
    }
    answer.null("leaf");
    answer.text("why", analyse::record_line(line, true, game.chess960()).unexplained);
}

}  // namespace orvelin::board
