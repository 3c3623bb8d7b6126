#include "book/bk_move.h"

#include <array>

#include "position/chess_position.h"
#include "position/piece.h"

namespace orvelin {

namespace {

/// The move codes by promotion field; the values that the format does not know make no promotion.
constexpr std::array<move_t, 8> code_of_field = {normal_move, promo_knight, promo_bishop,
                                                 promo_rook,  promo_queen,  normal_move,
                                                 normal_move, normal_move};

int field_of_code(move_t code) {
    switch (code) {
        case promo_queen:
            return 4;
        case promo_rook:
            return 3;
        case promo_bishop:
            return 2;
        case promo_knight:
            return 1;
        default:
            return 0;
    }
}

}  // namespace

BKmove::BKmove(Move const& move)
    : word_(static_cast<std::uint16_t>(move.to().id() | move.from().id() << from_shift |
                                       field_of_code(move.code()) << code_shift)) {}

// Legality is not tested (oddity 34).
Move BKmove::operator()(ChessPosition const& position) const {
    if (nomove()) {
        return Move();
    }
    move_t code = code_of_field[static_cast<std::size_t>(this->code())];
    Piece const mover = position.get_piece_from(from());
    Piece const target = position.get_piece_from(to());
    if ((mover.white_king() && target.white_rook()) ||
        (mover.black_king() && target.black_rook())) {
        code = castling;
    }
    return position.convert_to_move(from(), to(), code);
}

}  // namespace orvelin
