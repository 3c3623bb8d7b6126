#include "book/book_maker.h"

#include <cstddef>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>

#include "book/legal_moves.h"
#include "position/move.h"
#include "support/position_argument.h"

namespace orvelin::tools {

BookMaker::BookMaker(Tables const& tables, std::string const& fen, std::uint64_t max_ply)
    : generator_(tables), position_(tables), max_ply_(max_ply) {
    set_position(position_, fen);
}

void BookMaker::add(book_line_t const& line) {
    played_.clear();
    for (written_move_t const& move : line.moves) {
        play(move);
    }
    count_moves(line.games);
    for (std::size_t i = 0; i < line.moves.size(); ++i) {
        position_.unmake_move();
    }
}

void BookMaker::play(written_move_t const& written) {
    std::optional<Move> const move = find_legal_move(generator_, position_, written.text);
    if (!move) {
        throw std::runtime_error("move " + shown(written.text) + " is illegal");
    }
    if (played_.size() < max_ply_) {
        std::uint64_t const key = position_.get_hash();
        played_.push_back({key, BKmove(*move)});
        if (written.weight && !contents_.set_weight(key, BKmove(*move), *written.weight)) {
            throw std::runtime_error("move " + written.text +
                                     " has another weight in another line");
        }
    }
    position_.make_move(*move);
}

void BookMaker::count_moves(std::uint64_t games) {
    std::set<std::pair<std::uint64_t, std::uint16_t>> counted;
    for (auto const& [key, move] : played_) {
        if (counted.emplace(key, move.dump()).second) {
            contents_.add(key, move, games);
        }
    }
}

}  // namespace orvelin::tools
