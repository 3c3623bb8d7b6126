#include <span>

#include "analyse/san.h"
#include "board/board_game.h"
#include "board/commands.h"
#include "board/core_state.h"

namespace orvelin::board {

void answer_line(Request const& request, CoreState& core, JsonWriter& answer) {
    BoardGame game(request, core.tables());
    std::string const before = game.position().fen();
    std::size_t const played = game.moves().size();
    answer.open("fens", '[');
    for (std::string_view const text : request.texts("line", BoardGame::most_moves)) {
        game.make(text, game.moves().size() - played + 1);
        answer.text(game.position().fen());
    }
    answer.close(']');
    answer.open("sans", '[');
    std::span<Move const> const moves(game.moves());
    for (std::string const& san : analyse::san_line(before, core.tables(), moves.subspan(played))) {
        answer.text(san);
    }
    answer.close(']');
}

}  // namespace orvelin::board
