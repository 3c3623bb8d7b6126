#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "endgame/egt4_pieces.h"
#include "position/masks.h"
#include "support/lent_table.h"

namespace orvelin::test {

/// A table of draws alone, into which a test plants values with one fault.
class Egt4PiecesConsistency : public testing::Test {
 protected:
    Egt4PiecesConsistency() { lent_.open(); }

    /// Gives all positions before this one the byte. One more than the position's own byte is in
    /// order there, so that the first fault is not found in them.
    void set_previous(std::string const& fen, unsigned char byte) {
        std::vector<Move> moves;
        table().fen(fen);
        table().generate_previous_moves(moves);
        for (Move const& move : moves) {
            table().unmake_move(move);
            unsigned int const key = table().get_key();
            lent_.byte(key) = byte;
            if (table().white_king() & diagonals) {
                lent_.byte(Egt4Pieces::get_mirror_key(key)) = byte;
            }
            table().make_move(move);
        }
    }

    void set_with_previous(std::string const& fen, unsigned char byte) {
        set_previous(fen, static_cast<unsigned char>(byte + 1));
        lent_.byte(fen) = byte;
    }

    /// What is told of the first fault; "consistent" if there is none.
    std::string report() {
        testing::internal::CaptureStderr();
        bool const consistent = table().is_consistent();
        std::string const text = testing::internal::GetCapturedStderr();
        EXPECT_EQ(consistent, text.empty());
        return consistent ? "consistent" : text;
    }

    /// One position of a report.
    std::string line(std::string const& fen, int value) {
        std::string const key = std::to_string(key_of(table(), fen));
        return fen + "  eval()=" + std::to_string(value) + "   key=" + key;
    }

    std::string fault(std::string const& texts, std::string const& before, int value,
                      std::string const& after, int next) {
        return texts + "\norig fen: " + line(before, value) + "\nnext fen: " + line(after, next) +
               "  sign=1\n";
    }

    Egt4Pieces& table() { return lent_.table(); }

    LentTable lent_{white_queen, black_rook};

    // In both pairs a piece goes up the board, so that the position before has the lower key and
    // is tested first.
    const std::string white_before_ = "7r/8/8/8/8/7k/8/2KQ4 w - - 0 1";
    const std::string white_after_ = "7r/8/8/8/3Q4/7k/8/2K5 b - - 0 1";
    const std::string black_before_ = "Q7/8/8/8/8/7k/3r4/2K5 b - - 0 1";
    const std::string black_after_ = "Q7/8/8/8/3r4/7k/8/2K5 w - - 0 1";
};

TEST_F(Egt4PiecesConsistency, TellsOfADrawThatWhiteWins) {
    set_with_previous(white_after_, 4);
    lent_.byte(white_before_) = Egt4Pieces::drawn;
    EXPECT_EQ(report(),
              fault("Test for draw:\nnew eval > old eval", white_before_, 0, white_after_, 29996));
}

TEST_F(Egt4PiecesConsistency, TellsOfADrawThatBlackWins) {
    set_with_previous(black_after_, 132);
    lent_.byte(black_before_) = Egt4Pieces::drawn;
    EXPECT_EQ(report(),
              fault("Test for draw:\nnew eval > old eval", black_before_, 0, black_after_, -29996));
}

TEST_F(Egt4PiecesConsistency, TellsOfAWinOfWhiteShorterByTwoPlies) {
    set_with_previous(white_after_, 4);
    lent_.byte(white_before_) = 6;
    EXPECT_EQ(report(), fault("test1 for white winning\nnew eval > old eval + 1", white_before_,
                              29994, white_after_, 29996));
}

TEST_F(Egt4PiecesConsistency, TellsOfAWinOfBlackShorterByTwoPlies) {
    set_with_previous(black_after_, 132);
    lent_.byte(black_before_) = 134;
    EXPECT_EQ(report(), fault("test1 for black winning\nnew eval < old eval - 1", black_before_,
                              -29994, black_after_, -29996));
}

TEST_F(Egt4PiecesConsistency, TellsOfAWinOfWhiteWithoutAWay) {
    lent_.byte(white_before_) = 11;
    EXPECT_EQ(report(), fault("test1 for white winning\nno new eval is one step from the old eval",
                              white_before_, 29989, "7r/8/8/8/8/7k/3K4/3Q4 b - - 0 1", 0));
}

TEST_F(Egt4PiecesConsistency, TellsOfAWinOfBlackWithoutAWay) {
    lent_.byte(black_before_) = 139;
    EXPECT_EQ(report(), fault("test1 for black winning\nno new eval is one step from the old eval",
                              black_before_, -29989, "Q7/8/8/8/7k/8/3r4/2K5 w - - 0 1", 0));
}

TEST_F(Egt4PiecesConsistency, TellsOfALossOfBlackThatCanBeLeft) {
    set_with_previous(white_after_, 10);
    EXPECT_EQ(report(), fault("test2 for white winning\nnew eval < old eval", white_after_, 29990,
                              "8/8/8/8/3Q3r/7k/8/2K5 w - - 0 1", 0));
}

TEST_F(Egt4PiecesConsistency, TellsOfALossOfWhiteThatCanBeLeft) {
    set_with_previous(black_after_, 138);
    EXPECT_EQ(report(), fault("test2 for black winning\nnew eval > old eval", black_after_, -29990,
                              "8/8/8/8/3r4/7k/8/Q1K5 b - - 0 1", 0));
}

TEST_F(Egt4PiecesConsistency, TellsOfALossWithoutAnyMove) {
    std::string const stalemate = "k7/2Q5/8/8/8/8/8/2K5 b - - 0 1";
    set_with_previous(stalemate, 10);
    EXPECT_EQ(report(), fault("test2 for white winning\nno new eval is one step from the old eval",
                              stalemate, 29990, stalemate, 29990));
}

TEST_F(Egt4PiecesConsistency, ValueThatIsNotKnownIsAFault) {
    lent_.byte(white_before_) = Egt4Pieces::unknown;
    EXPECT_EQ(report(), fault("test1 for white winning\nno new eval is one step from the old eval",
                              white_before_, 255, "7r/8/8/8/8/7k/3K4/3Q4 b - - 0 1", 0));
}

TEST_F(Egt4PiecesConsistency, TableWithoutValuesIsNotConsistent) {
    table().clear();
    EXPECT_NE(report().find("  eval()=255   key="), std::string::npos);
}

TEST_F(Egt4PiecesConsistency, MateIsNotHeldToItsMoves) {
    lent_.byte(white_after_) = 0;
    lent_.byte(black_after_) = 128;
    set_previous(white_after_, 1);
    set_previous(black_after_, 129);
    std::string const behind = "3Q3r/8/8/8/8/7k/8/3K4 w - - 0 1";
    ASSERT_GT(key_of(table(), behind), key_of(table(), white_after_));
    lent_.byte(behind) = 5;
    std::string const text = report();
    EXPECT_NE(text.find("orig fen: " + line(behind, 29995)), std::string::npos) << text;
}

}  // namespace orvelin::test
