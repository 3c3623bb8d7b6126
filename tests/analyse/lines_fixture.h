#pragma once

#include <sstream>
#include <string>

#include "analyse/move_judgement.h"
#include "analyse/position_search.h"
#include "play/position_reader.h"
#include "position/chess_position.h"
#include "support/shared_tables.h"

namespace orvelin::analyse::test {

/// A line of UCI moves from a position with this score; its leaf is at its end.
inline Line line_from(std::string const& fen, std::string const& texts, int score) {
    Line line;
    line.depth = 8;
    line.score = score;
    ChessPosition position(orvelin::test::shared_tables());
    position.fen(fen);
    std::istringstream words(texts);
    for (std::string word; words >> word;) {
        line.moves.push_back(play::find_legal_move(position, orvelin::test::shared_tables(), word));
        position.make_move(line.moves.back());
    }
    line.leaf.moves = line.moves;
    line.leaf.fen = position.fen();
    line.leaf.score = score;
    return line;
}

/// The same with a leaf in which these terms are not 0.
inline Line line_with(Line line, std::size_t index, float units, std::size_t other = 0,
                      float other_units = 0) {
    line.why_not = unexplained::none;
    line.leaf.terms[other] = other_units;
    line.leaf.terms[index] = units;
    return line;
}

/// What a search of the best line, of the move that was played and of the rest would give.
struct SearchedMove {
    Result result;
    MoveInGame move;

    SearchedMove(std::string const& fen, Line const& played, Line const& best) {
        move.fen = fen;
        move.played = played.moves.at(0);
        result.depth = 8;
        result.lines = {best};
        result.played = played;
    }
    SearchedMove& rest(Line const& line) {
        result.rest = line;
        return *this;
    }
    MoveInGame const& in_game() {
        move.result = &result;
        return move;
    }
    Judgement judged() { return judge(in_game(), orvelin::test::shared_tables()); }
};

}  // namespace orvelin::analyse::test
