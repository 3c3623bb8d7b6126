#include "perft/checked_leaf_counter.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "perft/leaf_counter.h"
#include "position/chess_position.h"
#include "position/move.h"
#include "position/piece.h"
#include "position/square.h"
#include "support/shared_tables.h"

namespace orvelin::test {

namespace {

constexpr char const* pinned_knight = "4r2k/8/8/8/8/8/4N3/4K3 w - - 3 9";

Move move_of(char const* from, char const* to, piece_t piece, piece_t capture = no_piece) {
    return Move(Square(from), Square(to), normal_move, piece, capture);
}

class CheckedLeafCounterTest : public testing::Test {
 protected:
    /// The message for a move in a position; empty when nothing is wrong.
    std::string fault(std::string const& fen, Move const& move, bool chess960 = false) {
        tools::CheckedLeafCounter counter(shared_tables(), chess960);
        position_.fen(fen);
        try {
            counter.count_behind(position_, move, 0);
        } catch (tools::TreeFault const& error) {
            return error.what();
        }
        return "";
    }

    /// What a snapshot of the start position finds after a change to it.
    template <typename Change>
    std::string difference_after(Change change) {
        position_.newgame();
        tools::PositionSnapshot const snapshot(position_);
        change();
        return snapshot.difference(position_);
    }

    /// Plays knight moves from the start position.
    void play(std::vector<std::string> const& moves) {
        position_.newgame();
        for (std::string const& text : moves) {
            Square const from(text.substr(0, 2));
            position_.make_move(Move(from, Square(text.substr(2)), normal_move,
                                     position_.get_piece_from(from), Piece()));
        }
    }

    ChessPosition position_{shared_tables()};
};

}  // namespace

TEST_F(CheckedLeafCounterTest, ARightMoveIsNoFault) {
    EXPECT_EQ(fault(pinned_knight, move_of("e1", "d1", white_king)), "");
    EXPECT_EQ(position_.fen(), pinned_knight);
}

TEST_F(CheckedLeafCounterTest, TellsACheckBitThatIsMissing) {
    EXPECT_EQ(fault("7k/8/8/8/8/8/8/R3K3 w - - 0 1", move_of("a1", "a8", white_rook)),
              "fault in 7k/8/8/8/8/8/8/R3K3 w - - 0 1 at a1a8: it gives check without the check "
              "bit");
}

TEST_F(CheckedLeafCounterTest, TellsACheckBitThatIsNotTrue) {
    Move move = move_of("a1", "a7", white_rook);
    move.check(true);
    EXPECT_EQ(fault("7k/8/8/8/8/8/8/R3K3 w - - 0 1", move),
              "fault in 7k/8/8/8/8/8/8/R3K3 w - - 0 1 at a1a7: it has the check bit and gives no "
              "check");
}

TEST_F(CheckedLeafCounterTest, TellsAMoveThatLeavesTheKingInCheck) {
    EXPECT_EQ(fault(pinned_knight, move_of("e2", "c3", white_knight)),
              "fault in 4r2k/8/8/8/8/8/4N3/4K3 w - - 3 9 at e2c3: it leaves its own king in "
              "check");
}

TEST_F(CheckedLeafCounterTest, TellsWhatTakingBackDoesNotRestore) {
    // The word captures a pawn where none stands, so that taking it back sets one.
    EXPECT_EQ(fault(pinned_knight, move_of("e1", "d1", white_king, black_pawn)),
              "fault in 4r2k/8/8/8/8/8/4N3/4K3 w - - 3 9 at e1d1: taking it back leaves another "
              "FEN 4r2k/8/8/8/8/8/4N3/3pK3 w - - 3 9");
}

TEST_F(CheckedLeafCounterTest, WritesCastlingByTheGivenRule) {
    std::string const fen = "5k2/8/8/8/8/8/8/4K2R w K - 0 1";
    Move const castle(Square("e1"), Square("h1"), castling, white_king, no_piece);
    EXPECT_NE(fault(fen, castle, false).find(" at e1g1: "), std::string::npos);
    EXPECT_NE(fault(fen, castle, true).find(" at e1h1: "), std::string::npos);
}

TEST_F(CheckedLeafCounterTest, CountsAsAPlainCounterDoes) {
    tools::CheckedLeafCounter checked(shared_tables(), false);
    tools::LeafCounter plain(shared_tables());
    position_.newgame();
    EXPECT_EQ(checked.count(position_, 0), 1U);
    EXPECT_EQ(checked.count(position_, 3), 8902U);
    EXPECT_EQ(plain.count(position_, 3), 8902U);
}

TEST_F(CheckedLeafCounterTest, MakesTheLastMovesToo) {
    tools::CheckedLeafCounter checked(shared_tables(), false);
    tools::LeafCounter plain(shared_tables());
    position_.newgame();
    checked.count(position_, 1);
    EXPECT_EQ(position_.get_make_move_counter(), 20U);
    plain.count(position_, 1);
    EXPECT_EQ(position_.get_make_move_counter(), 20U);
}

TEST_F(CheckedLeafCounterTest, ASnapshotTellsNoChange) {
    EXPECT_EQ(difference_after([] {}), "");
    EXPECT_EQ(difference_after([&] {
                  position_.make_move(move_of("a2", "a3", white_pawn));
                  position_.unmake_move();
              }),
              "");
}

TEST_F(CheckedLeafCounterTest, ASnapshotTellsAnotherFen) {
    EXPECT_EQ(difference_after([&] { position_.set_castlingrights(0); }),
              "FEN rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1");
}

TEST_F(CheckedLeafCounterTest, ASnapshotTellsAnotherHash) {
    EXPECT_EQ(difference_after([&] {
                  position_.fen("rnbqkbnr/pppppppp/8/8/8/8/1PPPPPPP/RNBQKBNR w KQkq - 0 1");
                  position_.set_piece_on(Square("a2"), Piece(white_pawn));
              }),
              "hash");
}

TEST_F(CheckedLeafCounterTest, ASnapshotTellsAnotherMaterial) {
    EXPECT_EQ(difference_after([&] {
                  position_.remove_piece_from(Square("a2"), Piece(white_pawn));
                  position_.compute_materialindex();
                  position_.set_piece_on(Square("a2"), Piece(white_pawn));
              }),
              "material");
}

TEST_F(CheckedLeafCounterTest, ASnapshotTellsAnotherNumberOfRecords) {
    play({"g1f3", "g8f6", "f3g1", "f6g8"});
    tools::PositionSnapshot const snapshot(position_);
    position_.fen(std::string(position_.fen()));
    EXPECT_EQ(snapshot.difference(position_), "number of records");
}

TEST_F(CheckedLeafCounterTest, ASnapshotTellsAnotherRecord) {
    play({"g1f3", "g8f6", "f3g1", "f6g8"});
    tools::PositionSnapshot const snapshot(position_);
    play({"b1c3", "b8c6", "c3b1", "c6b8"});
    EXPECT_EQ(snapshot.difference(position_), "record");
}

TEST_F(CheckedLeafCounterTest, ASnapshotTellsAnotherRepetitionRecord) {
    play({"g1f3", "g8f6", "b1c3", "b8c6"});
    tools::PositionSnapshot const snapshot(position_);
    play({"b1c3", "g8f6", "g1f3", "b8c6"});
    EXPECT_EQ(snapshot.difference(position_), "repetition record");
}

}  // namespace orvelin::test
