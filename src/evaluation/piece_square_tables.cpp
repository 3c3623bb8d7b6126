#include "evaluation/piece_square_tables.h"

#include <cmath>
#include <iostream>

#include "evaluation/piece_square_values.h"
#include "position/chess_position.h"
#include "position/move.h"

namespace orvelin {

namespace {

constexpr int black_bit = 8;
constexpr int squares = 64;

float on_square(base_table_t const& diagram, std::size_t square) {
    return diagram[7 - square / 8][square % 8];
}

bool differs(float recomputed, float running, std::size_t index, char const* half) {
    if (std::fabs(recomputed - running) <= 0.01F) {
        return false;
    }
    std::cerr << "verify correct score[" << index << "]." << half << " " << recomputed
              << " != incremental score[" << index << "]." << half << " " << running << std::endl;
    return true;
}

}  // namespace

PieceSquareTables::PieceSquareTables() {
    // The rows of id 0 stay zero, so that an empty square or a move without capture needs no test.
    std::array<base_table_t const*, 6> const mg{&pawn_mg_values,   &knight_mg_values,
                                                &bishop_mg_values, &rook_mg_values,
                                                &queen_mg_values,  &king_mg_values};
    std::array<base_table_t const*, 6> const eg{&pawn_eg_values,   &knight_eg_values,
                                                &bishop_eg_values, &rook_eg_values,
                                                &queen_eg_values,  &king_eg_values};
    for (std::size_t type = 0; type < mg.size(); ++type) {
        row_t& white = rows_[type + 1];
        row_t& black = rows_[type + 1 + black_bit];
        for (std::size_t square = 0; square < white.size(); ++square) {
            white[square] = {on_square(*mg[type], square), on_square(*eg[type], square)};
            black[square ^ 56U] = {-white[square].first, -white[square].second};
        }
    }
}

void PieceSquareTables::init(ChessPosition const& position) {
    position_ = &position;
    score_ = board_sums();
}

PieceSquareTables::sums_t PieceSquareTables::board_sums() const {
    sums_t sums{};
    if (position_ == nullptr) {
        return sums;
    }
    for (int square = 0; square < squares; ++square) {
        auto const id = static_cast<std::size_t>(position_->get_piece_id_from(Square(square)));
        pair_t const& value = rows_[id][static_cast<std::size_t>(square)];
        sums[id].first += value.first;
        sums[id].second += value.second;
    }
    return sums;
}

template <bool Make>
void PieceSquareTables::follow_promotion(Move const& move, int type) {
    int const from = move.from().id();
    int const to = move.to().id();
    change<!Make>(move.capture_id(), to);
    change<!Make>(move.piece_id(), from);
    change<Make>(to <= from ? type + black_bit : type, to);
}

template <bool Make>
void PieceSquareTables::follow_castling(Move const& move) {
    int const from = move.from().id();
    int const rook_from = move.to().id();
    bool const black = from >= 8;
    int const king = black ? 6 + black_bit : 6;
    int const rook = black ? 4 + black_bit : 4;
    int const rank = black ? 56 : 0;
    bool const queen_side = rook_from <= from;
    change<!Make>(king, from);
    change<!Make>(rook, rook_from);
    change<Make>(king, rank + (queen_side ? 2 : 6));
    change<Make>(rook, rank + (queen_side ? 3 : 5));
}

template <bool Make>
void PieceSquareTables::follow_special(Move const& move) {
    switch (move.code()) {
        case nullmove:
        case normal_move:
            break;
        case promo_queen:
            follow_promotion<Make>(move, 5);
            break;
        case promo_rook:
            follow_promotion<Make>(move, 4);
            break;
        case promo_bishop:
            follow_promotion<Make>(move, 3);
            break;
        case promo_knight:
            follow_promotion<Make>(move, 2);
            break;
        case castling:
            follow_castling<Make>(move);
            break;
        case en_passant:
            change<Make>(move.piece_id(), move.to().id());
            change<!Make>(move.piece_id(), move.from().id());
            change<!Make>(move.capture_id(), move.to().id() ^ 8);
            break;
    }
}

template void PieceSquareTables::follow_special<true>(Move const&);
template void PieceSquareTables::follow_special<false>(Move const&);

PieceSquareTables::pair_t PieceSquareTables::get_score() const {
    pair_t sum{0.0F, 0.0F};
    for (pair_t const& score : score_) {
        sum.first += score.first;
        sum.second += score.second;
    }
    return sum;
}

bool PieceSquareTables::verify_score() const {
    sums_t const correct = board_sums();
    for (std::size_t id = 0; id < correct.size(); ++id) {
        if (differs(correct[id].first, score_[id].first, id, "first")) {
            return false;
        }
        if (differs(correct[id].second, score_[id].second, id, "second")) {
            return false;
        }
    }
    return true;
}

}  // namespace orvelin
