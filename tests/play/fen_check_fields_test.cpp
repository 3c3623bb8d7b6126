// What is asked of the fields behind the pieces.

#include <gtest/gtest.h>
#include <string>

#include "play/fen_expectations.h"
#include "position/chess_position.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::shared_tables;

TEST(FenCheck, TheSideToMoveIsNeeded) {
    expect_refused("4k3/8/8/8/8/8/8/4K3", "field 2 (side to move): is missing");
}

TEST(FenCheck, TheSideToMoveIsWOrB) {
    expect_refused("4k3/8/8/8/8/8/8/4K3 W - - 0 1", "field 2 (side to move): \"W\" is neither");
    expect_refused("4k3/8/8/8/8/8/8/4K3 white - - 0 1", "\"white\" is neither w nor b");
}

TEST(FenCheck, GarbageInTheCastlingFieldIsRefusedWithItsPlace) {
    expect_refused("r3k2r/8/8/8/8/8/8/R3K2R w KQxq - 0 1",
                   "field 3 (castling): \"x\" at its place 3 is no castling right");
    expect_refused("r3k2r/8/8/8/8/8/8/R3K2R w K- - 0 1", "\"-\" at its place 2");
    expect_refused("r3k2r/8/8/8/8/8/8/R3K2R w 0 1", "\"0\" at its place 1");
}

TEST(FenCheck, ARightWithoutItsRookIsLeftOut) {
    expect_repaired("r3k2r/8/8/8/8/8/8/R3K3 w KQkq - 0 1", "r3k2r/8/8/8/8/8/8/R3K3 w Qkq - 0 1",
                    "field 3 (castling): \"K\" is left out, no rook");
    expect_repaired("4k2r/8/8/8/8/8/8/4K3 b q - 0 1", "4k2r/8/8/8/8/8/8/4K3 b - - 0 1",
                    "\"q\" is left out, no rook");
    expect_repaired("4k3/8/8/8/8/8/8/1R2K3 w A - 0 1", "4k3/8/8/8/8/8/8/1R2K3 w - - 0 1",
                    "\"A\" is left out, no rook");
    expect_repaired("4k3/8/8/8/8/8/8/r3K3 w Q - 0 1", "4k3/8/8/8/8/8/8/r3K3 w - - 0 1",
                    "\"Q\" is left out, no rook");
}

TEST(FenCheck, ARightWithoutTheKingOnItsPlaceIsLeftOut) {
    expect_repaired("4k3/8/8/8/8/8/4K3/R6R w K - 0 1", "4k3/8/8/8/8/8/4K3/R6R w - - 0 1",
                    "\"K\" is left out, the king");
    expect_repaired("k6r/8/8/8/8/8/8/4K3 b k - 0 1", "k6r/8/8/8/8/8/8/4K3 b - - 0 1",
                    "\"k\" is left out, the king");
    expect_repaired("4k3/8/8/8/8/8/8/R6K w Q - 0 1", "4k3/8/8/8/8/8/8/R6K w - - 0 1",
                    "\"Q\" is left out, the king");
    expect_repaired("k6r/8/8/8/8/8/8/4K3 b h - 0 1", "k6r/8/8/8/8/8/8/4K3 b - - 0 1",
                    "\"h\" is left out, the king");
}

TEST(FenCheck, ASecondRightOnAWingIsLeftOut) {
    expect_repaired("4k3/8/8/8/8/8/8/4K1RR w HG - 0 1", "4k3/8/8/8/8/8/8/4K1RR w H - 0 1",
                    "\"G\" is left out, there is a right on this side");
    expect_untouched("4k3/8/8/8/8/8/8/R3K1RR w AG - 0 1");
}

