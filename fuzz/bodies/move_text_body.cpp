#include <array>
#include <cstddef>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "bodies/fuzz_bodies.h"
#include "bodies/position_queries.h"
#include "generation/tables.h"
#include "position/chess_position.h"

namespace orvelin::fuzz {

namespace {

constexpr std::array<char const*, 8> positions{
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "1r1k1rn1/P1P3p1/8/3pPp2/8/8/1p1p3P/R1RK1N2 w GAbf f6 0 1",
    "bqnb1rkr/pp3ppp/3ppn2/2p5/5P2/P2P4/NPP1P1PP/BQ1BNRKR b HFhf - 2 9",
    "8/8/8/4k3/8/8/8/2B1K1N1 w - - 98 70",
    "8/pppp4/8/8/8/8/PPPP4/8 b - - 0 1",
    "4k3/8/8/8/8/8/8/4K3 w KQkq - 0 1",
    "k7/P7/8/8/8/8/p7/K7 b - - 0 1",
};

constexpr int most_moves = 40;

void play(std::string_view input) {
    ChessPosition position(small_tables());
    position.fen(positions[static_cast<unsigned char>(input.front()) % positions.size()]);
    std::istringstream words{std::string(input.substr(1))};
    std::string word;
    for (int made = 0; made < most_moves && words >> word; ++made) {
        position.make_move(position.convert_to_move(word));
        query(position);
    }
    search_a_little(position);
}

}  // namespace

void fuzz_move_text(std::string_view input) {
    if (input.empty()) {
        return;
    }
    try {
        play(input);
    } catch (std::logic_error const&) {
        // By design: a text that is no move, or pieces that are none, made by a promotion letter on
        // a piece that is no pawn.
        small_tables().transposition_table.clear();
    }
}

}  // namespace orvelin::fuzz
