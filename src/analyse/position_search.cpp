#include "analyse/position_search.h"

#include <algorithm>
#include <atomic>

#include "analyse/leaf_finder.h"
#include "analyse/line_search.h"
#include "analyse/static_evaluator.h"
#include "generation/tables.h"
#include "play/dead_draw.h"
#include "play/position_reader.h"
#include "position/chess_position.h"
#include "search/analysis.h"
#include "search/score.h"

namespace orvelin::analyse {

namespace {

static_assert(most_lines == AnalysisState::most_lines);

/// The legal move with the same squares and code; whether it gives check need not be known.
Move find_legal(std::vector<Move> const& legal, Move const& wanted) {
    auto const found = std::find_if(legal.begin(), legal.end(), [&wanted](Move const& move) {
        return move.from() == wanted.from() && move.to() == wanted.to() &&
               move.code() == wanted.code();
    });
    return found == legal.end() ? Move() : *found;
}

/// Whatever the search thinks of it.
bool is_drawn(std::string const& fen, ChessPosition const& position, Tables const& tables) {
    return play::is_mate_impossible(fen) ||
           (!position.check() && play::legal_moves(position, tables).empty());
}

}  // namespace

struct PositionSearch::State {
    State() : position(tables), analysis(position, tables), evaluator(tables) {}

    void search(Question const& question, Result& result);
    Line search_played(Question const& question, Result const& result, Move played);
    Line search_by_itself(Question const& question, std::vector<Move> const& among);
    void complete(Question const& question, Line& line);

    Tables tables;
    ChessPosition position;
    Analysis analysis;
    StaticEvaluator evaluator;
    LeafFinder leaf_finder{tables, analysis, evaluator};
    std::atomic<bool> interrupted{false};
};

PositionSearch::PositionSearch() : state_(std::make_unique<State>()) {}

PositionSearch::~PositionSearch() = default;

Result PositionSearch::answer(Question const& question) {
    state_->interrupted.store(false);
    Result result;
    state_->evaluator.evaluate(question.fen);
    result.static_score = state_->evaluator.score();
    result.terms = state_->evaluator.terms();
    result.drawn = is_drawn(question.fen, state_->evaluator.position(), state_->tables);
    if (question.limit.what != Limit::kind::static_eval) {
        state_->search(question, result);
    }
    return result;
}

void PositionSearch::explain(std::string const& fen, bool chess960, Line& line) {
    state_->interrupted.store(false);
    state_->position.set_chess960(chess960);
    Question question;
    question.fen = fen;
    state_->complete(question, line);
}

// In this order: the search that is about to begin looks at the first behind the point at which it
// takes back the second.
void PositionSearch::interrupt() {
    state_->interrupted.store(true);
    state_->analysis.set_action(stop_action);
}

Tables const& PositionSearch::tables() const {
    return state_->tables;
}

void PositionSearch::State::search(Question const& question, Result& result) {
    position.fen(question.fen);
    position.set_chess960(question.chess960);
    LineSearch search(tables, analysis, interrupted);
    if (search.root_moves().empty()) {
        return;
    }
    search.run(question.limit, question.lines, {});
    result.nodes = search.nodes();
    result.depth = search.depth();
    result.lines = search.lines();
    for (Line& line : result.lines) {
        complete(question, line);
    }
    Move const played = find_legal(search.root_moves(), question.played);
    if (played != Move()) {
        result.played = search_played(question, result, played);
    }
    Move const best = result.lines.front().moves.front();
    if (question.rest && (played == Move() || played == best)) {
        std::vector<Move> others = search.root_moves();
        std::erase(others, best);
        if (!others.empty()) {
            result.rest = search_by_itself(question, others);
        }
    }
}

Line PositionSearch::State::search_played(Question const& question, Result const& result,
                                          Move played) {
    auto const among_lines =
        std::find_if(result.lines.begin(), result.lines.end(), [&](Line const& line) {
            return line.moves[0] == played && line.depth > 0 && !line.at_least;
        });
    if (among_lines != result.lines.end()) {
        return *among_lines;
    }
    return search_by_itself(question, {played});
}

Line PositionSearch::State::search_by_itself(Question const& question,
                                             std::vector<Move> const& among) {
    LineSearch search(tables, analysis, interrupted);
    search.run(question.limit, 1, among);
    Line line = search.lines().front();
    complete(question, line);
    return line;
}

/// Looks behind the first move of a line, and then for its leaf.
void PositionSearch::State::complete(Question const& question, Line& line) {
    position.fen(question.fen);
    position.make_move(line.moves[0]);
    line.drawn = is_drawn(position.fen(), position, tables);
    position.unmake_move();
    if (line.drawn) {
        line.score = draw_score;
        line.at_least = false;
        line.why_not = unexplained::mate_or_draw;
    } else if (question.leaves && line.depth > 0 && !interrupted.load()) {
        leaf_finder.find(line);
    }
}

}  // namespace orvelin::analyse
