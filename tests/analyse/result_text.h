#pragma once

#include <sstream>
#include <string>

#include "analyse/position_search.h"

namespace orvelin::analyse::test {

inline void write_terms(std::ostream& out, term_scores_t const& terms) {
    out << std::hexfloat;
    for (float const score : terms) {
        out << ' ' << score;
    }
    out << std::defaultfloat << '\n';
}

inline std::string moves_text(std::vector<Move> const& moves) {
    std::string text;
    for (Move const& move : moves) {
        text += ' ' + move.algebraic(true);
    }
    return text;
}

inline void write_line(std::ostream& out, Line const& line) {
    out << "depth " << line.depth << " score " << line.score << (line.at_least ? " or more" : "")
        << (line.drawn ? " drawn" : "") << moves_text(line.moves) << " why not "
        << static_cast<int>(line.why_not) << " leaf " << line.leaf.score
        << moves_text(line.leaf.moves) << ' ' << line.leaf.fen << " fading " << line.leaf.fading;
    write_terms(out, line.leaf.terms);
}

/// All of a result to the last bit.
inline std::string text_of(Result const& result) {
    std::ostringstream out;
    out << "nodes " << result.nodes << " depth " << result.depth << " static "
        << result.static_score;
    write_terms(out, result.terms);
    for (Line const& line : result.lines) {
        write_line(out, line);
    }
    out << "played ";
    write_line(out, result.played);
    out << "rest ";
    write_line(out, result.rest);
    return out.str();
}

inline Question question(std::string const& fen, std::string const& limit, int lines = 1) {
    Question asked;
    asked.fen = fen;
    asked.limit = parse_limit(limit).value();
    asked.lines = lines;
    return asked;
}

}  // namespace orvelin::analyse::test
