#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "support/chess960_positions.h"
#include "support/perft.h"
#include "support/perft_witness.h"
#include "support/position_record.h"
#include "support/shared_tables.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

constexpr int perft_depth = short_tests ? 2 : 3;
constexpr std::uint64_t corner_rights = 0x8181;

/// Whether the rook that each castling right names stands there, and the king on its rank.
bool rights_are_sound(ChessPosition const& position) {
    const std::uint64_t rights = position.castlingrights();
    const std::uint64_t white = rights & 0xFF;
    const std::uint64_t black = (rights >> 8) << 56;
    bool const kings = (white == 0 || position.white_kingsfield().rank_number() == 0) &&
                       (black == 0 || position.black_kingsfield().rank_number() == 7);
    return kings && (white & ~to_ull(position.white_rook())) == 0 &&
           (black & ~to_ull(position.black_rook())) == 0;
}

/// Whether a pawn that has just made two steps stands beyond the en passant square.
bool ep_is_sound(ChessPosition const& position) {
    const Square ep = position.ep();
    if (ep == Square()) {
        return true;
    }
    bool const white = position.white_to_move();
    int const step = white ? 8 : -8;
    int const pawn = white ? 9 : 1;
    return ep.rank_number() == (white ? 5 : 2) && position[ep.id()].id() == 0 &&
           position[ep.id() - step].id() == pawn && position[ep.id() + step].id() == 0;
}

/// Whether a game could hold the position, as far as move generation can tell.
bool is_sound(ChessPosition const& position) {
    if (position.white_king().popcount() != 1 || position.black_king().popcount() != 1) {
        return false;
    }
    bool const mover_could_take_king = position.white_to_move()
                                           ? position.white_attacks(position.black_king())
                                           : position.black_attacks(position.white_king());
    return !mover_could_take_king && rights_are_sound(position) && ep_is_sound(position);
}

/// Castling that only Chess960 knows: a rook off its corner or a king off its file.
bool is_chess960(ChessPosition const& position) {
    unsigned int const rights = position.castlingrights();
    bool const white_off = (rights & 0xFF) != 0 && position.white_kingsfield().file_number() != 4;
    bool const black_off = (rights >> 8) != 0 && position.black_kingsfield().file_number() != 4;
    return (rights & ~corner_rights) != 0 || white_off || black_off;
}

class StockfishPerft : public testing::Test {
 protected:
    void compare(std::string const& fen, bool always_chess960 = false) {
        position_.fen(fen);
        if (!is_sound(position_)) {
            return;
        }
        bool const chess960 = always_chess960 || is_chess960(position_);
        EXPECT_EQ(perft_.divide(position_, perft_depth, chess960),
                  witness_.divide(fen, perft_depth, chess960))
            << fen;
        ++compared_;
    }

    Tables& tables_ = shared_tables();
    ChessPosition position_{tables_};
    Perft perft_{tables_};
    PerftWitness witness_;
    int compared_ = 0;
};

TEST_F(StockfishPerft, AgreesMoveByMoveOnGames) {
    for (PositionRecord const& record : read_position_records("positions.txt")) {
        compare(record.fen());
    }
    EXPECT_GT(compared_, 300);
}

TEST_F(StockfishPerft, AgreesMoveByMoveOnEndings) {
    for (PositionRecord const& record : read_position_records("endings.txt")) {
        compare(record.fen());
    }
    EXPECT_GT(compared_, 300);
}

TEST_F(StockfishPerft, AgreesMoveByMoveInChess960) {
    constexpr int positions = short_tests ? 100 : 300;
    for (std::string const& fen : random_chess960_fens(tables_, positions)) {
        compare(fen, true);
    }
    EXPECT_EQ(compared_, positions);
}

}  // namespace

}  // namespace orvelin::test
