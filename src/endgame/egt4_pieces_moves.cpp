#include <stdexcept>
#include <string>

#include "endgame/egt4_pieces.h"

namespace orvelin {

namespace {

/// Refuses the ids that no table can have. `number` is 1 or 2; the text tells piece and colour.
void require_piece(char const* function, piece_t id, int number, char const* no_piece_text) {
    if ((id & 7) >= white_knight && (id & 7) <= white_queen) {
        return;
    }
    std::string text = std::string(function) + "   ";
    std::string const piece = "piece" + std::to_string(number);
    switch (id) {
        case no_piece:
            text += no_piece_text;
            break;
        case white_pawn:
            text += "pawns(" + std::to_string(number) + ") not supported yet";
            break;
        case black_pawn:
            text += "pawns(" + std::to_string(number + 2) + ") not supported yet";
            break;
        case white_king:
            text += piece + "==white_king";
            break;
        case black_king:
            text += piece + "==black_king";
            break;
        // What is no piece at all moves nowhere.
        default:
            return;
    }
    throw std::logic_error(text);
}

bool white_id(piece_t id) {
    return id < 7;
}

bool black_id(piece_t id) {
    return id > 8;
}

}  // namespace

void Egt4Pieces::generate_moves(std::vector<Move>& moves) const {
    constexpr char const* function = "Egt4Pieces::generate_moves";
    moves.clear();
    auto const moves_now = [this](piece_t id) {
        return stm_ == white ? white_id(id) : black_id(id);
    };
    if (moves_now(piece1_id_)) {
        require_piece(function, piece1_id_, 1, "no_piece_id(1) error");
        add_moves(moves, piece1_id_, piece1_);
    }
    if (moves_now(piece2_id_)) {
        require_piece(function, piece2_id_, 2, "no_piece_id(2) error");
        add_moves(moves, piece2_id_, piece2_);
    }
    if (stm_ == white) {
        add_moves(moves, orvelin::white_king, white_king_);
    } else {
        add_moves(moves, orvelin::black_king, black_king_);
    }
}

BitBoard Egt4Pieces::own_pieces() const {
    auto const own = [this](piece_t id, BitBoard const& piece) {
        return (stm_ == white ? white_id(id) : black_id(id)) ? piece : BitBoard();
    };
    return (stm_ == white ? white_king_ : black_king_) | own(piece1_id_, piece1_) |
           own(piece2_id_, piece2_);
}

void Egt4Pieces::add_moves(std::vector<Move>& moves, piece_t id, BitBoard const& from) const {
    Square const origin = from.get_first_square();
    std::uint64_t targets = to_ull(attacks_of(id, from) & ~own_pieces());
    while (targets != 0) {
        Square const to(BitBoard::get_reset_square(targets));
        piece_t captured = no_piece;
        if (to.bitboard() & piece2_) {
            captured = piece2_id_;
        } else if (stm_ == black && (to.bitboard() & piece1_)) {
            captured = piece1_id_;
        }
        moves.emplace_back(origin, to, normal_move, id, captured);
    }
}

// In this direction the first piece always counts as White's. Its id is tested all the same.
void Egt4Pieces::generate_previous_moves(std::vector<Move>& moves) const {
    constexpr char const* function = "Egt4Pieces::generate_previous_moves";
    constexpr char const* no_piece_text = "no_piece_id(1) not supported yet";
    moves.clear();
    piece_t const lost_piece1 = piece1_ ? no_piece : piece1_id_;
    piece_t const lost_piece2 = piece2_ ? no_piece : piece2_id_;
    if (stm_ == black) {
        piece_t const lost_black = black_id(lost_piece2) ? lost_piece2 : no_piece;
        add_previous_moves(moves, orvelin::white_king, white_king_, {lost_black, no_piece});
        require_piece(function, piece1_id_, 1, no_piece_text);
        add_previous_moves(moves, piece1_id_, piece1_, {lost_black, no_piece});
        if (piece2_id_ < 9) {
            require_piece(function, piece2_id_, 2, no_piece_text);
            add_previous_moves(moves, piece2_id_, piece2_, {no_piece, no_piece});
        }
    } else {
        piece_t const lost_white = white_id(lost_piece2) ? lost_piece2 : no_piece;
        add_previous_moves(moves, orvelin::black_king, black_king_, {lost_piece1, lost_white});
        if (black_id(piece2_id_)) {
            require_piece(function, piece2_id_, 2, no_piece_text);
            add_previous_moves(moves, piece2_id_, piece2_, {lost_piece1, no_piece});
        }
    }
}

void Egt4Pieces::add_previous_moves(std::vector<Move>& moves, piece_t id, BitBoard const& to,
                                    std::array<piece_t, 2> const& lost) const {
    Square const target = to.get_first_square();
    std::uint64_t origins = to_ull(attacks_of(id, to) & ~occupied());
    while (origins != 0) {
        Square const from(BitBoard::get_reset_square(origins));
        moves.emplace_back(from, target, normal_move, id, no_piece);
        for (piece_t const captured : lost) {
            if (captured != no_piece) {
                moves.emplace_back(from, target, normal_move, id, captured);
            }
        }
    }
}

}  // namespace orvelin
