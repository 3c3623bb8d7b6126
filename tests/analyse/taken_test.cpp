#include "analyse/taken.h"

#include <gtest/gtest.h>

#include "analyse/lines_fixture.h"

namespace orvelin::analyse::test {

namespace {

std::string taken_after(std::string const& fen, std::string const& move) {
    auto const taken = taken_by(line_from(fen, move, 0).moves.at(0));
    return taken ? taken_text(*taken) : "";
}

TEST(TakenTest, TellsPieceAndSquare) {
    std::string const fen = "r3k2r/8/8/3pP1n1/8/8/8/R3K2R w KQkq d6 0 1";
    EXPECT_EQ(taken_after(fen, "h1h8"), "rh8");
    EXPECT_EQ(taken_after(fen, "e5d6"), "pd6");
    EXPECT_EQ(taken_after(fen, "h1h7"), "");
    EXPECT_EQ(taken_after(fen, "e1g1"), "");
    EXPECT_EQ(taken_after("q3k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "b7a8n"), "qa8");
    EXPECT_FALSE(taken_by(Move()));
}

TEST(TakenTest, IsReadBackAndNothingElseIs) {
    for (char const* const text : {"pa1", "nb2", "bh8", "rg7", "qd5"}) {
        auto const taken = parse_taken(text);
        ASSERT_TRUE(taken) << text;
        EXPECT_EQ(taken_text(*taken), text);
    }
    EXPECT_EQ(parse_taken("qd5")->kind, white_queen);
    EXPECT_EQ(parse_taken("qd5")->square, Square("d5"));
    for (char const* const text :
         {"", "n", "nd", "kd5", "Nd5", "xd5", "ni5", "nd9", "nd0", "nd55"}) {
        EXPECT_FALSE(parse_taken(text)) << text;
    }
}

}  // namespace

}  // namespace orvelin::analyse::test
