#include "search/principal_variation.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <stdexcept>
#include <string>

#include "position/move.h"
#include "position/square.h"

namespace orvelin {
namespace {

Move const e4(Square("e2"), Square("e4"), normal_move, white_pawn, no_piece);
Move const e5(Square("e7"), Square("e5"), normal_move, black_pawn, no_piece);
Move const nf3(Square("g1"), Square("f3"), normal_move, white_knight, no_piece);

PrincipalVariation line_of(std::initializer_list<Move> moves) {
    PrincipalVariation line;
    for (Move const& move : moves) {
        line[line.size()] = move;
    }
    return line;
}

template <typename Action>
void expect_out_of_range(Action action) {
    try {
        action();
        ADD_FAILURE() << "nothing was thrown";
    } catch (std::logic_error const& error) {
        EXPECT_STREQ(error.what(), "PrincipalVariation::operator[]() parameter out of range");
    }
}

TEST(PrincipalVariation, StartsAllZero) {
    PrincipalVariation const line;
    EXPECT_EQ(line.size(), 0);
    EXPECT_EQ(line.score(), 0);
    EXPECT_EQ(line.depth(), 0);
    EXPECT_EQ(line.version(), 0);
    for (int i = 0; i < 102; ++i) {
        EXPECT_EQ(line.begin()[i], Move());
    }
}

TEST(PrincipalVariation, IndexOfTheSizeGrowsByAZeroMove) {
    PrincipalVariation line;
    EXPECT_EQ(line[0], Move());
    EXPECT_EQ(line.size(), 1);
    line[0] = e4;
    line[1] = e5;
    EXPECT_EQ(line.size(), 2);
    EXPECT_EQ(line[0], e4);
    EXPECT_EQ(line.size(), 2);
}

TEST(PrincipalVariation, IndexAboveTheSizeFails) {
    PrincipalVariation line;
    expect_out_of_range([&line] { line[2] = e4; });
    expect_out_of_range([&line] { line[1] = e4; });
    expect_out_of_range([&line] { line[-1] = e4; });
    EXPECT_EQ(line.size(), 0);
}

TEST(PrincipalVariation, ConstIndexAtTheSizeFails) {
    PrincipalVariation const empty;
    expect_out_of_range([&empty] { static_cast<void>(empty[0]); });
    PrincipalVariation const line = line_of({e4, e5});
    EXPECT_EQ(line[1], e5);
    expect_out_of_range([&line] { static_cast<void>(line[2]); });
    expect_out_of_range([&line] { static_cast<void>(line[-1]); });
}

TEST(PrincipalVariation, HoldsAHundredAndTwoMovesAndNoMore) {
    PrincipalVariation line;
    for (int i = 0; i < 102; ++i) {
        line[i] = e4;
    }
    EXPECT_EQ(line.size(), 102);
    expect_out_of_range([&line] { line[102] = e5; });
    expect_out_of_range([&line] { static_cast<void>(e5 + line); });
}

TEST(PrincipalVariation, ClearKeepsDepthAndMoves) {
    PrincipalVariation line = line_of({e4, e5});
    line.set_score(31);
    line.set_depth(7);
    line.clear();
    EXPECT_EQ(line.size(), 0);
    EXPECT_EQ(line.score(), 0);
    EXPECT_EQ(line.depth(), 7);
    EXPECT_EQ(line.begin()[0], e4);
    EXPECT_EQ(line[0], e4);
}

TEST(PrincipalVariation, PointersSpanTheMoves) {
    PrincipalVariation line = line_of({e4, e5, nf3});
    EXPECT_EQ(line.end() - line.begin(), 3);
    EXPECT_EQ(line.cend() - line.cbegin(), 3);
    EXPECT_EQ(*line.cbegin(), e4);
    *line.begin() = nf3;
    EXPECT_EQ(line[0], nf3);
}

TEST(PrincipalVariation, CopyTakesTheVersionAndAssignmentCountsItsOwn) {
    PrincipalVariation source = line_of({e4, e5});
    source.set_score(-20);
    source.set_depth(9);
    PrincipalVariation target;
    target = source;
    target = source;
    EXPECT_EQ(target.version(), 2);
    EXPECT_EQ(target.size(), 2);
    EXPECT_EQ(target.score(), -20);
    EXPECT_EQ(target.depth(), 9);
    EXPECT_EQ(target[1], e5);

    PrincipalVariation const copy(target);
    EXPECT_EQ(copy.version(), 2);
    EXPECT_EQ(copy.size(), 2);
    EXPECT_EQ(copy.score(), -20);
    EXPECT_EQ(copy.depth(), 9);
    EXPECT_EQ(copy, target);
}

TEST(PrincipalVariation, AssignmentTakesTheMovesBehindTheEndToo) {
    PrincipalVariation source = line_of({e4, e5});
    source.clear();
    PrincipalVariation target;
    target = source;
    EXPECT_EQ(target.begin()[1], e5);
}

TEST(PrincipalVariation, EqualityLooksAtAllMovesAndNothingElse) {
    PrincipalVariation line = line_of({e4, e5});
    PrincipalVariation other = line;
    other.set_score(5);
    other.set_depth(5);
    other.clear();
    EXPECT_TRUE(line == other);
    EXPECT_FALSE(line != other);
    other.begin()[0].xcode(hashtable_move);
    EXPECT_TRUE(line == other);
    other.begin()[0].check(true);
    EXPECT_FALSE(line == other);

    PrincipalVariation last = line;
    last.begin()[101] = nf3;
    EXPECT_TRUE(line != last);
}

TEST(PrincipalVariation, GreaterMeansDeeperThenHigher) {
    PrincipalVariation line;
    PrincipalVariation other;
    line.set_depth(5);
    line.set_score(-100);
    other.set_depth(4);
    other.set_score(100);
    EXPECT_TRUE(line > other);
    EXPECT_FALSE(other > line);
    other.set_depth(5);
    EXPECT_TRUE(other > line);
    line.set_score(100);
    EXPECT_FALSE(line > other);
    EXPECT_FALSE(other > line);
}

TEST(PrincipalVariation, TextHasABlankBehindEachMove) {
    EXPECT_EQ(PrincipalVariation().str(), "\n");
    EXPECT_EQ(line_of({e4, e5, nf3}).str(), "e2e4 e7e5 g1f3 \n");
    Move const castle(Square("e1"), Square("h1"), castling, white_king, no_piece);
    EXPECT_EQ(line_of({castle}).str(), "e1g1 \n");
}

TEST(PrincipalVariation, MovePlusLineIsANewLine) {
    PrincipalVariation tail = line_of({e5, nf3});
    tail.set_score(44);
    tail.set_depth(6);
    PrincipalVariation const line = e4 + tail;
    EXPECT_EQ(line.str(), "e2e4 e7e5 g1f3 \n");
    EXPECT_EQ(line.score(), 0);
    EXPECT_EQ(line.depth(), 0);
    EXPECT_EQ(line.version(), 0);
    EXPECT_EQ(tail.size(), 2);

    PrincipalVariation empty;
    EXPECT_EQ((e4 + empty).str(), "e2e4 \n");
}

TEST(PrincipalVariation, MovePlusLineLeavesTheMovesBehindTheEndOut) {
    PrincipalVariation tail = line_of({e5, nf3});
    tail.clear();
    EXPECT_EQ((e4 + tail).cbegin()[1], Move());
}

TEST(PrincipalVariation, IsAFlatRecord) {
    EXPECT_LE(sizeof(PrincipalVariation), 4U * (102 + 4));
}

}  // namespace
}  // namespace orvelin
