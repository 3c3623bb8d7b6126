#include "analyse/record.h"

#include "play/version.h"

namespace orvelin::analyse {

namespace {

char const* text_of(unexplained reason) {
    switch (reason) {
        case unexplained::none:
            break;
        case unexplained::mate_or_draw:
            return "mate or draw";
        case unexplained::endgame:
            return "endgame";
        case unexplained::not_found:
            return "not found";
    }
    return "";
}

}  // namespace

Receipt receipt_of(Limit const& limit, int lines, bool leaves, bool played, bool rest) {
    return {limit.text(),
            lines,
            leaves,
            played,
            rest,
            std::string(play::version),
            std::string(play::search_signature)};
}

std::string moves_text(std::vector<Move> const& moves, bool chess960) {
    std::string text;
    for (Move const& move : moves) {
        if (!text.empty()) {
            text += ' ';
        }
        text += move.algebraic(chess960);
    }
    return text;
}

RecordLine record_line(Line const& line, bool leaf_asked, bool chess960) {
    RecordLine record;
    record.depth = line.depth;
    record.score = {line.score, line.drawn};
    record.at_least = line.at_least;
    record.moves = moves_text(line.moves, chess960);
    if (!leaf_asked) {
        record.unexplained = "not asked";
    } else if (line.why_not == unexplained::none) {
        record.leaf = {moves_text(line.leaf.moves, chess960), line.leaf.fen, line.leaf.score,
                       line.leaf.fading, line.leaf.terms};
    } else {
        record.unexplained = text_of(line.why_not);
    }
    return record;
}

}  // namespace orvelin::analyse
