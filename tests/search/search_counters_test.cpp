#include "search/search_counters.h"

#include <gtest/gtest.h>

namespace orvelin::test {

TEST(SearchCounters, SearchBeginsAtZeroWithTheNextDate) {
    SearchCounters counters;
    counters.iteration = 7;
    counters.ply = 3;
    counters.seldepth = 12;
    counters.date = 255;
    counters.node_count = 100;
    counters.mate_attack_count = -4;
    counters.leaf_count = 50;
    counters.ebf = 2.5F;
    counters.clear();
    EXPECT_EQ(counters.iteration, 7);
    EXPECT_EQ(counters.seldepth, 0);
    EXPECT_EQ(counters.date, 255);
    EXPECT_EQ(counters.node_count, 0U);
    EXPECT_EQ(counters.mate_attack_count, 0);
    EXPECT_EQ(counters.leaf_count, 0U);
    // These two stay.
    EXPECT_EQ(counters.ply, 3);
    EXPECT_EQ(counters.ebf, 2.5F);
    counters.begin_iterations();
    EXPECT_EQ(counters.iteration, 0);
    EXPECT_EQ(counters.date, 0);
    counters.begin_iterations();
    EXPECT_EQ(counters.date, 1);
}

TEST(SearchCounters, SeldepthIsTheLargestPlyNoted) {
    SearchCounters counters;
    for (int const ply : {4, 9, 2}) {
        counters.ply = ply;
        counters.note_ply();
    }
    EXPECT_EQ(counters.seldepth, 9);
}

TEST(SearchCounters, StoppedIterationLeavesTheBranchingFactor) {
    SearchCounters counters;
    counters.iteration = 2;
    counters.leaf_count = 9;
    counters.close_iteration(false);
    EXPECT_EQ(counters.ebf, 3.0F);
    EXPECT_EQ(counters.leaf_count, 0U);
    counters.leaf_count = 16;
    counters.close_iteration(true);
    EXPECT_EQ(counters.ebf, 3.0F);
    EXPECT_EQ(counters.leaf_count, 0U);
}

}  // namespace orvelin::test
