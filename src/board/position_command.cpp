#include "analyse/san.h"
#include "board/board_game.h"
#include "board/commands.h"
#include "board/core_state.h"
#include "position/castling_targets.h"

namespace orvelin::board {

namespace {

std::string_view kind_name(GameEnd::kind kind) {
    switch (kind) {
        case GameEnd::kind::checkmate:
            return "checkmate";
        case GameEnd::kind::stalemate:
            return "stalemate";
        case GameEnd::kind::repetition:
            return "repetition";
        case GameEnd::kind::fifty:
            return "fifty";
        case GameEnd::kind::material:
            break;
    }
    return "material";
}

/// A promotion to a queen is "q". From and to are the squares of the UCI text.
void write_move(BoardGame& game, Tables const& tables, Move const& move, JsonWriter& answer) {
    std::string const text = move.algebraic(game.chess960());
    answer.open('{');
    answer.text("uci", text);
    answer.text("san", analyse::san(game.position(), tables, move));
    answer.text("from", text.substr(0, 2));
    answer.text("to", text.substr(2, 2));
    if (text.size() > 4) {
        answer.text("promotion", text.substr(4));
    } else {
        answer.null("promotion");
    }
    bool const castles = move.code() == castling;
    answer.flag("capture",
                !castles && (move.capture_id() != no_piece || move.code() == en_passant));
    answer.flag("castling", castles);
    if (castles) {
        CastlingTargets const targets = castling_targets(move);
        answer.text("kingTo", targets.king.name());
        answer.text("rookFrom", move.to().name());
        answer.text("rookTo", targets.rook.name());
    }
    answer.close('}');
}

void write_end(std::optional<GameEnd> const& end, JsonWriter& answer) {
    if (!end) {
        answer.null("end");
        return;
    }
    answer.open("end", '{');
    answer.text("kind", kind_name(end->what));
    answer.text("result", end->result);
    answer.close('}');
}

}  // namespace

void answer_position(Request const& request, CoreState& core, JsonWriter& answer) {
    BoardGame game(request, core.tables());
    answer.text("fen", game.position().fen());
    answer.text("start", game.start_fen());
    answer.flag("chess960", game.chess960());
    answer.text("side", game.position().white_to_move() ? "white" : "black");
    answer.flag("check", game.position().check());
    answer.open("legal", '[');
    for (Move const& move : game.legal_moves()) {
        write_move(game, core.tables(), move, answer);
    }
    answer.close(']');
    answer.open("sans", '[');
    for (std::string const& san : game.sans()) {
        answer.text(san);
    }
    answer.close(']');
    write_end(game.end(), answer);
    answer.open("remarks", '[');
    for (std::string const& remark : game.remarks()) {
        answer.text(remark);
    }
    answer.close(']');
}

}  // namespace orvelin::board
