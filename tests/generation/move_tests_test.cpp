#include <gtest/gtest.h>
#include <string>

#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "position/move_list.h"
#include "position/side.h"
#include "support/position_record.h"
#include "support/shared_tables.h"

namespace orvelin::test {

namespace {

/// The tests of one move, which the generator makes for all targets of a piece at once.
class MoveTests : public testing::Test {
 protected:
    bool is_legal(Move const& move) const {
        if (move.piece().king()) {
            return position_.white_to_move()
                       ? generator_.is_legal_kingmove<side::white>(position_, move)
                       : generator_.is_legal_kingmove<side::black>(position_, move);
        }
        return move.piece().pawn() && move.capture_id() != 0
                   ? generator_.is_legal_pawnmove(position_, move)
                   : generator_.is_legal(position_, move);
    }

    bool gives_check(Move move) {
        move.check(!move.check());
        if (position_.white_to_move()) {
            generator_.set_checkstatus<side::white>(position_, move);
        } else {
            generator_.set_checkstatus<side::black>(position_, move);
        }
        return move.check();
    }

    ChessPosition position_{shared_tables()};
    MoveGenerator generator_{shared_tables()};
};

}  // namespace

TEST_F(MoveTests, SayOfEachGeneratedMoveWhatItsWordSays) {
    int moves = 0;
    int checks = 0;
    for (PositionRecord const& record : read_position_records("positions.txt")) {
        position_.fen(record.fen());
        position_.look_for_check();
        position_.find_pinned_pieces();
        MoveList list;
        generator_.generate_moves(position_, list);
        for (Move const& move : list) {
            std::string const name = record.fen() + ' ' + move.algebraic(true);
            ASSERT_EQ(gives_check(move), move.check()) << name;
            ASSERT_TRUE(move.code() == castling || is_legal(move)) << name;
            ++moves;
            checks += move.check() ? 1 : 0;
        }
    }
    EXPECT_GT(moves, 10000);
    EXPECT_GT(checks, 300);
}

// A pinned rook may go along its line, up to the piece that pins it.
TEST_F(MoveTests, RefuseWhatLeavesTheLineOfAPin) {
    position_.fen("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    MoveList list;
    generator_.generate_moves(position_, list);
    for (int to = 0; to < 64; ++to) {
        Move const move(Square("e2"), Square(to), normal_move, white_rook, no_piece);
        if (move.to().file() != 'e') {
            EXPECT_FALSE(is_legal(move)) << move.algebraic(true);
        } else if (to > Square("e2").id()) {
            EXPECT_TRUE(is_legal(move)) << move.algebraic(true);
        }
    }
}

}  // namespace orvelin::test
