#include "generation/generator_fixture.h"
#include "position/side.h"

namespace orvelin::test {

namespace {

using LegalityTest = GeneratorFixture;

}  // namespace

TEST_F(LegalityTest, PinnedRookMovesAlongItsLineUpToThePinner) {
    EXPECT_EQ(moves_from("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1", "e2"),
              (texts_t{"e2e8", "e2e3", "e2e4", "e2e5", "e2e6", "e2e7"}));
    EXPECT_EQ(moves_from("4k3/4r3/8/8/8/8/8/4R2K b - - 0 1", "e7"),
              (texts_t{"e7e1", "e7e2", "e7e3", "e7e4", "e7e5", "e7e6"}));
}

TEST_F(LegalityTest, PinnedKnightHasNoMove) {
    EXPECT_EQ(moves_from("4r2k/8/8/8/8/8/4N3/4K3 w - - 0 1", "e2"), texts_t{});
}

TEST_F(LegalityTest, PinnedPawnMovesOnItsFileAndTakesThePinner) {
    EXPECT_EQ(moves_from("4r2k/8/8/8/8/3p4/4P3/4K3 w - - 0 1", "e2"), (texts_t{"e2e3", "e2e4"}));
    EXPECT_EQ(moves_from("7k/8/8/8/7b/6P1/8/4K3 w - - 0 1", "g3"), texts_t{"g3h4"});
}

TEST_F(LegalityTest, EnPassantThatClearsTheKingsRankIsIllegal) {
    EXPECT_FALSE(generates("8/8/8/KPp4r/8/8/8/7k w - c6 0 1", "b5c6"));
    EXPECT_TRUE(generates("8/8/8/KPp5/7r/8/8/7k w - c6 0 1", "b5c6"));
    EXPECT_FALSE(generates("7K/8/8/8/kpP4R/8/8/8 b - c3 0 1", "b4c3"));
    EXPECT_TRUE(generates("7K/8/8/8/kpP5/7R/8/8 b - c3 0 1", "b4c3"));
}

TEST_F(LegalityTest, EnPassantTakesACheckingPawn) {
    EXPECT_TRUE(generates("7k/8/8/3Pp3/3K4/8/8/8 w - e6 0 1", "d5e6"));
    EXPECT_TRUE(generates("8/8/8/3k4/3pP3/8/8/7K b - e3 0 1", "d4e3"));
}

TEST_F(LegalityTest, EnPassantOfACheckingPawnIsForbiddenToAPinnedPawn) {
    EXPECT_FALSE(generates("3r3k/8/8/3Pp3/3K4/8/8/8 w - e6 0 1", "d5e6"));
    EXPECT_FALSE(generates("8/8/8/3k4/3pP3/8/8/3R3K b - e3 0 1", "d4e3"));
}

TEST_F(LegalityTest, EnPassantDoesNotHelpAgainstAnotherChecker) {
    EXPECT_FALSE(generates("7k/8/8/3Pp3/8/8/8/r3K3 w - e6 0 1", "d5e6"));
}

TEST_F(LegalityTest, KingDoesNotStepBackAlongTheCheckersRank) {
    EXPECT_EQ(texts(moves("7k/8/8/8/r3K3/8/8/8 w - - 0 1")),
              (texts_t{"e4d3", "e4e3", "e4f3", "e4d5", "e4e5", "e4f5"}));
    EXPECT_FALSE(generates("8/8/8/R3k3/8/8/8/7K b - - 0 1", "e5f5"));
}

TEST_F(LegalityTest, KingTakesAnUndefendedCheckerOnly) {
    EXPECT_TRUE(generates("7k/8/8/8/8/8/3q4/4K3 w - - 0 1", "e1d2"));
    EXPECT_FALSE(generates("3r3k/8/8/8/8/8/3q4/4K3 w - - 0 1", "e1d2"));
}

TEST_F(LegalityTest, SingleCheckIsMetByCaptureInterpositionOrFlight) {
    EXPECT_EQ(moves_from("4r2k/8/8/8/Q7/8/8/4K3 w - - 0 1", "a4"), (texts_t{"a4e8", "a4e4"}));
    // No piece comes between a knight and the king.
    EXPECT_EQ(moves_from("7k/8/8/8/8/3n4/8/R3K2Q w - - 0 1", "a1"), texts_t{});
}

TEST_F(LegalityTest, InDoubleCheckOnlyTheKingMoves) {
    std::vector<Move> const list = moves("4r2k/8/8/8/8/3n4/2P5/4KB1Q w - - 0 1");
    EXPECT_EQ(texts(list), (texts_t{"e1d1", "e1d2"}));
    std::vector<Move> const black = moves("4kb1q/2p5/3N4/8/8/8/8/4R2K b - - 0 1");
    EXPECT_EQ(texts(black), (texts_t{"e8d7", "e8d8"}));
}

TEST_F(LegalityTest, KingLeavingALineUncoversItsRook) {
    std::string const fen = "4k3/8/8/8/4K3/8/8/4R3 w - - 0 1";
    EXPECT_TRUE(checks(fen, "e4d4"));
    EXPECT_TRUE(checks(fen, "e4f5"));
    EXPECT_FALSE(checks(fen, "e4e5"));
    EXPECT_FALSE(checks(fen, "e4e3"));
}

TEST_F(LegalityTest, PawnOnALineChecksWhenItLeavesTheLine) {
    EXPECT_FALSE(checks("4k3/8/8/8/5p2/4P3/8/K3R3 w - - 0 1", "e3e4"));
    EXPECT_TRUE(checks("4k3/8/8/8/5p2/4P3/8/K3R3 w - - 0 1", "e3f4"));
}

TEST_F(LegalityTest, PieceOnALineAlwaysUncoversCheck) {
    EXPECT_TRUE(checks("4k3/8/8/8/4N3/8/8/K3R3 w - - 0 1", "e4c3"));
    EXPECT_TRUE(checks("4k3/8/8/8/4B3/8/8/K3R3 w - - 0 1", "e4b1"));
    EXPECT_TRUE(checks("k3r3/8/8/8/4b3/8/8/4K3 b - - 0 1", "e4h1"));
}

TEST_F(LegalityTest, DirectChecksOfEachMan) {
    EXPECT_TRUE(checks("4k3/8/8/8/8/8/8/K6Q w - - 0 1", "h1h8"));
    EXPECT_TRUE(checks("4k3/8/8/8/8/8/8/K6Q w - - 0 1", "h1h5"));
    EXPECT_FALSE(checks("4k3/8/8/8/8/8/8/K6Q w - - 0 1", "h1h6"));
    EXPECT_TRUE(checks("4k3/8/8/8/8/8/8/K6R w - - 0 1", "h1h8"));
    EXPECT_FALSE(checks("4k1n1/8/8/8/8/8/8/K6R w - - 0 1", "h1h8"));
    EXPECT_TRUE(checks("4k3/8/8/8/8/8/4B3/K7 w - - 0 1", "e2b5"));
    EXPECT_FALSE(checks("4k3/8/8/4N3/8/8/8/K7 w - - 0 1", "e5g6"));
    EXPECT_FALSE(checks("4k3/8/8/4N3/8/8/8/K7 w - - 0 1", "e5d3"));
    EXPECT_TRUE(checks("4k3/8/8/3N4/8/8/8/K7 w - - 0 1", "d5f6"));
    EXPECT_TRUE(checks("4k3/8/3P4/8/8/8/8/K7 w - - 0 1", "d6d7"));
    EXPECT_FALSE(checks("7k/8/P7/8/8/8/8/K7 w - - 0 1", "a6a7"));
    EXPECT_TRUE(checks("k7/8/8/8/8/3p4/8/4K3 b - - 0 1", "d3d2"));
    EXPECT_FALSE(checks("k7/8/8/8/8/7p/8/K7 b - - 0 1", "h3h2"));
}

TEST_F(LegalityTest, PromotionChecksByTheNewPieceAndThroughTheVacatedSquare) {
    std::string const fen = "8/2P1k3/8/8/8/8/8/K7 w - - 0 1";
    EXPECT_FALSE(checks(fen, "c7c8q"));
    EXPECT_FALSE(checks(fen, "c7c8r"));
    EXPECT_FALSE(checks(fen, "c7c8b"));
    EXPECT_TRUE(checks(fen, "c7c8n"));
    // The new queen looks back along the file that the pawn has left.
    EXPECT_TRUE(checks("8/2P5/8/8/2k5/8/8/K7 w - - 0 1", "c7c8q"));
    EXPECT_TRUE(checks("8/2P5/8/8/2k5/8/8/K7 w - - 0 1", "c7c8r"));
    EXPECT_FALSE(checks("8/2P5/8/8/2k5/8/8/K7 w - - 0 1", "c7c8b"));
    EXPECT_TRUE(checks("8/2P5/8/8/6k1/8/8/K7 w - - 0 1", "c7c8b"));
    // A rook behind the pawn's rank looks through.
    EXPECT_TRUE(checks("8/R1P1k3/8/8/8/8/8/K7 w - - 0 1", "c7c8b"));
    EXPECT_TRUE(checks("k7/8/8/8/8/8/r1p1K3/8 b - - 0 1", "c2c1b"));
}

TEST_F(LegalityTest, EnPassantUncoversChecksOnRankFileAndDiagonal) {
    EXPECT_TRUE(checks("8/8/8/R2Pp2k/8/8/8/K7 w - e6 0 1", "d5e6"));
    EXPECT_TRUE(checks("3k4/8/8/3Pp3/8/8/8/K2R4 w - e6 0 1", "d5e6"));
    EXPECT_TRUE(checks("7k/8/8/3Pp3/8/8/1B6/K7 w - e6 0 1", "d5e6"));
    EXPECT_TRUE(checks("8/5k2/8/3Pp3/8/8/8/K7 w - e6 0 1", "d5e6"));
    EXPECT_FALSE(checks("7k/8/8/3Pp3/8/8/8/K7 w - e6 0 1", "d5e6"));
    EXPECT_TRUE(checks("k7/8/8/8/r2pP2K/8/8/8 b - e3 0 1", "d4e3"));
}

TEST_F(LegalityTest, EmptyWordIsLeftWithoutCheck) {
    moves("4k3/8/8/8/8/8/8/K6Q w - - 0 1");
    Move move;
    move.check(true);
    generator_.set_checkstatus<side::white>(position_, move);
    EXPECT_FALSE(move.check());
    EXPECT_EQ(move.xcode(), xnormal_move);
}

}  // namespace orvelin::test
