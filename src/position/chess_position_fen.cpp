// FEN and EPD text.

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>

#include "position/chess_position.h"
#include "position/masks.h"

namespace orvelin {

namespace {

struct fen_fields_t {
    std::string placement;
    std::string side;
    std::string castling;
    std::string en_passant;
    std::string halfmove = "0";
    std::string fullmove = "1";
};

/// The text itself when it begins with a number that fits an int, else `otherwise`.
std::string number_or(std::string const& text, char const* otherwise) {
    try {
        std::stoi(text);
        return text;
    } catch (std::logic_error const&) {
        return otherwise;
    }
}

fen_fields_t split_fen(std::string const& text) {
    fen_fields_t fields;
    std::istringstream in(text);
    in >> fields.placement >> fields.side >> fields.castling >> fields.en_passant;
    std::string number;
    if (in >> number) {
        fields.halfmove = number_or(number, "0");
    }
    if (in >> number) {
        fields.fullmove = number_or(number, "1");
    }
    return fields;
}

/// Reads a number as its type does: above the range gives the largest value, a negative number
/// wraps where the type has no sign.
template <typename Number>
Number read_number(std::string const& text, Number otherwise) {
    Number number = otherwise;
    std::istringstream(text) >> number;
    return number;
}

/// File of the rook nearest to the edge that `letter` stands for, among the rooks of a first
/// rank. When there is none the b-file or the g-file is taken, whatever stands there
/// (oddity 85).
int rook_file(BitBoard const& rooks_on_rank1, bool king_side) {
    if (king_side) {
        for (int file = 7; file > 1; --file) {
            if (rooks_on_rank1 & Square(file).bitboard()) {
                return file;
            }
        }
        return 1;
    }
    for (int file = 0; file < 6; ++file) {
        if (rooks_on_rank1 & Square(file).bitboard()) {
            return file;
        }
    }
    return 6;
}

/// The square on rank 3 or, for whatever is no '3', on rank 6 (oddity 86). No file letter, no
/// square.
Square read_en_passant(std::string const& field) {
    if (field.empty() || field[0] < 'a' || field[0] > 'h') {
        return Square();
    }
    int const rank = field.size() > 1 && field[1] == '3' ? 2 : 5;
    return Square(field[0] - 'a' + 8 * rank);
}

}  // namespace

std::uint16_t ChessPosition::read_castlingrights(std::string const& field) const {
    const BitBoard white_rooks = white_rook() & rank1;
    const BitBoard black_rooks = black_rook() >> 56;
    unsigned rights = 0;
    for (char const letter : field) {
        if (letter >= 'A' && letter <= 'H') {
            rights |= 1U << (letter - 'A');
        }
        if (letter >= 'a' && letter <= 'h') {
            rights |= 1U << (8 + letter - 'a');
        }
        if (letter == 'K' || letter == 'Q') {
            rights |= 1U << rook_file(white_rooks, letter == 'K');
        }
        if (letter == 'k' || letter == 'q') {
            rights |= 1U << (8 + rook_file(black_rooks, letter == 'k'));
        }
    }
    return static_cast<std::uint16_t>(rights);
}

// `K` and `Q` without a rook give a right all the same (oddity 85), the rank of an en passant
// square is 3 or 6 (oddity 86), and the half-move counter has 16 bits (oddity 87).
void ChessPosition::fen(std::string const& text) {
    // The text may be this position's own initial position, which clear() overwrites.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const std::string source = text;
    clear();
    const fen_fields_t fields = split_fen(source);
    initial_position_ = fields.placement + ' ' + fields.side + ' ' + fields.castling + ' ' +
                        fields.en_passant + ' ' + fields.halfmove + ' ' + fields.fullmove;
    board_.fen(source);
    move_number_ = read_number<int>(fields.fullmove, 1);

    history_t current;
    current.make_move_counter = make_move_counter_;
    current.castlingrights = read_castlingrights(fields.castling);
    current.dfz = read_number<std::uint16_t>(fields.halfmove, 0);
    current.ep = read_en_passant(fields.en_passant);
    record() = current;
    if (white_king() && black_king()) {
        find_pinned_pieces();
    }
    hasher_.init(this);
    repetition_filter_.init(get_hash());
    look_for_check();
    compute_materialindex();
}

std::string ChessPosition::placement_text() const {
    // Ids 7, 8 and 15, which only an illegal promotion can make, are written as blanks.
    static constexpr char letters[] = " PNBRQK  pnbrqk ";
    std::string text;
    for (int rank = 7; rank >= 0; --rank) {
        int empty_squares = 0;
        for (int square = 8 * rank; square < 8 * rank + 8; ++square) {
            int const id = board_[square].id();
            if (id == 0) {
                ++empty_squares;
                continue;
            }
            if (empty_squares > 0) {
                text += std::to_string(empty_squares);
            }
            empty_squares = 0;
            text += letters[id];
        }
        if (empty_squares > 0) {
            text += std::to_string(empty_squares);
        }
        if (rank > 0) {
            text += '/';
        }
    }
    return text;
}

std::string ChessPosition::castling_text() const {
    unsigned const rights = castlingrights();
    if (rights == 0) {
        return "-";
    }
    std::string text;
    if ((rights & chess960_rights) == 0 && !chess960_) {
        if (rights & 0x0080) {
            text += 'K';
        }
        if (rights & 0x0001) {
            text += 'Q';
        }
        if (rights & 0x8000) {
            text += 'k';
        }
        if (rights & 0x0100) {
            text += 'q';
        }
        return text;
    }
    for (int bit = 0; bit < 16; ++bit) {
        if ((rights >> bit & 1U) == 0) {
            continue;
        }
        text += static_cast<char>(bit < 8 ? 'A' + bit : 'a' + bit - 8);
    }
    return text;
}

std::string ChessPosition::fen() const {
    const std::string ep_text = ep().id() < 64 ? ep().name() : "-";
    return placement_text() + (white_to_move() ? " w " : " b ") + castling_text() + ' ' + ep_text +
           ' ' + std::to_string(get_dfz()) + ' ' + std::to_string(move_number_);
}

std::string ChessPosition::epd() const {
    const std::string text = fen();
    const std::size_t fullmove = text.rfind(' ');
    return text.substr(0, text.rfind(' ', fullmove - 1));
}

}  // namespace orvelin
