#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "endgame/egt4_pieces.h"
#include "support/lent_table.h"
#include "support/logic_error_text.h"

namespace orvelin::test {

TEST(Egt4PiecesPass, ClassifiesOneKey) {
    LentTable lent(white_queen, black_rook, Egt4Pieces::unknown);
    auto const classify = [&](std::string const& fen) -> int {
        unsigned int const key = key_of(lent.table(), fen);
        lent.table().set_initial_eval(key);
        return lent.byte(key);
    };
    EXPECT_EQ(classify("k7/1Q6/1K6/8/8/8/8/8 b"), 0) << "mate";
    EXPECT_EQ(classify("8/8/8/8/8/1k6/8/K6r w"), 128) << "mate of White";
    EXPECT_EQ(classify("k7/2Q5/8/8/8/8/8/7K b"), 253) << "stalemate";
    EXPECT_EQ(classify("8/8/8/8/8/2k5/1r6/K7 w"), 253) << "stalemate of White";
    EXPECT_EQ(classify("k7/8/8/8/8/8/Q7/7K w"), 254) << "Black is in check and not to move";
    EXPECT_EQ(classify("k7/8/8/8/8/8/Q7/7K b"), 255) << "a check that can be left";
    EXPECT_EQ(classify("kK6/8/8/8/8/8/8/Q6r w"), 254) << "adjacent kings";
    EXPECT_EQ(classify("k7/1Q6/1r6/8/8/8/8/K7 b"), 255) << "the rook takes";
}

TEST(Egt4PiecesPass, ClassifiesKeysWithPiecesOnOneSquareAsIllegal) {
    LentTable lent(white_queen, black_rook, Egt4Pieces::unknown);
    constexpr unsigned int black_king_h8 = 63U << 13;
    for (unsigned int const key :
         {black_king_h8 | 40U << 7 | 40U << 1, black_king_h8 | 0U << 7 | 40U << 1,
          black_king_h8 | 40U << 7 | 0U << 1, 9U << 19 | 27U << 13}) {
        lent.table().set_initial_eval(key);
        EXPECT_EQ(lent.byte(key), Egt4Pieces::illegal) << key;
    }
}

TEST(Egt4PiecesPass, ClassifiesNoKeyBeyondTheTable) {
    LentTable lent(white_queen, black_rook);
    for (unsigned int const key : {lent.table().size(), 10U << 19 | 77U, 0xFFFFFFFFU}) {
        lent.table().set_initial_eval(key);
    }
    EXPECT_TRUE(lent.guards_whole());
    EXPECT_TRUE(std::all_of(lent.bytes(), lent.bytes() + lent.table().size(),
                            [](unsigned char byte) { return byte == Egt4Pieces::drawn; }));
}

TEST(Egt4PiecesPass, ClassificationOfImpossiblePiecesEndsAtTheirLegality) {
    LentTable lent(white_pawn, black_rook);
    EXPECT_EQ(logic_error_text([&] { lent.table().create(); }),
              "Egt4Pieces::is_legal() unkown piece 1");
    LentTable other(white_rook, black_pawn);
    EXPECT_EQ(logic_error_text([&] { other.table().create(); }),
              "Egt4Pieces::is_legal() unkown piece 2");
}

TEST(Egt4PiecesPass, UnnamedEndingGrowsFromItsMates) {
    LentTable lent(white_queen, black_knight, Egt4Pieces::unknown);
    Egt4Pieces& table = lent.table();
    lent.open();
    ASSERT_EQ(table.name(), "unknown");
    table.set_initial_eval(key_of(table, "k5Q1/8/1K6/8/8/8/8/n7 b"));
    table.create_next();
    EXPECT_EQ(table.eval("k7/6Q1/1K6/8/8/8/8/n7 w"), 29999);
    EXPECT_EQ(table.eval("k7/6Q1/2K5/8/8/8/8/n7 w"), 255) << "another mate was not given";
    EXPECT_EQ(table.eval("k5n1/6Q1/1K6/8/8/8/8/8 w"), 255);
    EXPECT_EQ(table.progress(), 1);
}

TEST(Egt4PiecesPass, CountsAcrossTheCapture) {
    LentTable lent(white_queen, black_rook, Egt4Pieces::unknown);
    Egt4Pieces& table = lent.table();
    lent.open();
    table.set_initial_eval(key_of(table, "k5Q1/8/1K6/8/8/8/8/8 b"));
    table.create_next();
    EXPECT_EQ(table.eval("k5r1/6Q1/1K6/8/8/8/8/8 w"), 29999) << "the queen takes";
    EXPECT_EQ(table.eval("k7/6Q1/1K6/8/8/8/8/8 w"), 29999);
}

TEST(Egt4PiecesPass, LossNeedsAllMovesToLose) {
    LentTable lent(white_queen, black_rook, Egt4Pieces::unknown);
    Egt4Pieces& table = lent.table();
    lent.open();
    table.create_next();
    ASSERT_EQ(table.progress(), 1);
    // Black in the corner has the one move Kb8, behind which White mates at once.
    lent.byte("1k6/7Q/2K5/8/8/8/8/8 w") = 1;
    lent.byte("8/k6Q/2K5/8/8/8/8/8 w") = Egt4Pieces::illegal;
    lent.byte("8/1k5Q/2K5/8/8/8/8/8 w") = Egt4Pieces::illegal;
    table.create_next();
    EXPECT_EQ(table.eval("k7/7Q/2K5/8/8/8/8/8 b"), 29998);
    EXPECT_EQ(table.eval("2k5/7Q/2K5/8/8/8/8/8 b"), 255) << "another move is not known to lose";
    EXPECT_EQ(table.eval("k7/7Q/2K5/8/8/8/8/r7 b"), 255) << "the rook can move";
}

TEST(Egt4PiecesPass, DrawnMoveEscapesALoss) {
    LentTable lent(white_queen, black_rook, Egt4Pieces::illegal);
    Egt4Pieces& table = lent.table();
    lent.open();
    table.create_next();
    std::string const before = "2k5/7Q/2K5/8/8/8/8/8 b";
    lent.byte(before) = Egt4Pieces::unknown;
    lent.byte("1k6/7Q/2K5/8/8/8/8/8 w") = 1;
    lent.byte("3k4/7Q/2K5/8/8/8/8/8 w") = Egt4Pieces::drawn;
    table.create_next();
    EXPECT_EQ(table.eval(before), 255);
    lent.byte("3k4/7Q/2K5/8/8/8/8/8 w") = 200;
    lent.byte("1k6/7Q/2K5/8/8/8/8/8 w") = 2;
    table.create_next();
    EXPECT_EQ(table.eval(before), 255) << "a won move";
    lent.byte("3k4/7Q/2K5/8/8/8/8/8 w") = 1;
    lent.byte("1k6/7Q/2K5/8/8/8/8/8 w") = 3;
    table.create_next();
    EXPECT_EQ(table.eval(before), 29996) << "the longest resistance";
}

TEST(Egt4PiecesPass, DrawnMoveEscapesALossOfWhite) {
    LentTable lent(white_queen, black_rook, Egt4Pieces::illegal);
    Egt4Pieces& table = lent.table();
    lent.open();
    table.create_next();
    std::string const before = "8/8/8/8/8/2k5/7r/2K5 w";
    lent.byte(before) = Egt4Pieces::unknown;
    lent.byte("8/8/8/8/8/2k5/7r/1K6 b") = 129;
    lent.byte("8/8/8/8/8/2k5/7r/3K4 b") = Egt4Pieces::drawn;
    table.create_next();
    EXPECT_EQ(table.eval(before), 255);
    lent.byte("8/8/8/8/8/2k5/7r/3K4 b") = 129;
    lent.byte("8/8/8/8/8/2k5/7r/1K6 b") = 130;
    table.create_next();
    EXPECT_EQ(table.eval(before), -29997);
}

TEST(Egt4PiecesPass, OnlyUnknownBytesAreWritten) {
    LentTable lent(white_queen, black_rook, Egt4Pieces::unknown);
    Egt4Pieces& table = lent.table();
    lent.open();
    table.set_initial_eval(key_of(table, "k5Q1/8/1K6/8/8/8/8/8 b"));
    lent.byte("k7/6Q1/1K6/8/8/8/8/8 w") = Egt4Pieces::drawn;
    lent.byte("k7/8/1K6/8/8/8/8/6Q1 w") = 7;
    table.create_next();
    EXPECT_EQ(table.eval("k7/6Q1/1K6/8/8/8/8/8 w"), 0);
    EXPECT_EQ(table.eval("k7/8/1K6/8/8/8/8/6Q1 w"), 29993);
    EXPECT_EQ(table.eval("k7/8/1K6/8/8/8/6Q1/8 w"), 29999);
}

TEST(Egt4PiecesPass, WinsOfBlackAreCountedFrom128) {
    LentTable lent(white_queen, black_rook, Egt4Pieces::unknown);
    Egt4Pieces& table = lent.table();
    lent.open();
    table.set_initial_eval(key_of(table, "8/8/8/8/8/1k6/8/K6r w"));
    table.create_next();
    EXPECT_EQ(lent.byte("8/8/7r/8/8/1k6/8/K7 b"), 129);
    EXPECT_EQ(table.eval("8/8/7r/8/8/1k6/8/K7 b"), -29999);
    EXPECT_EQ(table.eval("8/8/8/8/8/1k6/8/K6Q b"), 255) << "no rook is there to take with";
    EXPECT_EQ(table.eval("7r/8/8/8/8/1k6/8/K6Q b"), -29999) << "the rook takes";
}

TEST(Egt4PiecesPass, WritesBothKeysOfAKingOnTheDiagonal) {
    LentTable lent(white_queen, black_rook, Egt4Pieces::unknown);
    Egt4Pieces& table = lent.table();
    lent.open();
    table.set_initial_eval(key_of(table, "8/8/8/8/8/5K1k/8/7Q b"));
    table.set_initial_eval(key_of(table, "k5Q1/8/1K6/8/8/8/8/8 b"));
    table.create_next();
    // The other diagonal counts as well: it falls on this one when the king is brought home.
    unsigned int const on_diagonal = key_of(table, "8/8/8/8/8/5K1k/8/Q7 w");
    EXPECT_EQ(lent.byte(on_diagonal), 1);
    EXPECT_EQ(lent.byte(Egt4Pieces::get_mirror_key(on_diagonal)), 1);
    unsigned int const beside_it = key_of(table, "k7/6Q1/1K6/8/8/8/8/8 w");
    EXPECT_EQ(lent.byte(beside_it), 1);
    EXPECT_EQ(lent.byte(Egt4Pieces::get_mirror_key(beside_it)), 255);
}

TEST(Egt4PiecesPass, WritesBothKeysOfALossToo) {
    LentTable lent(white_queen, black_rook, Egt4Pieces::unknown);
    Egt4Pieces& table = lent.table();
    lent.open();
    table.create_next();
    lent.byte("1k6/7Q/2K5/8/8/8/8/8 w") = 1;
    lent.byte("8/k6Q/2K5/8/8/8/8/8 w") = Egt4Pieces::illegal;
    lent.byte("8/1k5Q/2K5/8/8/8/8/8 w") = Egt4Pieces::illegal;
    table.create_next();
    unsigned int const key = key_of(table, "k7/7Q/2K5/8/8/8/8/8 b");
    EXPECT_EQ(lent.byte(key), 2);
    EXPECT_EQ(lent.byte(Egt4Pieces::get_mirror_key(key)), 2);
}

TEST(Egt4PiecesPass, NothingIsDoneWithoutATable) {
    Egt4Pieces table(shared_attacks(), white_queen, black_rook);
    table.create_next();
    table.set_initial_eval();
    table.set_initial_eval(0);
    EXPECT_EQ(table.progress(), -1);
    EXPECT_EQ(table[0], Egt4Pieces::unknown);
}

TEST(Egt4PiecesPass, BorrowsNothingFromNowhere) {
    Egt4Pieces table(shared_attacks(), white_queen, black_rook);
    table.set_memory(nullptr);
    EXPECT_EQ(logic_error_text([&] { table.create(); }), "Egt4Pieces::allocate  no memory");
    EXPECT_EQ(table.progress(), -1);
    EXPECT_EQ(table[0], Egt4Pieces::unknown);
}

TEST(Egt4PiecesPass, ClearForgetsTheProgressButKeepsBorrowedMemory) {
    LentTable lent(white_queen, black_rook, 4);
    lent.open();
    ASSERT_EQ(lent.table().eval(2U), 29996);
    lent.table().clear();
    EXPECT_EQ(lent.table().progress(), -1);
    EXPECT_EQ(lent.table().eval(2U), 255);
    EXPECT_EQ(lent.table()[2], 4);
    lent.open();
    EXPECT_EQ(lent.table().eval(2U), 29996);
    lent.table().set_memory(lent.bytes());
    EXPECT_EQ(lent.table().progress(), -1);
}

}  // namespace orvelin::test
