#include <array>
#include <cstddef>
#include <stdexcept>

#include "endgame/egt4_pieces.h"
#include "generation/attacks.h"
#include "position/masks.h"

namespace orvelin {

namespace {

constexpr int piece1_shift = 1;
constexpr int piece2_shift = 7;
constexpr int black_king_shift = 13;
constexpr int white_king_shift = 19;
constexpr unsigned int square_mask = 63;

/// Squares of the white king by index: a1 b1 c1 d1 b2 c2 d2 c3 d3 d4.
constexpr std::array<int, 10> triangle = {0, 1, 2, 3, 9, 10, 11, 18, 19, 27};

/// Index by square; the squares outside the triangle are never looked up.
constexpr std::array<unsigned char, 64> make_triangle_index() {
    std::array<unsigned char, 64> index{};
    for (std::size_t i = 0; i < triangle.size(); ++i) {
        index[static_cast<std::size_t>(triangle[i])] = static_cast<unsigned char>(i);
    }
    return index;
}

constexpr std::array<unsigned char, 64> triangle_index = make_triangle_index();

constexpr unsigned int field(unsigned int key, int shift) {
    return (key >> shift) & square_mask;
}

/// The square of an index, no square for one beyond the triangle.
constexpr unsigned int white_king_field(unsigned int key) {
    unsigned int const index = key >> white_king_shift;
    return index < triangle.size() ? static_cast<unsigned int>(triangle[index]) : 64;
}

BitBoard set_of(unsigned int id) {
    return Square(static_cast<int>(id)).bitboard();
}

/// Reflects a square in the diagonal a1-h8.
constexpr unsigned int reflect(unsigned int id) {
    return id / 8 + id % 8 * 8;
}

unsigned int id_of(BitBoard const& square) {
    return static_cast<unsigned int>(square.get_first_square().id());
}

bool single(BitBoard const& set) {
    std::uint64_t const word = to_ull(set);
    return word != 0 && (word & (word - 1)) == 0;
}

}  // namespace

void Egt4Pieces::set_key(unsigned int key) {
    unsigned int const white_king_id = white_king_field(key);
    unsigned int const black_king_id = field(key, black_king_shift);
    auto const piece = [&](int shift) {
        unsigned int const id = field(key, shift);
        return id == black_king_id || id == white_king_id ? BitBoard() : set_of(id);
    };
    stm_ = static_cast<std::int32_t>(key & 1);
    white_king_ = set_of(white_king_id);
    black_king_ = set_of(black_king_id);
    piece1_ = piece(piece1_shift);
    piece2_ = piece(piece2_shift);
    sign_ = 1;
}

unsigned int Egt4Pieces::get_key() const {
    if (!single(white_king_) || !single(black_king_)) {
        return size_;
    }
    unsigned int white_king_id = id_of(white_king_);
    unsigned int black_king_id = id_of(black_king_);
    unsigned int piece1_id = piece1_ ? id_of(piece1_) : black_king_id;
    unsigned int piece2_id = piece2_ ? id_of(piece2_) : black_king_id;
    auto const map_all = [&](auto map) {
        white_king_id = map(white_king_id);
        black_king_id = map(black_king_id);
        piece1_id = map(piece1_id);
        piece2_id = map(piece2_id);
    };
    if (white_king_id > 31) {
        map_all([](unsigned int id) { return id ^ 56; });
    }
    if (set_of(white_king_id) & kings_half) {
        map_all([](unsigned int id) { return id ^ 7; });
    }
    if (set_of(white_king_id) & a2_a4_c4) {
        map_all(reflect);
    }
    return static_cast<unsigned int>(stm_) | piece1_id << piece1_shift | piece2_id << piece2_shift |
           black_king_id << black_king_shift |
           static_cast<unsigned int>(triangle_index[white_king_id]) << white_king_shift;
}

unsigned int Egt4Pieces::get_mirror_key(unsigned int key) {
    constexpr unsigned int kept = ~(square_mask << piece1_shift | square_mask << piece2_shift |
                                    square_mask << black_king_shift);
    unsigned int mirrored = key & kept;
    for (int const shift : {piece1_shift, piece2_shift, black_king_shift}) {
        mirrored |= reflect(field(key, shift)) << shift;
    }
    return mirrored;
}

bool Egt4Pieces::is_legal_key(unsigned int key) {
    unsigned int const white_king_id = white_king_field(key);
    unsigned int const black_king_id = field(key, black_king_shift);
    unsigned int const piece1_id = field(key, piece1_shift);
    unsigned int const piece2_id = field(key, piece2_shift);
    // Index 10 passes, though no square has it: it is beyond the table in any case.
    if (key >> white_king_shift > 10) {
        return false;
    }
    if (white_king_id == piece1_id || white_king_id == piece2_id ||
        white_king_id == black_king_id) {
        return false;
    }
    return piece1_id != piece2_id || piece1_id == black_king_id;
}

bool Egt4Pieces::is_legal() const {
    if (!single(white_king_) || !single(black_king_)) {
        return false;
    }
    require_pieces("Egt4Pieces::is_legal() unkown piece 1",
                   "Egt4Pieces::is_legal() unkown piece 2");
    if (attacks_.king(white_king_) & black_king_) {
        return false;
    }
    return !king_attacked(stm_ == white ? black : white);
}

std::string Egt4Pieces::get_key_str(unsigned int key) const {
    auto const square_name = [](unsigned int id) { return Square(static_cast<int>(id)).name(); };
    auto const piece_text = [&](piece_t id, int shift) {
        return std::string(1, letter_of(id)) + ": " + square_name(field(key, shift)) + ' ';
    };
    return "K: " + square_name(white_king_field(key)) +
           " k: " + square_name(field(key, black_king_shift)) + ' ' +
           piece_text(piece1_id_, piece1_shift) + piece_text(piece2_id_, piece2_shift) +
           ((key & 1) == white ? "(white)" : "(black)");
}

void Egt4Pieces::require_pieces(char const* piece1_error, char const* piece2_error) const {
    if (piece1_id_ < white_knight || piece1_id_ > white_queen) {
        throw std::logic_error(piece1_error);
    }
    if ((piece2_id_ & 7) < white_knight || (piece2_id_ & 7) > white_queen) {
        throw std::logic_error(piece2_error);
    }
}

bool Egt4Pieces::king_attacked(side_t side) const {
    auto const attacked_by = [this](piece_t id, BitBoard const& piece, BitBoard const& king) {
        return static_cast<bool>(attacks_of(id, piece) & king);
    };
    if (side == white) {
        return piece2_id_ > 8 && attacked_by(piece2_id_, piece2_, white_king_);
    }
    return attacked_by(piece1_id_, piece1_, black_king_) ||
           (piece2_id_ < 7 && attacked_by(piece2_id_, piece2_, black_king_));
}

BitBoard Egt4Pieces::attacks_of(piece_t id, BitBoard const& square) const {
    Square const from = square.get_first_square();
    switch (id & 7) {
        case white_knight:
            return attacks_.knight(from);
        case white_bishop:
            return attacks_.bishop(from, occupied());
        case white_rook:
            return attacks_.rook(from, occupied());
        case white_queen:
            return attacks_.queen(from, occupied());
        case orvelin::white_king:
            return attacks_.king(from);
        default:
            return BitBoard();
    }
}

// The pieces are told apart by their ids, so the order of the tests matters only for two equal
// ones, which a table cannot have.
BitBoard& Egt4Pieces::pieces_of(int id) {
    if (id == piece1_id_) {
        return piece1_;
    }
    if (id == piece2_id_) {
        return piece2_;
    }
    return id == orvelin::white_king ? white_king_ : black_king_;
}

void Egt4Pieces::make_move(Move const& move) {
    ++moves_made_;
    pieces_of(move.piece_id()) ^= move.from().bitboard() | move.to().bitboard();
    if (move.capture_id() == piece1_id_) {
        piece1_.clear();
    } else if (move.capture_id() == piece2_id_) {
        piece2_.clear();
    }
    stm_ = 1 - stm_;
}

void Egt4Pieces::unmake_move(Move const& move) {
    pieces_of(move.piece_id()) ^= move.from().bitboard() | move.to().bitboard();
    if (move.capture_id() == piece1_id_) {
        piece1_ = move.to().bitboard();
    } else if (move.capture_id() == piece2_id_) {
        piece2_ = move.to().bitboard();
    }
    stm_ = 1 - stm_;
}

}  // namespace orvelin
