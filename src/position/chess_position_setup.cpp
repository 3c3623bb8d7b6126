// Start positions and mirror images.

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <random>
#include <stdexcept>

#include "position/chess_position.h"
#include "position/masks.h"

namespace orvelin {

namespace {

constexpr int array_count = 960;

/// From the id of a white piece to that of the black one.
constexpr int to_black = black_pawn - white_pawn;

/// The white piece on each file of the first rank.
using first_rank_t = std::array<int, 8>;

/// A number of an array, another one as the clock goes on.
int random_array_number() {
    auto const since_epoch = std::chrono::system_clock::now().time_since_epoch();
    auto const milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(since_epoch).count();
    auto const seed = static_cast<std::int32_t>(milliseconds);
    // The generator takes its seed modulo 2147483647, and 1 for 0.
    std::minstd_rand0 generator(static_cast<std::minstd_rand0::result_type>(seed));
    return std::uniform_int_distribution<int>(0, array_count - 1)(generator);
}

/// Puts a piece on the free file of this index, counted from the a-file, if there are so many.
void put_on_free_file(first_rank_t& rank, int index, int piece) {
    for (int& file : rank) {
        if (file == no_piece && index-- == 0) {
            file = piece;
            return;
        }
    }
}

/// Puts the knights on the five files that bishops and queen leave free. The second index counts
/// the four files left by the first knight, so 4 finds none and the second knight stays away: the
/// numbering of the arrays rests on it (oddity 93).
void put_knights(first_rank_t& rank, int number) {
    static constexpr std::array<int, 10> first{0, 0, 0, 0, 1, 1, 1, 2, 2, 3};
    static constexpr std::array<int, 10> second{1, 2, 3, 4, 2, 3, 4, 3, 4, 4};
    auto const index = static_cast<std::size_t>(number);
    if (index >= first.size()) {
        throw std::logic_error("ChessPosition::newgame960");
    }
    put_on_free_file(rank, first[index], white_knight);
    put_on_free_file(rank, second[index], white_knight);
}

/// The first rank of an array, by a numbering of our own.
first_rank_t first_rank_of_array(int number) {
    first_rank_t rank{};
    int const first_bishop = number / 240 * 2;
    int const second_bishop = number % 240 / 60 * 2 + 1;
    rank[static_cast<std::size_t>(first_bishop)] = white_bishop;
    rank[static_cast<std::size_t>(second_bishop)] = white_bishop;
    put_on_free_file(rank, number % 60 / 10, white_queen);
    put_knights(rank, number % 10);
    for (int const piece : {white_rook, white_king, white_rook}) {
        put_on_free_file(rank, 0, piece);
    }
    return rank;
}

}  // namespace

void ChessPosition::newgame() {
    fen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    initial_position_ = fen();
}

void ChessPosition::newgame960(int n) {
    int const drawn = random_array_number();
    const first_rank_t rank = first_rank_of_array(n >= 0 && n < array_count ? n : drawn);
    clear();
    for (int file = 0; file < 8; ++file) {
        board_.set_piece_on(Square(file + 8), orvelin::white_pawn);
        board_.set_piece_on(Square(file + 48), orvelin::black_pawn);
        int const piece = rank[static_cast<std::size_t>(file)];
        if (piece == no_piece) {
            continue;
        }
        board_.set_piece_on(Square(file), piece);
        board_.set_piece_on(Square(file + 56), piece + to_black);
    }
    const std::uint64_t rooks = to_ull(white_rook() & rank1);
    record().castlingrights = static_cast<std::uint16_t>(rooks | rooks << 8);
    // Reading the text finds all that is derived, and stores it as the initial position.
    fen(fen());
}

void ChessPosition::flip() {
    board_.flip();
    unsigned const rights = castlingrights();
    record().castlingrights = static_cast<std::uint16_t>(rights << 8 | rights >> 8);
    if (ep().id() < 64) {
        record().ep = orvelin::flip(ep());
    }
    fen(fen());
}

void ChessPosition::flop() {
    board_.flop();
    // The rights are two rows of files, as two ranks of a board are.
    record().castlingrights =
        static_cast<std::uint16_t>(to_ull(BitBoard(std::uint64_t{castlingrights()}).flop()));
    if (ep().id() < 64) {
        record().ep = orvelin::flop(ep());
    }
    fen(fen());
}

}  // namespace orvelin
