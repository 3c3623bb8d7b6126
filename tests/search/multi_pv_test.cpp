#include "search/multi_pv.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <set>
#include <vector>

#include "position/move.h"
#include "position/square.h"

namespace orvelin {
namespace {

/// A line of one move, told from others by its destination.
PrincipalVariation line_to(int square, int score, int depth = 5) {
    PrincipalVariation line;
    line[0] = Move(Square("a1"), Square(square), normal_move, white_queen, no_piece);
    line.set_score(score);
    line.set_depth(depth);
    return line;
}

std::vector<int> scores(MultiPV const& lines) {
    std::vector<int> result;
    for (PrincipalVariation const& line : lines) {
        result.push_back(line.score());
    }
    return result;
}

/// Lines in just this order: adding at number 1 000 ranks them, so the scores are set later.
MultiPV lines_of(std::vector<int> const& wanted) {
    MultiPV lines;
    lines.set_number(1000);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        lines.add(line_to(static_cast<int>(i) + 1, 0));
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        lines[static_cast<int>(i)].set_score(wanted[i]);
    }
    return lines;
}

TEST(MultiPV, StartsWithOneWantedLineAndNone) {
    MultiPV const lines;
    EXPECT_EQ(lines.number(), 1);
    EXPECT_EQ(lines.version(), 0);
    EXPECT_EQ(lines.size(), 0);
    EXPECT_TRUE(lines.begin() == lines.end());
}

TEST(MultiPV, LineWithoutMovesChangesNothing) {
    MultiPV lines;
    lines.add(line_to(1, 10));
    lines.add(PrincipalVariation());
    EXPECT_EQ(lines.version(), 1);
    EXPECT_EQ(lines.size(), 1);
}

TEST(MultiPV, EachAddCountsTheVersionUp) {
    MultiPV lines;
    lines.add(line_to(1, 10));
    lines.add(line_to(1, 10));
    EXPECT_EQ(lines.version(), 2);
    lines.clear();
    EXPECT_EQ(lines.size(), 0);
    EXPECT_EQ(lines.version(), 2);
}

TEST(MultiPV, SameFirstMoveReplacesTheStoredLine) {
    MultiPV lines;
    lines.set_number(3);
    lines.add(line_to(1, 30));
    lines.add(line_to(2, 20));
    lines.add(line_to(3, 10));
    PrincipalVariation again = line_to(2, 25);
    again[0].xcode(hashtable_move);
    lines.add(again);
    EXPECT_EQ(scores(lines), (std::vector<int>{30, 25, 10}));
    lines.add(line_to(3, 5));
    EXPECT_EQ(scores(lines), (std::vector<int>{30, 25, 5}));
}

TEST(MultiPV, CheckBitMakesAnotherFirstMove) {
    MultiPV lines;
    lines.set_number(3);
    lines.add(line_to(1, 30));
    PrincipalVariation checking = line_to(1, 20);
    checking[0].check(true);
    lines.add(checking);
    EXPECT_EQ(lines.size(), 2);
}

TEST(MultiPV, RankingComparesWithTheLineInPlace) {
    // Stored 10, 30 with 20 to come: the last line that beats 10 takes its place.
    MultiPV lines = lines_of({10, 30});
    lines.add(line_to(63, 20));
    EXPECT_EQ(scores(lines), (std::vector<int>{20, 30, 10}));
    // A second ranking goes on from there.
    lines.add(line_to(62, 0));
    EXPECT_EQ(scores(lines), (std::vector<int>{30, 20, 10, 0}));
}

TEST(MultiPV, GreaterDepthGoesFirst) {
    MultiPV lines;
    lines.set_number(2);
    lines.add(line_to(1, 300, 5));
    lines.add(line_to(2, -300, 6));
    EXPECT_EQ(scores(lines), (std::vector<int>{-300, 300}));
}

TEST(MultiPV, OnlyTheWantedNumberIsKept) {
    MultiPV lines;
    lines.add(line_to(1, 10));
    lines.add(line_to(2, 20));
    EXPECT_EQ(scores(lines), (std::vector<int>{20}));
    lines.add(line_to(3, 15));
    EXPECT_EQ(scores(lines), (std::vector<int>{20}));
    EXPECT_EQ(lines.version(), 3);
    lines.set_number(2);
    lines.add(line_to(3, 15));
    EXPECT_EQ(scores(lines), (std::vector<int>{20, 15}));
}

TEST(MultiPV, SmallerNumberCutsAtTheNextAdd) {
    MultiPV lines = lines_of({30, 20, 10});
    lines.set_number(1);
    EXPECT_EQ(lines.size(), 3);
    lines.add(line_to(63, 5));
    EXPECT_EQ(scores(lines), (std::vector<int>{30}));
    lines.set_number(-1);
    lines.add(line_to(62, 5));
    EXPECT_EQ(lines.size(), 0);
}

TEST(MultiPV, CopyTakesTheVersionAndAssignmentCountsItsOwn) {
    MultiPV source = lines_of({30, 20});
    source.set_version(17);
    MultiPV const copy(source);
    EXPECT_EQ(copy.number(), 1000);
    EXPECT_EQ(copy.version(), 17);
    EXPECT_EQ(scores(copy), (std::vector<int>{30, 20}));

    MultiPV target;
    target.set_version(4);
    target = source;
    EXPECT_EQ(target.number(), 1000);
    EXPECT_EQ(target.version(), 5);
    EXPECT_EQ(scores(target), (std::vector<int>{30, 20}));
}

TEST(MultiPV, IteratorsAndIndexReachTheSameLines) {
    MultiPV lines = lines_of({30, 20});
    EXPECT_EQ(lines.end() - lines.begin(), 2);
    EXPECT_EQ(lines.cend() - lines.cbegin(), 2);
    lines.begin()->set_score(31);
    MultiPV const& read_only = lines;
    EXPECT_EQ(read_only[0].score(), 31);
    EXPECT_EQ(lines.cbegin()->score(), 31);
}

TEST(MultiPV, RandomizePicksAmongTheLinesWithinTheMargin) {
    std::set<int> picked;
    for (std::uint32_t word = 0; word < 100; ++word) {
        MultiPV lines = lines_of({50, 40, 10});
        lines.randomize(15, word);
        EXPECT_EQ(lines.size(), 3);
        EXPECT_EQ(lines[2].score(), 10);
        picked.insert(lines[0].score());
    }
    EXPECT_EQ(picked, (std::set<int>{40, 50}));
}

TEST(MultiPV, RandomizeWithoutMarginPicksTheBestLine) {
    for (std::uint32_t word = 0; word < 100; ++word) {
        MultiPV lines = lines_of({40, 10, 50});
        lines.randomize(0, word);
        EXPECT_EQ(scores(lines), (std::vector<int>{50, 40, 10}));
    }
}

TEST(MultiPV, RandomizeCountsEqualScoresAndTheMarginIn) {
    MultiPV equal = lines_of({50, 50, 49});
    equal.randomize(0, 1);
    EXPECT_EQ(scores(equal), (std::vector<int>{50, 50, 49}));
    EXPECT_EQ(equal[0][0].to().id(), 2);
    MultiPV edge = lines_of({50, 40, 30});
    edge.randomize(20, 2);
    EXPECT_EQ(scores(edge), (std::vector<int>{30, 40, 50}));
}

TEST(MultiPV, RandomizeTakesTheWordAsSigned) {
    // -1 is 1, -2^31 is 2^31, whose remainder by 3 is 2.
    MultiPV minus_one = lines_of({50, 40, 30});
    minus_one.randomize(100, 0xffffffffU);
    EXPECT_EQ(scores(minus_one), (std::vector<int>{40, 50, 30}));
    MultiPV lowest = lines_of({50, 40, 30});
    lowest.randomize(100, 0x80000000U);
    EXPECT_EQ(scores(lowest), (std::vector<int>{30, 40, 50}));
}

TEST(MultiPV, RandomizeLeavesTheVersion) {
    MultiPV lines = lines_of({50, 40});
    int const version = lines.version();
    lines.randomize(100, 1);
    lines.randomize(100);
    EXPECT_EQ(lines.version(), version);
    EXPECT_EQ(lines.size(), 2);
}

TEST(MultiPV, RandomizeDrawsItsOwnWords) {
    std::set<int> picked;
    for (int i = 0; i < 200; ++i) {
        MultiPV lines = lines_of({50, 40, 10});
        lines.randomize(15);
        picked.insert(lines[0].score());
    }
    EXPECT_EQ(picked, (std::set<int>{40, 50}));
}

TEST(MultiPV, RandomizeWithoutLinesTouchesNothing) {
    MultiPV lines;
    lines.randomize(200);
    lines.randomize(200, 7);
    EXPECT_EQ(lines.size(), 0);
    EXPECT_EQ(lines.version(), 0);
}

}  // namespace
}  // namespace orvelin
