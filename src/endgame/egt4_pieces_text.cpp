#include <array>
#include <cctype>
#include <cstddef>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "endgame/egt4_pieces.h"

namespace orvelin {

namespace {

/// The pieces' letters by id; ids that are no piece have a question mark.
constexpr std::string_view letters = "?PNBRQK??pnbrqk?";

/// The white id of the piece of a letter of either case; no_piece for a pawn and for any other
/// letter.
piece_t white_id_of(char letter) {
    switch (letter) {
        case 'N':
        case 'n':
            return white_knight;
        case 'B':
        case 'b':
            return white_bishop;
        case 'R':
        case 'r':
            return white_rook;
        case 'Q':
        case 'q':
            return white_queen;
        default:
            return no_piece;
    }
}

constexpr int colour_bit = 8;
constexpr std::size_t byte_values = 256;
constexpr std::size_t counts_in_line = 8;

}  // namespace

char Egt4Pieces::letter_of(piece_t id) {
    return letters[static_cast<std::size_t>(id) % letters.size()];
}

void Egt4Pieces::fen(std::string const& text) {
    sign_ = 1;
    white_king_.clear();
    black_king_.clear();
    piece1_.clear();
    piece2_.clear();
    std::istringstream fields(text);
    std::string placement;
    std::string side;
    fields >> placement >> side;
    int rank = 7;
    int file = 0;
    for (char const letter : placement) {
        if (letter == '/') {
            --rank;
            file = 0;
        } else if (letter >= '1' && letter <= '8') {
            file += letter - '0';
        } else {
            BitBoard const square =
                rank >= 0 && file < 8 ? Square(8 * rank + file).bitboard() : BitBoard();
            if (!put_piece(letter, square)) {
                throw std::logic_error("Egt4Pieces::fen(" + text + ") \nwrong piece");
            }
            ++file;
        }
    }
    stm_ = side == "w" ? white : black;
    if (sign_ < 0) {
        stm_ = 1 - stm_;
        std::swap(white_king_, black_king_);
    }
}

bool Egt4Pieces::put_piece(char letter, BitBoard const& square) {
    if (letter == 'K') {
        white_king_ |= square;
        return true;
    }
    if (letter == 'k') {
        black_king_ |= square;
        return true;
    }
    piece_t const id = white_id_of(letter);
    if (id == no_piece) {
        return false;
    }
    bool const upper = std::isupper(static_cast<unsigned char>(letter)) != 0;
    if (id == piece1_id_ && (upper || piece2_id_ != (id | colour_bit))) {
        piece1_ |= square;
        if (!upper) {
            sign_ = -1;
        }
    } else {
        piece2_ |= square;
    }
    return true;
}

char Egt4Pieces::letter_on(BitBoard const& square) const {
    if (square & white_king_) {
        return letter_of(orvelin::white_king);
    }
    if (square & black_king_) {
        return letter_of(orvelin::black_king);
    }
    if (square & piece1_) {
        return letter_of(piece1_id_);
    }
    if (square & piece2_) {
        return letter_of(piece2_id_);
    }
    return '\0';
}

std::string Egt4Pieces::fen() const {
    std::string text;
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        auto const end_run = [&] {
            if (empty > 0) {
                text += std::to_string(empty);
            }
            empty = 0;
        };
        for (int file = 0; file < 8; ++file) {
            char const letter = letter_on(Square(8 * rank + file).bitboard());
            if (letter == '\0') {
                ++empty;
            } else {
                end_run();
                text += letter;
            }
        }
        end_run();
        if (rank > 0) {
            text += '/';
        }
    }
    return text + (stm_ == white ? " w" : " b") + " - - 0 1";
}

void Egt4Pieces::mate_in(int m) const {
    std::string const line = "mate in " + std::to_string(m) + ":   " + fen() + '\n';
    for (unsigned int key = 0; key < size_; ++key) {
        if ((*this)[key] == m) {
            std::cout << line;
        }
    }
}

void Egt4Pieces::stats() const {
    std::array<unsigned int, byte_values> counts{};
    for (unsigned int key = 0; key < size_; ++key) {
        ++counts[(*this)[key]];
    }
    for (std::size_t value = 0; value < byte_values; ++value) {
        if (value % counts_in_line == 0) {
            std::cout << '\n';
        }
        std::cout << std::setw(7) << counts[value] << "  ";
    }
}

}  // namespace orvelin
