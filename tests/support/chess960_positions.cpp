#include "support/chess960_positions.h"

#include <array>
#include <cctype>
#include <cstddef>
#include <random>

#include "generation/move_generator.h"
#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/move_list.h"

namespace orvelin::test {

namespace {

using random_t = std::mt19937_64;

std::size_t below(std::size_t limit, random_t& random) {
    return random() % limit;
}

void put_on_free_file(char piece, std::size_t index, std::string& rank) {
    for (char& file : rank) {
        if (file == ' ' && index-- == 0) {
            file = piece;
            return;
        }
    }
}

/// The first rank of an array: bishops on both colours, the king between the rooks.
std::string random_rank(random_t& random) {
    std::string rank(8, ' ');
    rank[2 * below(4, random)] = 'B';
    rank[2 * below(4, random) + 1] = 'B';
    put_on_free_file('Q', below(6, random), rank);
    put_on_free_file('N', below(5, random), rank);
    put_on_free_file('N', below(4, random), rank);
    for (char const piece : {'R', 'K', 'R'}) {
        put_on_free_file(piece, 0, rank);
    }
    return rank;
}

std::string array_fen(random_t& random) {
    const std::string white = random_rank(random);
    std::string black;
    for (char const piece : white) {
        black += static_cast<char>(std::tolower(static_cast<unsigned char>(piece)));
    }
    return black + "/pppppppp/8/8/8/8/PPPPPPPP/" + white + " w KQkq - 0 1";
}

void play_random_moves(ChessPosition& position, MoveGenerator& generator, random_t& random) {
    for (std::size_t left = below(40, random); left > 0; --left) {
        MoveList list;
        generator.generate_moves(position, list);
        if (list.size() == 0) {
            return;
        }
        const Move move = list[static_cast<int>(below(list.size(), random))];
        position.make_move(move);
    }
}

}  // namespace

std::vector<std::string> random_chess960_fens(Tables const& tables, int count) {
    random_t random(960);
    MoveGenerator generator(tables);
    ChessPosition position(tables);
    std::vector<std::string> fens;
    for (int i = 0; i < count; ++i) {
        position.fen(array_fen(random));
        play_random_moves(position, generator, random);
        fens.push_back(position.fen());
    }
    return fens;
}

}  // namespace orvelin::test
