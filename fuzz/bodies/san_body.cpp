#include <array>
#include <cstddef>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "analyse/move_finder.h"
#include "analyse/san.h"
#include "bodies/fuzz_bodies.h"
#include "bodies/position_queries.h"
#include "bodies/require.h"
#include "play/position_reader.h"

namespace orvelin::fuzz {

namespace {

constexpr std::array<char const*, 6> san_positions{
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "1r1k1rn1/P1P3p1/8/3pPp2/8/8/1p1p3P/R1RK1N2 w GAbf f6 0 1",
    "bqnb1rkr/pp3ppp/3ppn2/2p5/5P2/P2P4/NPP1P1PP/BQ1BNRKR b HFhf - 2 9",
    "4k3/8/8/8/8/8/8/QQQQK1NN w - - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
};

constexpr int most_words = 60;

}  // namespace

void fuzz_san(std::string_view input) {
    if (input.empty()) {
        return;
    }
    ChessPosition position(small_tables());
    position.fen(san_positions[static_cast<unsigned char>(input.front()) % san_positions.size()]);
    analyse::MoveFinder finder(small_tables());
    std::istringstream words{std::string(input.substr(1))};
    std::string word;
    for (int count = 0; count < most_words && words >> word; ++count) {
        std::vector<Move> const legal = play::legal_moves(position, small_tables());
        analyse::FoundMove const found = analyse::find_san(legal, word);
        analyse::FoundMove const quick = finder.find(position, word);
        require(found.result == quick.result && found.move.word() == quick.move.word(),
                "both ways find the same");
        if (found.result != analyse::san_result::found) {
            require(!analyse::why_not_found(found.result, position.fen()).empty(), "a reason");
            continue;
        }
        std::string const text = analyse::san(position, small_tables(), found.move);
        require(analyse::find_san(legal, text).move == found.move, "a move is read as written");
        position.make_move(found.move);
    }
}

}  // namespace orvelin::fuzz
