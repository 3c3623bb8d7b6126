#include "play/position_reader.h"

#include <array>
#include <cstddef>
#include <utility>

#include "generation/move_generator.h"
#include "generation/tables.h"
#include "play/reader_text.h"
#include "position/castling_targets.h"
#include "position/move_list.h"

namespace orvelin::play {

namespace {

/// More moves than any game has; what is behind them would fill the memory.
constexpr std::size_t max_moves = 20000;

using words_t = std::vector<std::string_view>;

/// A move text in its parts.
struct move_text_t {
    Square from;
    Square to;
    /// A promotion, or normal_move without a letter.
    move_t code = normal_move;
};

move_t promotion_code(char letter) {
    switch (letter) {
        case 'q':
        case 'Q':
            return promo_queen;
        case 'r':
        case 'R':
            return promo_rook;
        case 'b':
        case 'B':
            return promo_bishop;
        case 'n':
        case 'N':
            return promo_knight;
        default:
            return nullmove;
    }
}

/// The square of two letters, no square when they are none.
Square read_square(std::string_view text) {
    bool const square = text[0] >= 'a' && text[0] <= 'h' && text[1] >= '1' && text[1] <= '8';
    return square ? Square(text[0] - 'a' + 8 * (text[1] - '1')) : Square();
}

/// False when the text has not the form of a move.
bool read_move_text(std::string_view text, move_text_t& move) {
    if (text.size() != 4 && text.size() != 5) {
        return false;
    }
    move.from = read_square(text.substr(0, 2));
    move.to = read_square(text.substr(2, 2));
    move.code = text.size() == 5 ? promotion_code(text[4]) : normal_move;
    return move.from != Square() && move.to != Square() && move.code != nullmove;
}

bool promotes(Move const& move) {
    return move.code() >= promo_queen && move.code() <= promo_knight;
}

void generate(ChessPosition const& position, Tables const& tables, MoveList& list) {
    MoveGenerator generator(tables);
    generator.generate_moves(position, list);
}

/// A king's step may be read as castling when it is not a move of its own, so that the step to
/// the castled square is understood in all start positions.
template <typename Moves>
Move find_in(Moves const& moves, std::string_view text) {
    move_text_t wanted;
    if (!read_move_text(text, wanted)) {
        return Move();
    }
    Move by_step;
    for (Move const& move : moves) {
        if (move.from() != wanted.from ||
            (promotes(move) ? move.code() : normal_move) != wanted.code) {
            continue;
        }
        if (move.to() == wanted.to) {
            return move;
        }
        if (move.code() == castling && castling_targets(move).king == wanted.to &&
            wanted.to != wanted.from) {
            by_step = move;
        }
    }
    return by_step;
}

std::string read_start(std::string_view arguments, words_t const& words, std::size_t moves_at,
                       PositionText& read, ChessPosition& position) {
    if (words[0] == "startpos") {
        if (moves_at > 1) {
            return "position: " + shown(words[1]) + " behind startpos, moves is expected";
        }
        position.newgame();
        return "";
    }
    if (words[0] != "fen") {
        bool const board = words[0].find('/') != std::string_view::npos;
        return "position: " + shown(words[0]) + ", startpos or fen is expected" +
               (board ? "; did you forget fen?" : "");
    }
    std::string_view fen;
    if (moves_at > 1) {
        std::string_view const last = words[moves_at - 1];
        std::size_t const begin = static_cast<std::size_t>(words[1].data() - arguments.data());
        std::size_t const end =
            static_cast<std::size_t>(last.data() + last.size() - arguments.data());
        fen = arguments.substr(begin, end - begin);
    }
    std::string repaired;
    Refusal const refusal = check_fen(fen, read.remarks, repaired);
    if (!refusal.refused()) {
        position.fen(repaired);
    }
    return refusal.reason;
}

std::string make_moves(words_t const& words, std::size_t first, Tables const& tables,
                       PositionText& read, ChessPosition& position) {
    if (words.size() - first > max_moves) {
        return "position: " + std::to_string(words.size() - first) + " moves, more than " +
               std::to_string(max_moves);
    }
    for (std::size_t i = first; i < words.size(); ++i) {
        Move const move = find_legal_move(position, tables, words[i]);
        if (move.word() == 0) {
            move_text_t form;
            return "position: move " + std::to_string(i - first + 1) + ", " + shown(words[i]) +
                   (read_move_text(words[i], form) ? ", is not legal in " : ", is no move, in ") +
                   position.fen() + promotion_hint(legal_moves(position, tables), words[i]);
        }
        position.make_move(move);
        ++read.moves_made;
    }
    return "";
}

}  // namespace

std::vector<Move> legal_moves(ChessPosition const& position, Tables const& tables) {
    std::array<Move, MoveList::capacity> storage;
    MoveList list(storage.data());
    generate(position, tables, list);
    return {list.begin(), list.end()};
}

Move find_move(std::vector<Move> const& moves, std::string_view text) {
    return find_in(moves, text);
}

std::string promotion_hint(std::vector<Move> const& moves, std::string_view text) {
    std::string const promotion = std::string(text.substr(0, 4)) + 'q';
    if (text.size() != 4 || find_in(moves, promotion) == Move()) {
        return "";
    }
    return "; a promotion has a letter: " + promotion;
}

Move find_legal_move(ChessPosition const& position, Tables const& tables, std::string_view text) {
    std::array<Move, MoveList::capacity> storage;
    MoveList list(storage.data());
    generate(position, tables, list);
    return find_in(list, text);
}

PositionText read_position(std::string_view arguments, Tables const& tables,
                           ChessPosition& position) {
    PositionText read;
    words_t const words = words_of(arguments);
    if (words.empty()) {
        read.refusal.reason = "position: startpos or fen is expected";
        return read;
    }
    std::size_t moves_at = 1;
    while (moves_at < words.size() && words[moves_at] != "moves") {
        ++moves_at;
    }
    read.refusal.reason = read_start(arguments, words, moves_at, read, position);
    if (!read.refusal.refused() && moves_at < words.size()) {
        read.refusal.reason = make_moves(words, moves_at + 1, tables, read, position);
    }
    if (!read.refusal.refused()) {
        read.game_ply = 2 * (position.move_number() - 1) + (position.black_to_move() ? 1 : 0);
    }
    return read;
}

}  // namespace orvelin::play
