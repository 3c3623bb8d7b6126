#include <array>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "position/board_position.h"

namespace orvelin {

namespace {

/// The pieces in the order of the diagnosis routines.
constexpr std::array<int, 12> piece_ids{white_pawn,   white_knight, white_bishop, white_rook,
                                        white_queen,  white_king,   black_pawn,   black_knight,
                                        black_bishop, black_rook,   black_queen,  black_king};

constexpr std::array<char const*, 12> labels{
    "white pawn: ",   "white knight: ", "white bishop: ", "white rook: ",
    "white queen: ",  "white king: ",   "black pawn: ",   "black knight: ",
    "black bishop: ", "black rook: ",   "black queen: ",  "black king: "};

constexpr std::string_view letters = "PNBRQKpnbrqk";

bool on_board(int square) {
    return square >= 0 && square < 64;
}

}  // namespace

void BoardPosition::set_piece_on(Square const& square, int id) {
    contradicted_ = true;
    if (on_board(square.id())) {
        place(static_cast<std::size_t>(square.id()), static_cast<std::size_t>(id));
    }
}

void BoardPosition::remove_piece_from(Square const& square, int id) {
    contradicted_ = true;
    if (on_board(square.id())) {
        lift(static_cast<std::size_t>(square.id()), static_cast<std::size_t>(id));
    }
}

void BoardPosition::flip() {
    for (BitBoard& board : boards_) {
        board.flip();
    }
    for (std::size_t id = 1; id <= 6; ++id) {
        std::swap(boards_[id], boards_[id + 8]);
    }
    for (std::size_t i = 0; i < 32; ++i) {
        std::swap(board_[i], board_[i ^ 56]);
    }
    for (Piece& piece : board_) {
        if (piece) {
            piece.set_id(piece.id() ^ 8);
        }
    }
    switch_color_to_move();
    compute_pieces();
}

void BoardPosition::flop() {
    for (BitBoard& board : boards_) {
        board.flop();
    }
    for (std::size_t rank = 0; rank < 64; rank += 8) {
        for (std::size_t file = 0; file < 4; ++file) {
            std::swap(board_[rank + file], board_[rank + 7 - file]);
        }
    }
    compute_pieces();
}

// Rank lengths are not tested, and any side but `w` is Black (oddity 84).
void BoardPosition::fen(std::string const& text) {
    clear();
    std::istringstream stream(text);
    std::string placement;
    std::string side;
    stream >> placement >> side;
    // 64 bits, because no length of text can bring it past its bounds.
    std::int64_t square = 56;
    for (char const letter : placement) {
        if (letter == '/') {
            square -= 16;
        } else if (letter >= '1' && letter <= '8') {
            square += letter - '0';
        } else {
            std::size_t const found = letters.find(letter);
            if (found == std::string_view::npos) {
                std::ostringstream message;
                message << "ChessPosition::fen(" << text << ") \nunkown piece 0x" << std::hex
                        << static_cast<unsigned int>(static_cast<unsigned char>(letter));
                throw std::logic_error(message.str());
            }
            if (square >= 0 && square < 64) {
                if (board_[static_cast<std::size_t>(square)].id() != 0) {
                    contradicted_ = true;
                }
                place(static_cast<std::size_t>(square), static_cast<std::size_t>(piece_ids[found]));
            }
            ++square;
        }
    }
    // Any other text than "w", or none, means Black (oddity 84).
    stm_ = side == "w" ? 1 : 0;
    compute_pieces();
}

bool BoardPosition::corrupt(std::uint64_t /*unused*/) const {
    if (white_king().popcount() != 1 || black_king().popcount() != 1) {
        return true;
    }
    BitBoard seen;
    for (std::size_t id = 1; id <= 14; ++id) {
        if (seen & boards_[id]) {
            return true;
        }
        seen |= boards_[id];
    }
    return false;
}

// An entry whose own piece board lacks the square passes when no other board holds it, and once
// its own board has been met the later ones are not looked at (oddity 92).
bool BoardPosition::consistent() const {
    for (int square = 0; square < 64; ++square) {
        int const id = (*this)[square].id();
        if (id == 7 || id == 8 || id > 14) {
            continue;
        }
        for (int const owner : piece_ids) {
            bool const held = static_cast<bool>(piece(owner) & Square(square).bitboard());
            if (!held) {
                continue;
            }
            if (owner != id) {
                return false;
            }
            break;
        }
    }
    return true;
}

std::string BoardPosition::dump() const {
    std::string text = "side to move: " + std::to_string(stm_) + '\n';
    for (std::size_t i = 0; i < piece_ids.size(); ++i) {
        text += labels[i];
        text += '\n' + piece(piece_ids[i]).dump() + '\n';
    }
    return text;
}

}  // namespace orvelin
