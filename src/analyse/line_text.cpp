#include "analyse/line_text.h"

#include "analyse/san.h"
#include "play/position_reader.h"
#include "position/chess_position.h"

namespace orvelin::analyse {

struct LineText::State {
    explicit State(Tables const& all) : tables(all), position(all) {}

    Tables const& tables;
    ChessPosition position;
};

LineText::LineText(Tables const& tables) : state_(std::make_unique<State>(tables)) {}

LineText::~LineText() = default;

std::string LineText::san(std::string const& fen, std::vector<Move> const& moves) {
    state_->position.fen(fen);
    std::string text;
    for (std::string const& move : san_line(state_->position, state_->tables, moves)) {
        if (!text.empty()) {
            text += ' ';
        }
        text += move;
    }
    return text;
}

Move LineText::legal_move(std::string const& fen, std::string const& text) {
    state_->position.fen(fen);
    return play::find_legal_move(state_->position, state_->tables, text);
}

}  // namespace orvelin::analyse
