#include "analyse/move_finder.h"

#include <cstddef>

#include "generation/tables.h"
#include "position/move_buffer.h"
#include "position/move_list.h"

namespace orvelin::analyse {

namespace {

constexpr int to_black = black_pawn - white_pawn;

/// Where pieces of this type stand that reach the square as far as the board alone tells.
BitBoard reach_of(Attacks const& attacks, int piece, Square to, BitBoard const& occupied) {
    switch (piece) {
        case white_knight:
            return attacks.knight(to);
        case white_bishop:
            return attacks.bishop(to, occupied);
        case white_rook:
            return attacks.rook(to, occupied);
        case white_queen:
            return attacks.queen(to, occupied);
        default:
            return attacks.king(to);
    }
}

}  // namespace

MoveFinder::MoveFinder(Tables const& tables) : attacks_(tables.attacks), generator_(tables) {}

/// Enters the square that the pawns named by the text reach. En passant captures are found by the
/// generator without that.
void MoveFinder::enter_pawns(ChessPosition const& position, SanText const& wanted) {
    int const ahead = position.white_to_move() ? 8 : -8;
    int const pawn = position.white_to_move() ? white_pawn : black_pawn;
    Square const to(wanted.to);
    int const victim = position[to.id()].id();
    auto const enter = [&](int from) {
        if (from >= 0 && from < 64 && position[from].id() == pawn) {
            table_[static_cast<std::size_t>(from)] = to_ull(to.bitboard());
        }
    };
    if (wanted.from_file >= 0 && wanted.from_file != to.file_number()) {
        int const step = wanted.from_file - to.file_number();
        bool const enemy = victim != no_piece && Piece(victim).white_piece() == (ahead < 0);
        if (enemy && (step == 1 || step == -1)) {
            enter(wanted.to - ahead + step);
        }
    } else if (victim == no_piece) {
        enter(wanted.to - ahead);
        int const middle = wanted.to - ahead;
        bool const double_step = to.rank_number() == (ahead > 0 ? 3 : 4);
        if (double_step && position[middle].id() == no_piece) {
            enter(wanted.to - 2 * ahead);
        }
    }
}

/// False when there is a shorter way than by candidates, or none.
bool MoveFinder::enter_candidates(ChessPosition const& position, SanText const& wanted) {
    if (wanted.what != SanText::form::step || wanted.piece == no_piece) {
        return false;
    }
    table_.fill(0);
    if (wanted.piece == white_pawn) {
        enter_pawns(position, wanted);
        return true;
    }
    int const piece = wanted.piece + (position.white_to_move() ? 0 : to_black);
    Square const to(wanted.to);
    BitBoard from = position.piece(piece) & reach_of(attacks_, wanted.piece, to, position.pieces());
    while (from) {
        table_[index(from.take_first_square())] = to_ull(to.bitboard());
    }
    return true;
}

/// The only move that is meant, if there is exactly one.
Move MoveFinder::find_step(ChessPosition const& position, SanText const& wanted) {
    MoveBuffer buffer;
    MoveList list(buffer.data());
    generator_.serialize_moves(position, table_, list);
    Move found;
    for (Move const& move : list) {
        if (is_meant(wanted, move)) {
            if (found.word() != 0) {
                return Move();
            }
            found = move;
        }
    }
    return found;
}

FoundMove MoveFinder::find(ChessPosition const& position, std::string_view text) {
    SanText const wanted = parse_san(text);
    if (enter_candidates(position, wanted)) {
        Move const move = find_step(position, wanted);
        if (move.word() != 0) {
            return {move, san_result::found};
        }
    }
    // Castling, moves of UCI, and what is wrong.
    MoveBuffer buffer;
    MoveList list(buffer.data());
    generator_.generate_moves(position, list);
    return find_san({list.begin(), list.end()}, text);
}

}  // namespace orvelin::analyse
