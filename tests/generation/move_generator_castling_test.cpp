#include "generation/generator_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

class CastlingTest : public GeneratorFixture {
 protected:
    /// Texts of the castling moves alone.
    texts_t castlings(std::string const& fen) {
        std::vector<Move> result;
        for (Move const& move : moves(fen)) {
            if (move.code() == castling) {
                result.push_back(move);
            }
        }
        return texts(result);
    }
};

}  // namespace

TEST_F(CastlingTest, BothSidesLowestRookFirst) {
    EXPECT_EQ(castlings(positions::all_castlings), (texts_t{"e1a1", "e1h1"}));
    EXPECT_EQ(castlings("r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1"), (texts_t{"e8a8", "e8h8"}));
}

TEST_F(CastlingTest, NeedsTheRight) {
    EXPECT_EQ(castlings("r3k2r/8/8/8/8/8/8/R3K2R w Kkq - 0 1"), texts_t{"e1h1"});
    EXPECT_EQ(castlings("r3k2r/8/8/8/8/8/8/R3K2R b KQ - 0 1"), texts_t{});
}

TEST_F(CastlingTest, NeedsAFreeWayForKingAndRook) {
    EXPECT_EQ(castlings("4k3/8/8/8/8/8/8/RN2K1NR w KQ - 0 1"), texts_t{});
    EXPECT_EQ(castlings("4k3/8/8/8/8/8/8/R1B1K2R w KQ - 0 1"), texts_t{"e1h1"});
}

TEST_F(CastlingTest, IsRefusedOutOfThroughAndIntoCheck) {
    EXPECT_EQ(castlings("4r1k1/8/8/8/8/8/8/R3K2R w KQ - 0 1"), texts_t{});
    EXPECT_EQ(castlings("5rk1/8/8/8/8/8/8/R3K2R w KQ - 0 1"), texts_t{"e1a1"});
    EXPECT_EQ(castlings("6k1/8/8/8/8/6n1/8/R3K2R w KQ - 0 1"), texts_t{"e1a1"});
    EXPECT_EQ(castlings("2r3k1/8/8/8/8/8/8/R3K2R w KQ - 0 1"), texts_t{"e1h1"});
    // The rook may cross an attacked square.
    EXPECT_EQ(castlings("1r4k1/8/8/8/8/8/8/R3K2R w KQ - 0 1"), (texts_t{"e1a1", "e1h1"}));
}

TEST_F(CastlingTest, KingNextToTheRookInTheCorner) {
    std::string const fen = "7k/8/8/8/8/8/8/RK6 w A - 0 1";
    EXPECT_EQ(castlings(fen), texts_t{"b1a1"});
    Move const move = find(fen, "b1a1");
    EXPECT_EQ(move.to(), Square("a1"));
    EXPECT_EQ(move.algebraic(false), "b1a1");
    EXPECT_EQ(move.piece_id(), 6);
    EXPECT_EQ(move.capture_id(), 0);
}

TEST_F(CastlingTest, IsRefusedWhenTheRookUncoversTheRank) {
    EXPECT_EQ(castlings("7k/8/8/8/8/8/8/rRK5 w B - 0 1"), texts_t{});
    EXPECT_EQ(castlings("7k/8/8/8/8/8/8/qRK5 w B - 0 1"), texts_t{});
    EXPECT_EQ(castlings("7k/8/8/8/8/8/8/nRK5 w B - 0 1"), texts_t{"c1b1"});
    EXPECT_EQ(castlings("rRk5/8/8/8/8/8/8/7K b b - 0 1"), texts_t{});
    EXPECT_EQ(castlings("Rrk5/8/8/8/8/8/8/7K b b - 0 1"), texts_t{});
    EXPECT_EQ(castlings("Nrk5/8/8/8/8/8/8/7K b b - 0 1"), texts_t{"c8b8"});
}

TEST_F(CastlingTest, RookMayStandOnTheKingsWay) {
    EXPECT_EQ(castlings("7k/8/8/8/8/8/8/5KR1 w G - 0 1"), texts_t{"f1g1"});
    EXPECT_EQ(castlings("5kr1/8/8/8/8/8/8/7K b g - 0 1"), texts_t{"f8g8"});
}

TEST_F(CastlingTest, AllSquaresOfTheKingsWayCount) {
    EXPECT_EQ(castlings("3r3k/8/8/8/8/8/8/1K5R w H - 0 1"), texts_t{});
    EXPECT_EQ(castlings("r6k/8/8/8/8/8/8/1K5R w H - 0 1"), texts_t{"b1h1"});
}

TEST_F(CastlingTest, RookCanGiveCheck) {
    EXPECT_TRUE(checks("5k2/8/8/8/8/8/8/4K2R w K - 0 1", "e1h1"));
    EXPECT_FALSE(checks("6k1/8/8/8/8/8/8/4K2R w K - 0 1", "e1h1"));
    EXPECT_TRUE(checks("3k4/8/8/8/8/8/8/R3K3 w Q - 0 1", "e1a1"));
    EXPECT_TRUE(checks("4k2r/8/8/8/8/8/8/5K2 b k - 0 1", "e8h8"));
    EXPECT_TRUE(checks("r3k3/8/8/8/8/8/8/3K4 b q - 0 1", "e8a8"));
    EXPECT_FALSE(checks("r3k3/8/8/8/3P4/8/8/3K4 b q - 0 1", "e8a8"));
}

TEST_F(CastlingTest, GivesNoCheckFromTheCornerThatNoArrayHas) {
    // By design: a king on h1 or a8 counts as off its home rank, and the rook of its castling move
    // is not looked for. The neighbours show that the rook would give check.
    EXPECT_TRUE(checks("3k4/8/8/8/8/8/8/5RK1 w F - 0 1", "g1f1"));
    EXPECT_FALSE(checks("3k4/8/8/8/8/8/8/6RK w G - 0 1", "h1g1"));
    EXPECT_TRUE(checks("1kr5/8/8/8/8/8/8/5K2 b c - 0 1", "b8c8"));
    EXPECT_FALSE(checks("kr6/8/8/8/8/8/8/5K2 b b - 0 1", "a8b8"));
}

TEST_F(CastlingTest, KingAndRookDoNotShieldTheKingTheyLeave) {
    // The black king stands on the rank which king and rook clear.
    EXPECT_TRUE(checks("8/8/8/8/8/8/8/k2KR3 w E - 0 1", "d1e1"));
}

TEST_F(CastlingTest, RightsWithoutAKingGiveNoMove) {
    EXPECT_EQ(castlings("7k/8/8/8/8/8/8/R6R w KQ - 0 1"), texts_t{});
    EXPECT_EQ(castlings("r6r/8/8/8/8/8/8/7K b kq - 0 1"), texts_t{});
}

TEST_F(CastlingTest, RightsWithAKingOffItsRankAreTakenByTheSquares) {
    // By design the rights name rook files only, so such a king castles by the comparison of the
    // squares. No game reaches this.
    EXPECT_EQ(castlings("7k/8/8/8/4K3/8/8/R7 w Q - 0 1"), texts_t{"e4a1"});
    EXPECT_FALSE(checks("3k4/8/8/8/4K3/8/8/R7 w Q - 0 1", "e4a1"));
}

}  // namespace orvelin::test
