// An engine that answers, and its answer as a record.

#include <utility>

#include "analyse/answerer.h"
#include "analyse/line_text.h"
#include "analyse/position_search.h"
#include "search/score.h"

namespace orvelin::tools {

namespace {

using analyse::Line;
using analyse::Record;
using analyse::RecordLine;

class EngineAnswerer : public Answerer {
 public:
    Record answer(Asked const& asked, Request const& request) override;
    void interrupt() override { search_.interrupt(); }

 private:
    RecordLine record_line(Asked const& asked, Request const& request, Line const& line);

    analyse::PositionSearch search_;
    LineText text_;
};

Record EngineAnswerer::answer(Asked const& asked, Request const& request) {
    bool const searched = request.limit.what != analyse::Limit::kind::static_eval;
    bool const has_played = asked.played.word() != 0;
    analyse::Question question{asked.fen,     asked.chess960, request.limit,
                               request.lines, request.leaves, Move()};
    if (searched && request.played) {
        question.played = asked.played;
    }
    analyse::Result const result = search_.answer(question);

    Record record;
    record.number = asked.number;
    record.source = asked.source;
    record.fen = asked.fen;
    record.chess960 = asked.chess960;
    record.nodes = result.nodes;
    record.depth = result.depth;
    record.static_score = result.static_score;
    record.terms = result.terms;
    for (Line const& line : result.lines) {
        record.lines.push_back(record_line(asked, request, line));
    }
    record.score.units = result.static_score;
    if (!result.lines.empty()) {
        record.score.units = result.lines.front().score;
    } else if (searched) {
        record.score.units = text_.in_check(asked.fen) ? -mate_score : 0;
    }
    if (has_played) {
        record.played = {asked.played.algebraic(asked.chess960),
                         text_.san(asked.fen, {asked.played}), std::nullopt};
        if (!result.played.moves.empty()) {
            record.played->line = record_line(asked, request, result.played);
        }
    }
    record.receipt = request.receipt();
    return record;
}

RecordLine EngineAnswerer::record_line(Asked const& asked, Request const& request,
                                       Line const& line) {
    RecordLine record = analyse::record_line(line, request.leaves, asked.chess960);
    record.san = text_.san(asked.fen, line.moves);
    return record;
}

}  // namespace

std::unique_ptr<Answerer> make_engine_answerer() {
    return std::make_unique<EngineAnswerer>();
}

}  // namespace orvelin::tools
