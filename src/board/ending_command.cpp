#include <algorithm>
#include <utility>

#include "analyse/san.h"
#include "board/board_game.h"
#include "board/commands.h"
#include "board/core_state.h"

namespace orvelin::board {

namespace {

void write_value(EndingValue const& value, JsonWriter& answer) {
    answer.text("result", value.winner > 0 ? "1-0" : value.winner < 0 ? "0-1" : "1/2-1/2");
    if (value.winner == 0) {
        answer.null("plies");
    } else {
        answer.number("plies", std::int64_t{value.plies});
    }
}

/// The quickest win comes first, then draws, and then the loss that takes longest.
int merit(EndingValue const& value, bool white) {
    constexpr int beyond_all_plies = 1000;
    int const own = white ? value.winner : -value.winner;
    return own * (beyond_all_plies - value.plies);
}

void write_moves(BoardGame& game, std::size_t ending, CoreState& core, JsonWriter& answer) {
    ChessPosition& position = game.position();
    bool const white = position.white_to_move();
    std::vector<std::pair<Move, EndingValue>> moves;
    for (Move const& move : game.legal_moves()) {
        position.make_move(move);
        moves.emplace_back(move, core.endings.value(ending, position.fen()));
        position.unmake_move();
    }
    std::stable_sort(moves.begin(), moves.end(), [white](auto const& one, auto const& other) {
        return merit(one.second, white) > merit(other.second, white);
    });
    answer.open("moves", '[');
    for (auto const& [move, value] : moves) {
        answer.open('{');
        answer.text("uci", move.algebraic(game.chess960()));
        answer.text("san", analyse::san(position, core.tables(), move));
        write_value(value, answer);
        answer.close('}');
    }
    answer.close(']');
}

}  // namespace

void answer_ending(Request const& request, CoreState& core, JsonWriter& answer) {
    BoardGame game(request, core.tables());
    std::string const fen = game.position().fen();
    auto const ending = EndingTables::find(fen);
    if (!ending) {
        answer.null("ending");
        return;
    }
    if (core.endings.progress(*ending) < 1) {
        core.endings.build(*ending);
    }
    double const progress = core.endings.progress(*ending);
    answer.open("ending", '{');
    answer.text("name", analyse::endings[*ending].name);
    answer.number("progress", progress);
    if (progress < 1) {
        answer.null("result");
    } else {
        write_value(core.endings.value(*ending, fen), answer);
        write_moves(game, *ending, core, answer);
    }
    answer.close('}');
}

}  // namespace orvelin::board
