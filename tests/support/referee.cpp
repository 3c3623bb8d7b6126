#include "support/referee.h"

#include "support/shared_tables.h"

namespace orvelin::test {

Referee::Referee(std::string const& fen) : position_(shared_tables()), generator_(shared_tables()) {
    position_.fen(fen);
    generate();
}

void Referee::generate() {
    moves_.clear();
    generator_.generate_moves(position_, moves_);
    ++seen_[position_.get_hash()];
}

bool Referee::play(std::string const& move) {
    for (Move const& legal : moves_) {
        if (legal.algebraic(false) == move) {
            position_.make_move(Move(legal));
            generate();
            return true;
        }
    }
    return false;
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
    for (char const man : placement) {
        if (std::string("pPrRqQ").find(man) != std::string::npos) {
            return false;
        }
        if (std::string("nNbB").find(man) != std::string::npos) {
            ++minors;
        }
    }
    return minors <= 1;
}

}  // namespace orvelin::test
