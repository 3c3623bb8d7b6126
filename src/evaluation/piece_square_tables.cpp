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

PieceSquareTables::table_t by_square(base_table_t const& diagram) {
    PieceSquareTables::table_t table{};
    for (std::size_t square = 0; square < table.size(); ++square) {
        table[square] = diagram[7 - square / 8][square % 8];
    }
    return table;
}

PieceSquareTables::table_t for_black(PieceSquareTables::table_t const& white) {
    PieceSquareTables::table_t table{};
    for (std::size_t square = 0; square < table.size(); ++square) {
        table[square] = -white[square ^ 56U];
    }
    return table;
}

bool differs(float recomputed, float running, std::size_t index, char const* half) {
    if (std::fabs(recomputed - running) <= 0.01F) return false;
    std::cerr << "verify correct score[" << index << "]." << half << " " << recomputed
              << " != incremental score[" << index << "]." << half << " " << running << std::endl;
    return true;
}

}  // namespace

PieceSquareTables::PieceSquareTables()
    : pawn_mg_(by_square(pawn_mg_values)),
      pawn_eg_(by_square(pawn_eg_values)),
      knight_mg_(by_square(knight_mg_values)),
      knight_eg_(by_square(knight_eg_values)),
      bishop_mg_(by_square(bishop_mg_values)),
      bishop_eg_(by_square(bishop_eg_values)),
      rook_mg_(by_square(rook_mg_values)),
      rook_eg_(by_square(rook_eg_values)),
      queen_mg_(by_square(queen_mg_values)),
      queen_eg_(by_square(queen_eg_values)),
      king_mg_(by_square(king_mg_values)),
      king_eg_(by_square(king_eg_values)) {
    // The rows of id 0 stay zero, so that an empty square or a move without capture needs no test.
    std::array<table_t const*, 6> const mg{&pawn_mg_, &knight_mg_, &bishop_mg_,
                                           &rook_mg_, &queen_mg_,  &king_mg_};
    std::array<table_t const*, 6> const eg{&pawn_eg_, &knight_eg_, &bishop_eg_,
                                           &rook_eg_, &queen_eg_,  &king_eg_};
    for (std::size_t type = 0; type < mg.size(); ++type) {
        mg_[type + 1] = *mg[type];
        eg_[type + 1] = *eg[type];
        mg_[type + 1 + black_bit] = for_black(*mg[type]);
        eg_[type + 1 + black_bit] = for_black(*eg[type]);
    }
}

void PieceSquareTables::init(ChessPosition const& position) {
    position_ = &position;
    score_ = board_sums();
}

PieceSquareTables::sums_t PieceSquareTables::board_sums() const {
    sums_t sums{};
    if (position_ == nullptr) return sums;
    for (int square = 0; square < squares; ++square) {
        auto const id = static_cast<std::size_t>(position_->get_piece_id_from(Square(square)));
        sums[id].first += mg_[id][static_cast<std::size_t>(square)];
        sums[id].second += eg_[id][static_cast<std::size_t>(square)];
    }
    return sums;
}

template <bool Plus>
void PieceSquareTables::change(int piece_id, int square_id) {
    auto const piece = static_cast<std::size_t>(piece_id);
    auto const square = static_cast<std::size_t>(square_id);
    if constexpr (Plus) {
        score_[piece].first += mg_[piece][square];
        score_[piece].second += eg_[piece][square];
    } else {
        score_[piece].first -= mg_[piece][square];
        score_[piece].second -= eg_[piece][square];
    }
}

// One addition at a time, in this order, and taking back keeps the order and turns each sign:
// the rounding of the running sums depends on it, and the search on the rounding.
template <bool Make>
void PieceSquareTables::follow(Move const& move) {
    int const from = move.from().id();
    int const to = move.to().id();
    switch (move.code()) {
        case nullmove:
            break;
        case normal_move:
            change<Make>(move.piece_id(), to);
            change<!Make>(move.piece_id(), from);
            change<!Make>(move.capture_id(), to);
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
            change<Make>(move.piece_id(), to);
            change<!Make>(move.piece_id(), from);
            change<!Make>(move.capture_id(), to ^ 8);
            break;
    }
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

void PieceSquareTables::make_move(Move const& move) {
    follow<true>(move);
}

void PieceSquareTables::unmake_move(Move const& move) {
    follow<false>(move);
}

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
        if (differs(correct[id].first, score_[id].first, id, "first")) return false;
        if (differs(correct[id].second, score_[id].second, id, "second")) return false;
    }
    return true;
}

}  // namespace orvelin
