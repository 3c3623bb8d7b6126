#include "position/board_position.h"

#include <array>

#include "position/castling_targets.h"

namespace orvelin {

namespace {

/// What a promotion adds to the pawn's id, by move code.
constexpr std::array<int, 8> promotion_step{0, 0, 4, 3, 2, 1, 0, 0};

/// Id of the piece that a promotion puts on the board, cut to four bits later on.
std::size_t promoted(Move const& move) {
    int const id = move.piece_id() + promotion_step[move.code()];
    return static_cast<std::size_t>(id);
}

/// True for a word that does what no legal move does, although it may tell the truth about the
/// pieces: it stays on its square, promotes what is no pawn, or captures by a null move. What it
/// leaves is no piece at all, or not what the material word says.
bool odd_word(Move const& move) {
    // What is captured leaves the material word and stays on the board.
    if (move.code() == nullmove) {
        return move.capture_id() != no_piece;
    }
    bool const promotes = promotion_step[move.code()] != 0;
    return move.from() == move.to() || (promotes && !move.piece().pawn());
}

/// The rook of the castling king's side.
int castling_rook(Move const& move) {
    return move.piece().white_king() ? white_rook : black_rook;
}

// Square of the pawn that an en passant capture takes. An illegal word may name a square off
// the board, which is ignored.
Square en_passant_victim(Move const& move, int side) {
    int const id = move.to().id() - (16 * side - 8);
    return id >= 0 && id < 64 ? Square(id) : Square();
}

}  // namespace

void BoardPosition::compute_pieces() {
    white_pieces_ = boards_[1] | boards_[2] | boards_[3] | boards_[4] | boards_[5] | boards_[6];
    black_pieces_ =
        boards_[9] | boards_[10] | boards_[11] | boards_[12] | boards_[13] | boards_[14];
    pieces_ = white_pieces_ | black_pieces_;
}

void BoardPosition::place(std::size_t square, std::size_t id) {
    boards_[id & 15] |= Square::bb[square];
    board_[square] = Piece(static_cast<int>(id & 15));
}

void BoardPosition::lift(std::size_t square, std::size_t id) {
    boards_[id & 15] &= ~Square::bb[square];
    board_[square] = Piece();
}

void BoardPosition::clear() {
    boards_.fill(BitBoard());
    board_.fill(Piece());
    stm_ = 1;
    odd_moves_ = 0;
    contradicted_ = false;
}

// True where the word names pieces that are not there or puts one on another. Unmaking restores
// what the word says, and so another board than before.
bool BoardPosition::contradicts(Move const& move) const {
    auto const id_on = [this](Square const& square) { return board_[index(square)].id(); };
    if (id_on(move.from()) != move.piece_id()) {
        return true;
    }
    if (move.code() == castling) {
        CastlingTargets const targets = castling_targets(move);
        auto const taken = [&](Square const& target) {
            return target != move.from() && target != move.to() && id_on(target) != no_piece;
        };
        return id_on(move.to()) != castling_rook(move) || taken(targets.king) ||
               taken(targets.rook);
    }
    if (move.code() == en_passant) {
        return id_on(move.to()) != no_piece ||
               id_on(en_passant_victim(move, stm_)) != move.capture_id();
    }
    return id_on(move.to()) != move.capture_id();
}

// Called for the rare kinds of moves, before they are made.
void BoardPosition::note_odd_move(Move const& move) {
    if (contradicts(move)) {
        contradicted_ = true;
    } else if (odd_word(move)) {
        ++odd_moves_;
    }
}

// Called while odd moves are on the board. One that contradicted it was not counted, but then the
// count does not matter any more.
void BoardPosition::forget_odd_move(Move const& move) {
    if (odd_word(move)) {
        --odd_moves_;
    }
}

void BoardPosition::make_move(Move const& move) {
    if (move.code() == normal_move) {
        make_normal_move(move);
    } else {
        make_special_move(move);
    }
    compute_pieces();
    switch_color_to_move();
}

void BoardPosition::make_normal_move(Move const& move) {
    auto const from = static_cast<std::size_t>(move.from_id());
    auto const to = static_cast<std::size_t>(move.to_id());
    if (from == to) {
        note_odd_move(move);
    }
    lift(to, static_cast<std::size_t>(move.capture_id()));
    lift(from, static_cast<std::size_t>(move.piece_id()));
    place(to, static_cast<std::size_t>(move.piece_id()));
}

void BoardPosition::make_special_move(Move const& move) {
    Square const from = move.from();
    Square const to = move.to();
    int const piece = move.piece_id();
    switch (move.code()) {
        case nullmove:
            // What else its word says moves nothing.
            if (odd_word(move)) {
                ++odd_moves_;
            }
            break;
        case en_passant: {
            note_odd_move(move);
            Square const victim = en_passant_victim(move, stm_);
            lift(index(victim), static_cast<std::size_t>(move.capture_id()));
            lift(index(from), static_cast<std::size_t>(piece));
            place(index(to), static_cast<std::size_t>(piece));
            break;
        }
        case castling: {
            CastlingTargets const targets = castling_targets(move);
            note_odd_move(move);
            // Both pieces leave before either arrives, so the squares may overlap.
            lift(index(from), static_cast<std::size_t>(piece));
            lift(index(to), static_cast<std::size_t>(castling_rook(move)));
            place(index(targets.king), static_cast<std::size_t>(piece));
            place(index(targets.rook), static_cast<std::size_t>(castling_rook(move)));
            break;
        }
        default:
            note_odd_move(move);
            lift(index(to), static_cast<std::size_t>(move.capture_id()));
            lift(index(from), static_cast<std::size_t>(piece));
            place(index(to), promoted(move));
            break;
    }
}

void BoardPosition::unmake_move(Move const& move) {
    if (odd_moves_ != 0) {
        forget_odd_move(move);
    }
    if (move.code() == normal_move) {
        unmake_normal_move(move);
    } else {
        unmake_special_move(move);
    }
    boards_[0].clear();
    compute_pieces();
    switch_color_to_move();
}

void BoardPosition::unmake_normal_move(Move const& move) {
    auto const from = static_cast<std::size_t>(move.from_id());
    auto const to = static_cast<std::size_t>(move.to_id());
    lift(to, static_cast<std::size_t>(move.piece_id()));
    place(from, static_cast<std::size_t>(move.piece_id()));
    // Without a capture this writes into board 0, which is emptied by the caller.
    place(to, static_cast<std::size_t>(move.capture_id()));
}

void BoardPosition::unmake_special_move(Move const& move) {
    Square const from = move.from();
    Square const to = move.to();
    int const piece = move.piece_id();
    switch (move.code()) {
        case nullmove:
            break;
        case en_passant: {
            lift(index(to), static_cast<std::size_t>(piece));
            place(index(from), static_cast<std::size_t>(piece));
            // The side to move is still the one after the move.
            Square const victim = en_passant_victim(move, stm_ ^ 1);
            if (victim != Square()) {
                place(index(victim), static_cast<std::size_t>(move.capture_id()));
            }
            break;
        }
        case castling: {
            CastlingTargets const targets = castling_targets(move);
            lift(index(targets.king), static_cast<std::size_t>(piece));
            lift(index(targets.rook), static_cast<std::size_t>(castling_rook(move)));
            place(index(from), static_cast<std::size_t>(piece));
            place(index(to), static_cast<std::size_t>(castling_rook(move)));
            break;
        }
        default:
            lift(index(to), promoted(move));
            place(index(to), static_cast<std::size_t>(move.capture_id()));
            place(index(from), static_cast<std::size_t>(piece));
            break;
    }
}

}  // namespace orvelin