TEST(FenCheck, ARightGivenTwiceCountsOnce) {
    checked_t const checked = check("r3k2r/8/8/8/8/8/8/R3K2R w KKQK - 0 1");
    EXPECT_EQ(checked.repaired, "r3k2r/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    EXPECT_TRUE(checked.remarks.empty());
}

TEST(FenCheck, KAndQMeanTheOutermostRookOfAWing) {
    std::string const fen = "4k3/8/8/8/8/8/8/RR2K1RR w KQ - 0 1";
    expect_untouched(fen);
    ChessPosition position(shared_tables());
    position.fen(fen);
    EXPECT_EQ(position.castlingrights(), 0x0081);
    // Rooks on one side alone give the right of that side alone.
    expect_repaired("4k3/8/8/8/8/8/8/RR2K3 w KQ - 0 1", "4k3/8/8/8/8/8/8/RR2K3 w Q - 0 1", "\"K\"");
    expect_untouched("4k3/8/8/8/8/8/8/RK6 w Q - 0 1");
    expect_untouched("4k3/8/8/8/8/8/8/6KR w K - 0 1");
    expect_untouched("4k3/8/8/8/8/8/8/5RKR w QK - 0 1");
}

TEST(FenCheck, GarbageInTheEnPassantFieldIsRefused) {
    expect_refused("4k3/8/8/8/8/8/8/4K3 w - e9 0 1", "field 4 (en passant): \"e9\" is neither");
    expect_refused("4k3/8/8/8/8/8/8/4K3 w - e 0 1", "\"e\" is neither a square nor -");
    expect_refused("4k3/8/8/8/8/8/8/4K3 w - e33 0 1", "\"e33\" is neither a square nor -");
    expect_refused("4k3/8/8/8/8/8/8/4K3 w - i3 0 1", "\"i3\" is neither a square nor -");
}

TEST(FenCheck, AnEnPassantSquareThatNoPawnPassedIsLeftOut) {
    // No pawn, a pawn of the wrong side, the wrong rank, a square that is taken, a pawn that
    // cannot have come from behind.
    expect_repaired("4k3/8/8/8/8/8/8/4K3 w - e6 0 1", "4k3/8/8/8/8/8/8/4K3 w - - 0 1",
                    "field 4 (en passant): \"e6\" is left out");
    expect_repaired("4k3/8/8/4P3/8/8/8/4K3 w - e6 0 1", "4k3/8/8/4P3/8/8/8/4K3 w - - 0 1", "e6");
    expect_repaired("4k3/8/8/4p3/8/8/8/4K3 w - e3 0 1", "4k3/8/8/4p3/8/8/8/4K3 w - - 0 1", "e3");
    expect_repaired("4k3/8/8/4p3/8/8/8/4K3 w - e4 0 1", "4k3/8/8/4p3/8/8/8/4K3 w - - 0 1", "e4");
    expect_repaired("k7/8/4n3/4p3/8/8/8/4K3 w - e6 0 1", "k7/8/4n3/4p3/8/8/8/4K3 w - - 0 1", "e6");
    expect_repaired("k7/4n3/8/4p3/8/8/8/4K3 w - e6 0 1", "k7/4n3/8/4p3/8/8/8/4K3 w - - 0 1", "e6");
    expect_repaired("4k3/8/8/8/4P3/8/4N3/K7 b - e3 0 1", "4k3/8/8/8/4P3/8/4N3/K7 b - - 0 1", "e3");
    expect_repaired("4k3/8/8/8/8/4p3/8/4K3 w - e4 0 1", "4k3/8/8/8/8/4p3/8/4K3 w - - 0 1", "e4");
    expect_repaired("4k3/8/4P3/8/8/8/8/4K3 b - e5 0 1", "4k3/8/4P3/8/8/8/8/4K3 b - - 0 1", "e5");
}

TEST(FenCheck, AnEnPassantSquareStaysAlsoWhereNoPawnCanTake) {
    expect_untouched("4k3/8/8/4p3/8/8/8/4K3 w - e6 0 1");
    expect_untouched("4k3/8/8/8/4P3/8/8/4K3 b - e3 0 1");
    expect_untouched("4k3/8/8/8/7P/8/8/4K3 b - h3 0 1");
}

TEST(FenCheck, MissingFieldsAreFilledIn) {
    std::string const pieces = "4k3/8/8/8/8/8/8/4K3 b";
    for (char const* given : {"", " -", " - -", " - - 0"}) {
        checked_t const checked = check(pieces + given);
        EXPECT_EQ(checked.reason, "");
        EXPECT_EQ(checked.repaired, pieces + " - - 0 1");
        EXPECT_EQ(checked.remarks.size(), 4 - std::string(given).size() / 2) << given;
    }
    expect_repaired(pieces + " - - 7", pieces + " - - 7 1", "field 6 (move number): is missing");
}

TEST(FenCheck, CountersThatAreNoNumbersAreRefused) {
    expect_refused("4k3/8/8/8/8/8/8/4K3 w - - x 1", "field 5 (half-move clock): \"x\" is no whole");
    expect_refused("4k3/8/8/8/8/8/8/4K3 w - - 0 -", "field 6 (move number): \"-\" is no whole");
    expect_refused("4k3/8/8/8/8/8/8/4K3 w - - 0.5 1", "\"0.5\" is no whole number");
    expect_refused("4k3/8/8/8/8/8/8/4K3 w - - bm Ke2;", "\"bm\" is no whole number");
}

TEST(FenCheck, CountersOutOfRangeAreClamped) {
    std::string const head = "4k3/8/8/8/8/8/8/4K3 w - - ";
    expect_repaired(head + "-1 1", head + "0 1", "field 5 (half-move clock): \"-1\" is out of");
    expect_repaired(head + "20001 1", head + "20000 1", "20000 is taken");
    expect_repaired(head + "0 0", head + "0 1", "field 6 (move number): \"0\" is out of range");
    expect_repaired(head + "0 99999999999999999999", head + "0 20000", "20000 is taken");
    expect_untouched(head + "20000 20000");
}

}  // namespace

}  // namespace orvelin::play::test
