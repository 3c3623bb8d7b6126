// An engine that answers, and its answer as a record.

#include <utility>

#include "analyse/answerer.h"
#include "analyse/line_text.h"
#include "analyse/position_search.h"
#include "analyse/sentence.h"
#include "analyse/shared_tables.h"
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
    analyse::PlayedMove played_move(Asked const& asked, Request const& request,
                                    analyse::Result const& result);

    analyse::PositionSearch search_;
    LineText text_;
    analyse::SentenceWriter writer_{shared_tables()};
};

Record EngineAnswerer::answer(Asked const& asked, Request const& request) {
    bool const searched = request.limit.what != analyse::Limit::kind::static_eval;
    analyse::Question question{asked.fen,      asked.chess960, request.limit, request.lines,
                               request.leaves, Move(),         request.rest};
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
    if (!result.rest.moves.empty()) {
        record.rest = record_line(asked, request, result.rest);
    }
    record.score.units = result.static_score;
    if (result.drawn) {
        record.score = {draw_score, true};
    } else if (!result.lines.empty()) {
        record.score = {result.lines.front().score, result.lines.front().drawn};
    } else if (searched) {
        record.score.units = -mate_score;
    }
    if (asked.played.word() != 0) {
        record.played = played_move(asked, request, result);
    }
    record.receipt = request.receipt();
    return record;
}

analyse::PlayedMove EngineAnswerer::played_move(Asked const& asked, Request const& request,
                                                analyse::Result const& result) {
    analyse::PlayedMove played;
    played.move = asked.played.algebraic(asked.chess960);
    played.san = text_.san(asked.fen, {asked.played});
    played.taken = asked.taken ? analyse::taken_text(*asked.taken) : "";
    // Without its own search only the moves that are best would be judged.
    if (!result.played.moves.empty()) {
        played.line = record_line(asked, request, result.played);
        played.judgement = analyse::record_judgement(
            {asked.fen, asked.played, asked.taken, &result}, writer_, shared_tables());
    }
    return played;
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
