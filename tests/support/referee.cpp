#include "support/referee.h"

#include <algorithm>

#include "support/data_file.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::test {

namespace {

std::string const start_position = positions::start;

bool reads(Move const& move, std::string const& text) {
    return move.algebraic(false) == text || move.algebraic(true) == text;
}

}  // namespace

Referee::Referee() : Referee(start_position) {}

Referee::Referee(std::string const& fen) : position_(shared_tables()), generator_(shared_tables()) {
    start(fen);
}

void Referee::start(std::string const& fen) {
    position_.fen(fen);
    start_ = fen;
    played_.clear();
    seen_.clear();
    known_ = true;
    generate();
}

void Referee::generate() {
    moves_.clear();
    generator_.generate_moves(position_, moves_);
    ++seen_[position_.get_hash()];
}

bool Referee::legal(std::string const& move) const {
    return std::any_of(moves_.cbegin(), moves_.cend(),
                       [&](Move const& legal) { return reads(legal, move); });
}

bool Referee::play(std::string const& move) {
    for (Move const& legal : moves_) {
        if (reads(legal, move)) {
            position_.make_move(Move(legal));
            played_.push_back(move);
            generate();
            return true;
        }
    }
    lose();
    return false;
}

std::string Referee::command() const {
    std::string const line =
        start_ == start_position ? "position startpos" : "position fen " + start_;
    return played_.empty() ? line : line + " moves " + join_words(played_);
}

std::vector<std::string> Referee::legal_moves() const {
    std::vector<std::string> texts;
    for (auto move = moves_.cbegin(); move != moves_.cend(); ++move) {
        texts.push_back(move->algebraic(false));
    }
    return texts;
}

std::string Referee::verdict() const {
    if (moves_.size() == 0) {
        return position_.check() ? "checkmate" : "stalemate";
    }
    if (seen_.at(position_.get_hash()) >= 3) {
        return "repetition";
    }
    if (position_.get_dfz() >= 100) {
        return "fifty moves";
    }
    if (insufficient_material()) {
        return "material";
    }
    return "";
}

bool Referee::insufficient_material() const {
    std::string const placement = fen().substr(0, fen().find(' '));
    int minors = 0;
    for (char const piece : placement) {
        if (std::string("pPrRqQ").find(piece) != std::string::npos) {
            return false;
        }
        if (std::string("nNbB").find(piece) != std::string::npos) {
            ++minors;
        }
    }
    return minors <= 1;
}

}  // namespace orvelin::test
