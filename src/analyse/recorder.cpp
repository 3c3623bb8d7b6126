#include "analyse/recorder.h"

#include "search/score.h"

namespace orvelin::analyse {

Record Recorder::record(Asked const& asked, Request const& request) {
    bool const searched = request.limit.what != Limit::kind::static_eval;
    Question question{asked.fen,      asked.chess960, request.limit, request.lines,
                      request.leaves, Move(),         request.rest};
    if (searched && request.played) {
        question.played = asked.played;
    }
    Result const result = search_.answer(question);

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
        record.lines.push_back(line_of(asked, request, line));
    }
    if (!result.rest.moves.empty()) {
        record.rest = line_of(asked, request, result.rest);
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

PlayedMove Recorder::played_move(Asked const& asked, Request const& request, Result const& result) {
    PlayedMove played;
    played.move = asked.played.algebraic(asked.chess960);
    played.san = text_.san(asked.fen, {asked.played});
    played.taken = asked.taken ? taken_text(*asked.taken) : "";
    // Without its own search only the moves that are best would be judged.
    if (!result.played.moves.empty()) {
        played.line = line_of(asked, request, result.played);
        played.judgement = record_judgement({asked.fen, asked.played, asked.taken, &result},
                                            writer_, search_.tables());
    }
    return played;
}

RecordLine Recorder::line_of(Asked const& asked, Request const& request, Line const& line) {
    RecordLine record = record_line(line, request.leaves, asked.chess960);
    record.san = text_.san(asked.fen, line.moves);
    return record;
}

}  // namespace orvelin::analyse
