#include "evaluation/distance.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

namespace orvelin::test {

namespace {

int king_steps(int from, int to) {
    return std::max(std::abs(from % 8 - to % 8), std::abs(from / 8 - to / 8));
}

TEST(Distance, LargerOfFileAndRankDifferenceForEveryPair) {
    Distance const distance;
    for (int from = 0; from < 64; ++from) {
        for (int to = 0; to < 64; ++to) {
            ASSERT_EQ(distance(Square(from), Square(to)), king_steps(from, to))
                << from << ' ' << to;
        }
    }
}

TEST(Distance, ToASetOfOneSquareIsTheDistanceToTheSquare) {
    Distance const distance;
    for (int from = 0; from < 64; ++from) {
        for (int to = 0; to < 64; ++to) {
            ASSERT_EQ(distance(Square(from), Square(to).bitboard()), king_steps(from, to));
        }
    }
}

TEST(Distance, ToASetIsTheLeastDistanceToAMember) {
    Distance const distance;
    std::mt19937_64 random(7);
    for (int round = 0; round < 200; ++round) {
        BitBoard const set(random() & (random() >> 1) & (random() << 1));
        for (int from = 0; from < 64; ++from) {
            int least = 8;
            for (Square const& member : set.get_squares()) {
                least = std::min(least, king_steps(from, member.id()));
            }
            ASSERT_EQ(distance(Square(from), set), least);
        }
    }
}

TEST(Distance, EmptySetIsEightAway) {
    Distance const distance;
    for (int from = 0; from < 64; ++from) {
        EXPECT_EQ(distance(Square(from), BitBoard()), 8);
    }
}

TEST(Distance, NoSquareIsEightAwayFromEverything) {
    Distance const distance;
    EXPECT_EQ(distance(Square(), Square(0)), 8);
    EXPECT_EQ(distance(Square(63), Square()), 8);
    EXPECT_EQ(distance(Square(), Square()), 8);
    EXPECT_EQ(distance(Square(), ~BitBoard()), 8);
}

}  // namespace

}  // namespace orvelin::test
