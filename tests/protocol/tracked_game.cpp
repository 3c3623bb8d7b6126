#include "protocol/tracked_game.h"

#include "support/data_file.h"
#include "support/shared_tables.h"

namespace orvelin::test {

namespace {

std::string const start_position = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

bool reads(Move const& move, std::string const& text) {
    return move.algebraic(false) == text || move.algebraic(true) == text;
}

}  // namespace

TrackedGame::TrackedGame() : generator_(shared_tables()) {
    start(start_position);
}

void TrackedGame::start(std::string const& fen) {
    position_.emplace(shared_tables());
    position_->fen(fen);
    start_ = fen;
    played_.clear();
    known_ = true;
    generate();
}

void TrackedGame::generate() {
    moves_.clear();
    generator_.generate_moves(*position_, moves_);
}

std::size_t TrackedGame::count(std::string const& move) const {
    std::size_t found = 0;
    for (auto legal = moves_.cbegin(); legal != moves_.cend(); ++legal) {
        if (reads(*legal, move)) {
            ++found;
        }
    }
    return found;
}

void TrackedGame::play(std::string const& move) {
    if (!known_) {
        return;
    }
    known_ = count(move) == 1;
    if (!known_) {
        return;
    }
    for (Move const& legal : moves_) {
        if (!reads(legal, move)) {
            continue;
        }
        position_->make_move(Move(legal));
        break;
    }
    played_.push_back(move);
    generate();
}

std::vector<std::string> TrackedGame::legal_moves() const {
    std::vector<std::string> texts;
    for (auto move = moves_.cbegin(); move != moves_.cend(); ++move) {
        texts.push_back(move->algebraic(false));
    }
    return texts;
}

std::string TrackedGame::command() const {
    std::string const line =
        start_ == start_position ? "position startpos" : "position fen " + start_;
    return played_.empty() ? line : line + " moves " + join_words(played_);
}

}  // namespace orvelin::test
