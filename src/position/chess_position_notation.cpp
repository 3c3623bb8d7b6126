// Move text and move words from outside the generator.

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "position/chess_position.h"

namespace orvelin {

namespace {

bool is_file(char letter) {
    return letter >= 'a' && letter <= 'h';
}

bool is_rank(char digit) {
    return digit >= '1' && digit <= '8';
}

bool is_move_text(std::string const& text) {
    return (text.size() == 4 || text.size() == 5) && is_file(text[0]) && is_rank(text[1]) &&
           is_file(text[2]) && is_rank(text[3]);
}

/// The code that the letter behind the squares asks for; an unknown letter asks for none.
move_t requested_code(std::string const& text) {
    switch (text.size() == 5 ? text[4] : ' ') {
        case 'q':
            return promo_queen;
        case 'r':
            return promo_rook;
        case 'b':
            return promo_bishop;
        case 'n':
            return promo_knight;
        default:
            return normal_move;
    }
}

/// Standard castling: king and rook stand on king_from and rook_from, king_to is empty.
struct castling_text_t {
    char const* standard;
    char const* king_takes_rook;
    int king_from;
    int king_to;
    int rook_from;
    int king_id;
};

constexpr std::array<castling_text_t, 4> castling_texts = {{{"e1g1", "e1h1", 4, 6, 7, 6},
                                                            {"e1c1", "e1a1", 4, 2, 0, 6},
                                                            {"e8g8", "e8h8", 60, 62, 63, 14},
                                                            {"e8c8", "e8a8", 60, 58, 56, 14}}};

}  // namespace

std::string ChessPosition::king_takes_rook_form(std::string const& text) const {
    for (castling_text_t const& form : castling_texts) {
        if (text != form.standard) {
            continue;
        }
        bool const castles = board_[form.king_from].id() == form.king_id &&
                             board_[form.king_to].id() == 0 &&
                             board_[form.rook_from].id() == form.king_id - 2;
        if (castles) {
            return form.king_takes_rook;
        }
    }
    return text;
}

Move ChessPosition::convert_to_move(Square const& from, Square const& to, move_t code) const {
    const Piece piece = get_piece_from(from);
    const Piece captured = get_piece_from(to);
    if (piece.no_piece()) {
        return Move(from, to, nullmove, piece, captured);
    }
    const Piece none;
    if ((piece.white_king() && captured.white_rook()) ||
        (piece.black_king() && captured.black_rook())) {
        return Move(from, to, castling, piece, none);
    }
    int const step = to - from;
    if (piece.white_pawn() && (step == 7 || step == 9) && captured.no_piece() &&
        ((to.bitboard() >> 8) & black_pawn())) {
        return Move(from, to, en_passant, piece, Piece(9));
    }
    if (piece.black_pawn() && (step == -7 || step == -9) && captured.no_piece() &&
        ((to.bitboard() << 8) & white_pawn())) {
        return Move(from, to, en_passant, piece, Piece(1));
    }
    // A promotion code stays on any piece, so a knight can become a king, and what a rook becomes
    // is no piece at all (oddity 89).
    return Move(from, to, static_cast<unsigned int>(code), piece,
                code == castling ? none : captured);
}

// Legality is not tested (oddity 17). Made and unmade, the move leaves the counter one higher
// (oddity 90).
Move ChessPosition::convert_to_move(std::string const& text) {
    if (!is_move_text(text)) {
        throw std::logic_error("ChessPosition::convert_to_move(const string& " + text + ")");
    }
    const std::string rewritten = king_takes_rook_form(text);
    if (rewritten != text) {
        return convert_to_move(rewritten);
    }

    const Square from(text.substr(0, 2));
    const Square to(text.substr(2, 2));
    Move move = convert_to_move(from, to, requested_code(text));
    make_move(move);
    look_for_check();
    move.check(check());
    unmake_move();
    return move;
}

std::vector<Move> ChessPosition::moves_history() const {
    std::vector<Move> moves;
    moves.reserve(history_.size());
    for (auto ply = history_.begin() + 1; ply != history_.end(); ++ply) {
        moves.push_back(ply->last_move);
    }
    return moves;
}

std::string ChessPosition::history_str() const {
    std::string text;
    for (Move const& move : moves_history()) {
        text += move.algebraic(false) + ' ';
    }
    if (!text.empty()) {
        text.pop_back();
    }
    return text;
}

}  // namespace orvelin
