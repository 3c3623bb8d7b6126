#include "tables/fen_argument.h"

#include <gtest/gtest.h>
#include <string>

#include "support/tool_main.h"
#include "tables/ending.h"

namespace orvelin::test {

namespace {

tools::ending_t const& ending(char const* name) {
    return *tools::find_ending(name);
}

/// The position that is read, behind a '-' when its colours were exchanged.
std::string read(std::string const& fen, char const* name) {
    tools::ending_position_t const position = tools::read_ending_position(fen, ending(name));
    return (position.exchanged ? "-" : "") + position.fen;
}

/// What is wrong with the text; empty when nothing is.
std::string fault(std::string const& fen, char const* name = "KQKR") {
    try {
        tools::read_ending_position(fen, ending(name));
    } catch (tools::UsageError const& error) {
        std::string const start = "bad FEN: ";
        std::string const text = error.what();
        EXPECT_TRUE(text.starts_with(start)) << text;
        return text.substr(start.size());
    }
    return "";
}

}  // namespace

TEST(FenArgument, EndingsAreFoundInAnyCase) {
    EXPECT_EQ(tools::find_ending("kbnk"), &tools::endings[0]);
    EXPECT_EQ(tools::find_ending("KqKr"), &tools::endings[1]);
    EXPECT_EQ(tools::find_ending("KRKN"), &tools::endings[2]);
    EXPECT_EQ(tools::find_ending("KRK"), nullptr);
    EXPECT_EQ(tools::find_ending("KRKNX"), nullptr);
    EXPECT_EQ(tools::find_ending(""), nullptr);
}

TEST(FenArgument, MenInTheColoursOfTheEndingStay) {
    EXPECT_EQ(read("8/6K1/8/8/5Q2/8/3k4/r7 b - - 7 90", "KQKR"),
              "8/6K1/8/8/5Q2/8/3k4/r7 b - - 0 1");
    EXPECT_EQ(read("8/6K1/8/8/5B2/8/3k4/N7 w", "KBNK"), "8/6K1/8/8/5B2/8/3k4/N7 w - - 0 1");
}

TEST(FenArgument, MenInTheOtherColoursAreExchanged) {
    EXPECT_EQ(read("8/6K1/8/8/5q2/8/3k4/R7 b - -", "KQKR"), "-8/6k1/8/8/5Q2/8/3K4/r7 w - - 0 1");
    EXPECT_EQ(read("8/6K1/8/8/5n2/8/3k4/b7 w", "KBNK"), "-8/6k1/8/8/5N2/8/3K4/B7 b - - 0 1");
}

TEST(FenArgument, ALonePieceOfEitherColourFindsItsSide) {
    EXPECT_EQ(read("8/6K1/8/8/8/8/3k4/R7 b", "KQKR"), "-8/6k1/8/8/8/8/3K4/r7 w - - 0 1");
    EXPECT_EQ(read("8/6K1/8/8/8/8/3k4/r7 b", "KQKR"), "8/6K1/8/8/8/8/3k4/r7 b - - 0 1");
    EXPECT_EQ(read("8/6K1/8/8/8/8/3k4/b7 b", "KBNK"), "-8/6k1/8/8/8/8/3K4/B7 w - - 0 1");
    EXPECT_EQ(read("8/6K1/8/8/8/8/3k4/N7 b", "KRKN"), "-8/6k1/8/8/8/8/3K4/n7 w - - 0 1");
    EXPECT_EQ(read("8/6K1/8/8/8/8/3k4/8 b", "KRKN"), "8/6K1/8/8/8/8/3k4/8 b - - 0 1");
}

TEST(FenArgument, OtherMaterialIsRefused) {
    std::string const others = "its pieces are not those of KQKR";
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/8/3k4/R7 b"), others);
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/8/3k4/q7 b"), others);
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/7r/3k4/r7 b"), others);
    EXPECT_EQ(fault("8/6K1/8/8/5N2/8/3k4/r7 b"), others);
    EXPECT_EQ(fault("8/6K1/8/8/5P2/8/3k4/8 b"), others);
    EXPECT_EQ(fault("8/6K1/8/8/5B2/8/3k4/n7 b", "KBNK"), "its pieces are not those of KBNK");
    EXPECT_EQ(fault("8/6K1/8/8/5B2/8/3k4/B7 b", "KBNK"), "its pieces are not those of KBNK");
}

TEST(FenArgument, KingsAreNeeded) {
    EXPECT_EQ(fault("8/8/8/8/5Q2/8/3k4/r7 b"), "White has not exactly one king");
    EXPECT_EQ(fault("8/KK6/8/8/5Q2/8/3k4/8 b"), "White has not exactly one king");
    EXPECT_EQ(fault("8/K7/8/8/5Q2/8/8/8 b"), "Black has not exactly one king");
    EXPECT_EQ(fault("8/K7/8/8/kkkkkkkk/8/8/8 b"), "Black has not exactly one king");
}

TEST(FenArgument, DamagedTextsAreRefused) {
    std::string const missing = "the placement and the side to move are needed, in quotes";
    EXPECT_EQ(fault(""), missing);
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/8/3k4/r7"), missing);
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/8/3k4/r7 b - - 0 1 x"),
              "something stands behind the move number: x");
    EXPECT_EQ(fault("8/6K1/8/8/5x2/8/3k4/r7 b"), "'x' is no piece");
    EXPECT_EQ(fault("8/6K1/8/8/5Q0/8/3k4/r7 b"), "'0' is no piece");
    EXPECT_EQ(fault("8/6K2/8/8/5Q2/8/3k4/r7 b"), "the rank \"6K2\" is not 8 squares long");
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/8/3k4/r6 b"), "the rank \"r6\" is not 8 squares long");
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/8/3k3r b"), "the placement has 7 ranks, not 8");
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/8/3k3r/8/8 b"), "the placement has 9 ranks, not 8");
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/8/3k4/r7 x"), "the side to move is not w or b: x");
    EXPECT_EQ(fault("8/8/8/8/5q2/8/3k4/4K2R w K -"), "a table knows no castling");
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/8/3k4/r7 w - e6"), "a table knows no en passant");
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/8/3k4/r7 w - - x 1"),
              "the half-move clock is not a number up to 9999: x");
    EXPECT_EQ(fault("8/6K1/8/8/5Q2/8/3k4/r7 w - - 0 -1"),
              "the move number is not a number up to 9999: -1");
}

}  // namespace orvelin::test
