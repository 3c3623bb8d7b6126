#include "support/referee.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>

#include "support/positions.h"

namespace orvelin::test {

namespace {

/// How the game stands behind these moves.
std::string verdict_behind(std::string const& fen, std::initializer_list<char const*> moves) {
    Referee referee(fen);
    for (char const* const move : moves) {
        EXPECT_EQ(referee.verdict(), "") << move;
        EXPECT_TRUE(referee.play(move)) << move;
    }
    return referee.verdict();
}

}  // namespace

TEST(RefereeTest, TellsHowAGameEnds) {
    EXPECT_EQ(verdict_behind("6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", {"a1a8"}), "checkmate");
    EXPECT_EQ(verdict_behind("7k/8/6K1/8/5Q2/8/8/8 w - - 0 1", {"f4f7"}), "stalemate");
    EXPECT_EQ(verdict_behind("7k/8/8/8/8/8/8/R5K1 w - - 99 90", {"a1a2"}), "fifty moves");
    EXPECT_EQ(verdict_behind("7k/8/8/8/8/8/6p1/5BK1 w - - 0 1", {"g1g2"}), "material");
    EXPECT_EQ(verdict_behind("7k/8/8/8/8/8/8/R5K1 w - - 0 1",
                             {"a1a2", "h8g8", "a2a1", "g8h8", "a1a2", "h8g8", "a2a1", "g8h8"}),
              "repetition");
}

TEST(RefereeTest, TakesCastlingInEitherNotation) {
    for (char const* const castling : {"e1g1", "e1h1"}) {
        Referee referee(positions::white_short_castling);
        EXPECT_TRUE(referee.play(castling));
        EXPECT_TRUE(referee.fen().starts_with("4k3/8/8/8/8/8/8/5RK1 b "));
        EXPECT_TRUE(referee.known());
    }
}

TEST(RefereeTest, LosesThePositionByAnIllegalMoveUntilTheNextStart) {
    Referee referee;
    EXPECT_FALSE(referee.play("e2e5"));
    EXPECT_FALSE(referee.known());
    EXPECT_EQ(referee.length(), 0U);
    EXPECT_TRUE(referee.play("e2e4"));
    EXPECT_FALSE(referee.known());
    referee.start(Referee().fen());
    EXPECT_TRUE(referee.known());
    EXPECT_EQ(referee.command(), "position startpos");
}

TEST(RefereeTest, TellsTheCommandThatLeadsToThePosition) {
    Referee referee(positions::white_short_castling);
    referee.play("e1g1");
    referee.play("e8e7");
    EXPECT_EQ(referee.command(), "position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1 moves e1g1 e8e7");
    EXPECT_EQ(referee.length(), 2U);
    EXPECT_FALSE(referee.over());
}

}  // namespace orvelin::test
