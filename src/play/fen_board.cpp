#include "play/fen_board.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "play/reader_text.h"

namespace orvelin::play {

namespace {

constexpr std::string_view piece_letters = "PNBRQKpnbrqk";

/// Files and ranks of one step.
using step_t = std::pair<int, int>;

constexpr std::array<step_t, 8> knight_steps{
    {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}}};
constexpr std::array<step_t, 8> king_steps{
    {{0, 1}, {1, 1}, {1, 0}, {1, -1}, {0, -1}, {-1, -1}, {-1, 0}, {-1, 1}}};

/// The square some files and ranks away, -1 beyond the edge.
int away(int square, int files, int ranks) {
    int const file = square % 8 + files;
    int const rank = square / 8 + ranks;
    return file >= 0 && file < 8 && rank >= 0 && rank < 8 ? 8 * rank + file : -1;
}

std::string side_name(bool white) {
    return white ? "White" : "Black";
}

std::string rank_name(int rank) {
    return "rank " + std::to_string(rank + 1);
}

}  // namespace

std::string square_name(int square) {
    return {static_cast<char>('a' + square % 8), static_cast<char>('1' + square / 8)};
}

char piece_letter(char small_letter, bool white) {
    return white ? static_cast<char>(small_letter - 'a' + 'A') : small_letter;
}

std::string FenBoard::read(std::string_view placement) {
    squares_.fill(empty);
    int rank = 7;
    int file = 0;
    for (char const letter : placement) {
        if (letter == '/') {
            if (file != 8) {
                return rank_name(rank) + " has " + std::to_string(file) + " files instead of 8";
            }
            if (rank == 0) {
                return "there are more than 8 ranks";
            }
            --rank;
            file = 0;
            continue;
        }
        bool const piece = piece_letters.find(letter) != std::string_view::npos;
        if (!piece && (letter < '1' || letter > '8')) {
            return shown(letter) + " in " + rank_name(rank) + " is neither a piece nor 1 to 8";
        }
        int const width = piece ? 1 : letter - '0';
        if (file + width > 8) {
            return rank_name(rank) + " has more than 8 files";
        }
        if (piece) {
            int const square = 8 * rank + file;
            squares_[static_cast<std::size_t>(square)] = letter;
        }
        file += width;
    }
    if (file != 8) {
        return rank_name(rank) + " has " + std::to_string(file) + " files instead of 8";
    }
    return rank == 0 ? "" : "there are " + std::to_string(8 - rank) + " ranks instead of 8";
}

std::string FenBoard::find_fault() const {
    std::string fault = find_fault_of_kings();
    if (fault.empty()) {
        fault = find_fault_of_pawns();
    }
    return fault.empty() ? find_fault_of_numbers() : fault;
}

std::string FenBoard::find_fault_of_kings() const {
    for (bool const white : {true, false}) {
        auto const kings = std::count(squares_.begin(), squares_.end(), piece_letter('k', white));
        if (kings != 1) {
            return side_name(white) + " has " + (kings == 0 ? "no" : std::to_string(kings)) +
                   (kings == 0 ? " king" : " kings");
        }
    }
    int const white_king = king(true);
    int const black_king = king(false);
    bool const adjacent = std::abs(white_king % 8 - black_king % 8) <= 1 &&
                          std::abs(white_king / 8 - black_king / 8) <= 1;
    return adjacent ? "the kings stand side by side, on " + square_name(white_king) + " and " +
                          square_name(black_king)
                    : "";
}

std::string FenBoard::find_fault_of_pawns() const {
    for (int square = 0; square < 64; ++square) {
        bool const edge = square < 8 || square >= 56;
        if (edge && (at(square) == 'P' || at(square) == 'p')) {
            return "a pawn stands on " + square_name(square);
        }
    }
    return "";
}

// Whether promotions explain the pieces is not asked: composed positions often go beyond.
std::string FenBoard::find_fault_of_numbers() const {
    for (bool const white : {true, false}) {
        auto const pawns = std::count(squares_.begin(), squares_.end(), piece_letter('p', white));
        if (pawns > 8) {
            return side_name(white) + " has " + std::to_string(pawns) + " pawns, more than 8";
        }
        auto const pieces = std::count_if(squares_.begin(), squares_.end(), [white](char letter) {
            return letter != empty && (letter < 'a') == white;
        });
        if (pieces > 16) {
            return side_name(white) + " has " + std::to_string(pieces) + " pieces, more than 16";
        }
    }
    return "";
}

int FenBoard::king(bool white) const {
    auto const found = std::find(squares_.begin(), squares_.end(), piece_letter('k', white));
    return found == squares_.end() ? -1 : static_cast<int>(found - squares_.begin());
}

int FenBoard::castling_rook(char letter) const {
    bool const white = letter < 'a';
    int const home = white ? 0 : 56;
    char const rook = piece_letter('r', white);
    char const small = lower_case({&letter, 1})[0];
    if (small != 'k' && small != 'q') {
        int const square = home + small - 'a';
        return at(square) == rook ? square : -1;
    }
    int const step = small == 'k' ? -1 : 1;
    int const king_square = king(white);
    for (int square = home + (small == 'k' ? 7 : 0);
         square != king_square && square >= home && square < home + 8; square += step) {
        if (at(square) == rook) {
            return square;
        }
    }
    return -1;
}

bool FenBoard::reached_by_step(int square, char piece, int files, int ranks) const {
    int const from = away(square, files, ranks);
    return from >= 0 && at(from) == piece;
}

bool FenBoard::reached_by_ride(int square, bool by_white, int files, int ranks) const {
    int from = away(square, files, ranks);
    while (from >= 0 && at(from) == empty) {
        from = away(from, files, ranks);
    }
    char const rider = files == 0 || ranks == 0 ? 'r' : 'b';
    return from >= 0 &&
           (at(from) == piece_letter(rider, by_white) || at(from) == piece_letter('q', by_white));
}

bool FenBoard::attacked(int square, bool by_white) const {
    int const behind = by_white ? -1 : 1;
    for (int const files : {-1, 1}) {
        if (reached_by_step(square, piece_letter('p', by_white), files, behind)) {
            return true;
        }
    }
    for (auto const& [files, ranks] : knight_steps) {
        if (reached_by_step(square, piece_letter('n', by_white), files, ranks)) {
            return true;
        }
    }
    return std::any_of(king_steps.begin(), king_steps.end(), [&](step_t const& step) {
        return reached_by_step(square, piece_letter('k', by_white), step.first, step.second) ||
               reached_by_ride(square, by_white, step.first, step.second);
    });
}

}  // namespace orvelin::play
