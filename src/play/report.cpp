#include "play/report.h"

#include <algorithm>

#include "play/win_chance.h"
#include "search/score.h"

namespace orvelin::play {

namespace {

bool is_mate(int score) {
    return score > max_ordinary_score || score < -max_ordinary_score;
}

/// In moves, negative for the side that is mated; 0 for one that is mated already.
int moves_to_mate(int score) {
    return score > 0 ? (mate_score - score + 1) / 2 : -(mate_score + score) / 2;
}

std::string kind_text(bound kind, ReportStyle const& style) {
    if (kind == bound::exact || style.drawn) {
        return "";
    }
    return kind == bound::lower ? " lowerbound" : " upperbound";
}

}  // namespace

std::string score_text(int score, ReportStyle const& style) {
    if (style.drawn) {
        return std::string("score cp 0") + (style.show_wdl ? " wdl 0 1000 0" : "");
    }
    std::string text = "score ";
    if (is_mate(score)) {
        text += "mate " + std::to_string(moves_to_mate(score));
    } else {
        text += "cp " + std::to_string(style.engine_units ? score : to_centipawns(score));
    }
    if (style.show_wdl) {
        WinDrawLoss const chances = win_draw_loss(score);
        text += " wdl " + std::to_string(chances.win) + ' ' + std::to_string(chances.draw) + ' ' +
                std::to_string(chances.loss);
    }
    return text;
}

std::string use_text(SearchUse const& use) {
    auto const time = static_cast<std::uint64_t>(std::max<std::int64_t>(use.time.count(), 1));
    return " nodes " + std::to_string(use.nodes) + " nps " +
           std::to_string(use.nodes * 1000 / time) + " hashfull " + std::to_string(use.hashfull) +
           " time " + std::to_string(use.time.count());
}

std::string line_text(ReportedLine const& line, int rank, SearchUse const& use,
                      ReportStyle const& style) {
    std::string text = "info depth " + std::to_string(line.depth) + " seldepth " +
                       std::to_string(std::max(use.seldepth, line.depth));
    if (style.lines > 1) {
        text += " multipv " + std::to_string(rank + 1);
    }
    text += ' ' + score_text(line.score, style) + kind_text(line.kind, style) + use_text(use);
    if (!line.moves.empty()) {
        text += " pv";
        for (Move const& move : line.moves) {
            text += ' ' + move.algebraic(style.chess960);
        }
    }
    return text;
}

std::string bound_text(int depth, int score, bound kind, SearchUse const& use,
                       ReportStyle const& style) {
    return "info depth " + std::to_string(depth) + " seldepth " +
           std::to_string(std::max(use.seldepth, depth)) + ' ' + score_text(score, style) +
           kind_text(kind, style) + use_text(use);
}

std::string bestmove_text(std::vector<Move> const& moves, bool chess960) {
    if (moves.empty()) {
        return "bestmove 0000";
    }
    std::string text = "bestmove " + moves[0].algebraic(chess960);
    if (moves.size() > 1) {
        text += " ponder " + moves[1].algebraic(chess960);
    }
    return text;
}

}  // namespace orvelin::play
