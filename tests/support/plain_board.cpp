#include "support/plain_board.h"

#include <algorithm>
#include <cstdlib>

#include "position/chess_position.h"
#include "position/move.h"

namespace orvelin::test {

namespace {

enum piece_type_t { none, pawn, knight, bishop, rook, queen, king };

int file_of(int square) {
    return square % 8;
}
int rank_of(int square) {
    return square / 8;
}
int sign(int n) {
    return (n > 0) - (n < 0);
}

std::size_t index(int square) {
    return static_cast<std::size_t>(square);
}

constexpr int first_promotion = promo_queen;
constexpr int last_promotion = promo_knight;

int promoted_type(int code) {
    constexpr int types[4] = {queen, rook, bishop, knight};
    return types[code - first_promotion];
}

bool is_promotion(int code) {
    return code >= first_promotion && code <= last_promotion;
}

}  // namespace

plain_move_t plain(Move const& move) {
    return {move.from().id(), move.to().id(),    static_cast<int>(move.code()),
            move.check(),     move.piece().id(), move.capture().id()};
}

std::string text_of(plain_move_t const& move) {
    auto const& [from, to, code, check, piece, capture] = move;
    return Square(from).name() + Square(to).name() + ":" + std::to_string(code) + ":" +
           std::to_string(check) + ":" + std::to_string(piece) + ":" + std::to_string(capture);
}

PlainBoard::PlainBoard(ChessPosition const& position)
    : side_(position.stm()), rights_(position.castlingrights()), ep_(position.ep().id()) {
    for (int s = 0; s < 64; ++s) {
        pieces_[index(s)] = position[s].id();
    }
}

bool PlainBoard::holds(int square, int colour, int type) const {
    return pieces_[index(square)] == piece_of(colour, type);
}

bool PlainBoard::owned_by(int square, int colour) const {
    int const id = pieces_[index(square)];
    return id != 0 && (id < 8) == (colour == 1);
}

bool PlainBoard::clear_between(int a, int b) const {
    int const files = file_of(b) - file_of(a);
    int const ranks = rank_of(b) - rank_of(a);
    if (files != 0 && ranks != 0 && std::abs(files) != std::abs(ranks)) {
        return false;
    }
    int const step = sign(files) + 8 * sign(ranks);
    for (int s = a + step; s != b; s += step) {
        if (pieces_[index(s)] != 0) {
            return false;
        }
    }
    return true;
}

/// The piece on `from`, not a pawn, reaches `to`, whatever stands there.
bool PlainBoard::reaches(int from, int to) const {
    int const files = std::abs(file_of(to) - file_of(from));
    int const ranks = std::abs(rank_of(to) - rank_of(from));
    if (from == to) {
        return false;
    }
    switch (pieces_[index(from)] % 8) {
        case knight:
            return files * ranks == 2;
        case bishop:
            return files == ranks && clear_between(from, to);
        case rook:
            return (files == 0 || ranks == 0) && clear_between(from, to);
        case queen:
            return clear_between(from, to);
        case king:
            return files < 2 && ranks < 2;
        default:
            return false;
    }
}

bool PlainBoard::pawn_reaches(int from, int to) const {
    int const forward = side_ == 1 ? 1 : -1;
    int const files = std::abs(file_of(to) - file_of(from));
    int const ranks = (rank_of(to) - rank_of(from)) * forward;
    if (files == 1 && ranks == 1) {
        return owned_by(to, 1 - side_) || to == ep_;
    }
    if (files != 0 || pieces_[index(to)] != 0) {
        return false;
    }
    if (ranks == 1) {
        return true;
    }
    bool const at_home = rank_of(from) == (side_ == 1 ? 1 : 6);
    return ranks == 2 && at_home && pieces_[index(from + 8 * forward)] == 0;
}

bool PlainBoard::attacked(int square, int by_colour) const {
    int const forward = by_colour == 1 ? 1 : -1;
    for (int s = 0; s < 64; ++s) {
        if (!owned_by(s, by_colour)) {
            continue;
        }
        if (holds(s, by_colour, pawn)) {
            bool const in_front = rank_of(square) - rank_of(s) == forward;
            if (in_front && std::abs(file_of(square) - file_of(s)) == 1) {
                return true;
            }
        } else if (reaches(s, square)) {
            return true;
        }
    }
    return false;
}

int PlainBoard::king_square(int colour) const {
    auto const found = std::find(pieces_.begin(), pieces_.end(), piece_of(colour, king));
    return static_cast<int>(found - pieces_.begin());
}

bool PlainBoard::in_check(int colour) const {
    return attacked(king_square(colour), 1 - colour);
}

PlainBoard PlainBoard::after(int from, int to, int code) const {
    PlainBoard next = *this;
    int const piece = pieces_[index(from)];
    next.side_ = 1 - side_;
    next.pieces_[index(from)] = 0;
    if (code == castling) {
        int const home = side_ == 1 ? 0 : 56;
        next.pieces_[index(to)] = 0;
        next.pieces_[index(home + (to > from ? 6 : 2))] = piece_of(side_, king);
        next.pieces_[index(home + (to > from ? 5 : 3))] = piece_of(side_, rook);
        return next;
    }
    next.pieces_[index(to)] = is_promotion(code) ? piece_of(side_, promoted_type(code)) : piece;
    if (code == en_passant) {
        next.pieces_[index(8 * rank_of(from) + file_of(to))] = 0;
    }
    return next;
}

void PlainBoard::try_move(int from, int to, int code, std::vector<plain_move_t>& moves) const {
    PlainBoard const next = after(from, to, code);
    if (next.in_check(side_)) {
        return;
    }
    int capture = pieces_[index(to)];
    if (code == en_passant) {
        capture = piece_of(1 - side_, pawn);
    }
    if (code == castling) {
        capture = 0;
    }
    moves.emplace_back(from, to, code, next.in_check(1 - side_), pieces_[index(from)], capture);
}

void PlainBoard::try_all_codes(int from, int to, std::vector<plain_move_t>& moves) const {
    if (!holds(from, side_, pawn)) {
        if (reaches(from, to)) {
            try_move(from, to, normal_move, moves);
        }
        return;
    }
    if (!pawn_reaches(from, to)) {
        return;
    }
    if (rank_of(to) == 0 || rank_of(to) == 7) {
        for (int code = first_promotion; code <= last_promotion; ++code) {
            try_move(from, to, code, moves);
        }
    } else {
        bool const passing = file_of(from) != file_of(to) && pieces_[index(to)] == 0;
        try_move(from, to, passing ? en_passant : normal_move, moves);
    }
}

void PlainBoard::try_castling(int file, std::vector<plain_move_t>& moves) const {
    int const home = side_ == 1 ? 0 : 56;
    int const from = king_square(side_);
    int const to = home + file;
    int const king_target = home + (to > from ? 6 : 2);
    int const rook_target = home + (to > from ? 5 : 3);
    int const low = std::min({from, to, king_target, rook_target});
    int const high = std::max({from, to, king_target, rook_target});
    for (int s = low; s <= high; ++s) {
        bool const needed =
            (s >= std::min(from, king_target) && s <= std::max(from, king_target)) ||
            (s >= std::min(to, rook_target) && s <= std::max(to, rook_target));
        if (needed && s != from && s != to && pieces_[index(s)] != 0) {
            return;
        }
    }
    for (int s = std::min(from, king_target); s <= std::max(from, king_target); ++s) {
        if (attacked(s, 1 - side_)) {
            return;
        }
    }
    try_move(from, to, castling, moves);
}

std::vector<plain_move_t> PlainBoard::legal_moves() const {
    std::vector<plain_move_t> moves;
    for (int from = 0; from < 64; ++from) {
        if (!owned_by(from, side_)) {
            continue;
        }
        for (int to = 0; to < 64; ++to) {
            if (!owned_by(to, side_)) {
                try_all_codes(from, to, moves);
            }
        }
    }
    for (int file = 0; file < 8; ++file) {
        int const right = side_ == 1 ? file : 8 + file;
        if ((rights_ >> right) & 1) {
            try_castling(file, moves);
        }
    }
    std::sort(moves.begin(), moves.end());
    return moves;
}

}  // namespace orvelin::test
