#include "analyse/line_text.h"

#include "analyse/san.h"
#include "analyse/shared_tables.h"
#include "play/position_reader.h"
#include "position/chess_position.h"

namespace orvelin::tools {

struct LineText::State {
    ChessPosition position{shared_tables()};
};

LineText::LineText() : state_(std::make_unique<State>()) {}

LineText::~LineText() = default;

std::string LineText::san(std::string const& fen, std::vector<Move> const& moves) {
    state_->position.fen(fen);
    std::string text;
    for (std::string const& move : analyse::san_line(state_->position, shared_tables(), moves)) {
        if (!text.empty()) {
            text += ' ';
        }
        text += move;
    }
    return text;
}

Move LineText::legal_move(std::string const& fen, std::string const& text) {
    state_->position.fen(fen);
    return play::find_legal_move(state_->position, shared_tables(), text);
}

}  // namespace orvelin::tools
