#include "analyse/san.h"
#include "board/board_game.h"
#include "board/commands.h"
#include "board/core_state.h"
#include "play/position_reader.h"

namespace orvelin::board {

/// A book may be of other hands: what is not legal is left out.
void answer_book(Request const& request, CoreState& core, JsonWriter& answer) {
    BoardGame game(request, core.tables());
    if (core.book.size() == 0) {
        throw RequestError("there is no book");
    }
    ChessPosition& position = game.position();
    std::vector<Move> const legal = game.legal_moves();
    answer.open("moves", '[');
    for (Book_record const& entry : core.book.entries_of(position.get_hash())) {
        std::string const text = entry.get_move()(position).algebraic(true);
        Move const move = play::find_move(legal, text);
        if (move.word() == 0) {
            continue;
        }
        answer.open('{');
        answer.text("uci", move.algebraic(game.chess960()));
        answer.text("san", analyse::san(position, core.tables(), move));
        answer.number("weight", std::int64_t{entry.get_weight()});
        answer.close('}');
    }
    answer.close(']');
}

}  // namespace orvelin::board
