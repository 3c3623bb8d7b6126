#include "board/board_game.h"

#include <algorithm>

#include "analyse/game_start.h"
#include "analyse/san.h"
#include "board/request.h"
#include "play/dead_draw.h"
#include "play/position_reader.h"
#include "play/reader_text.h"

namespace orvelin::board {

namespace {

constexpr std::ptrdiff_t times_of_repetition = 3;

constexpr char const* drawn = "1/2-1/2";

std::string_view start_of(Request const& request) {
    std::string_view const start = request.text("start", "startpos");
    return start == "startpos" ? std::string_view(analyse::standard_start()) : start;
}

}  // namespace

BoardGame::BoardGame(Request const& request, Tables const& tables)
    : tables_(tables), position_(tables) {
    analyse::GameStart start =
        analyse::set_up_start(start_of(request), request.flag("chess960"), position_);
    if (!start.reason.empty()) {
        throw RequestError(start.reason);
    }
    start_fen_ = std::move(start.fen);
    chess960_ = start.chess960;
    remarks_ = std::move(start.remarks);
    note_position();
    for (std::string_view const text : request.texts("moves", most_moves)) {
        make(text, moves_.size() + 1);
    }
}

void BoardGame::make(std::string_view text, std::size_t number) {
    Move const move = play::find_legal_move(position_, tables_, text);
    if (move.word() == 0) {
        throw RequestError("move " + std::to_string(number) + ", " + play::shown(text) +
                           ", is not legal in " + position_.fen() +
                           play::promotion_hint(legal_moves(), text));
    }
    position_.make_move(move);
    moves_.push_back(move);
    if (position_.get_dfz() == 0) {
        reversible_.clear();
    }
    note_position();
}

/// A square behind a pawn makes a position another one only where the pawn can be taken there.
void BoardGame::note_position() {
    std::string text = position_.epd();
    if (position_.ep() != Square()) {
        std::vector<Move> const legal = legal_moves();
        if (std::none_of(legal.begin(), legal.end(),
                         [](Move const& move) { return move.code() == en_passant; })) {
            text.replace(text.rfind(' '), std::string::npos, " -");
        }
    }
    reversible_.push_back(std::move(text));
}

std::vector<std::string> BoardGame::sans() const {
    return analyse::san_line(start_fen_, tables_, moves_);
}

std::vector<Move> BoardGame::legal_moves() const {
    return play::legal_moves(position_, tables_);
}

std::string BoardGame::fen_at(std::size_t ply) const {
    ChessPosition position(tables_);
    position.fen(start_fen_);
    for (std::size_t i = 0; i < ply; ++i) {
        position.make_move(moves_[i]);
    }
    return position.fen();
}

std::optional<GameEnd> BoardGame::end() const {
    using enum GameEnd::kind;
    if (legal_moves().empty()) {
        if (!position_.check()) {
            return GameEnd{stalemate, drawn};
        }
        return GameEnd{checkmate, position_.white_to_move() ? "0-1" : "1-0"};
    }
    if (std::count(reversible_.begin(), reversible_.end(), reversible_.back()) >=
        times_of_repetition) {
        return GameEnd{repetition, drawn};
    }
    if (position_.get_dfz() >= play::last_reversible_ply) {
        return GameEnd{fifty, drawn};
    }
    if (play::is_mate_impossible(position_.fen())) {
        return GameEnd{material, drawn};
    }
    return std::nullopt;
}

}  // namespace orvelin::board
