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

TEST(Distance, larger_of_file_and_rank_difference_for_every_pair) {
    Distance const distance;
    for (int from = 0; from < 64; ++from) {
        for (int to = 0; to < 64; ++to) {
            ASSERT_EQ(distance(Square(from), Square(to)), king_steps(from, to))
                << from << ' ' << to;
        }
    }
}

TEST(Distance, to_a_set_of_one_square_is_the_distance_to_the_square) {
    Distance const distance;
    for (int from = 0; from < 64; ++from) {
        for (int to = 0; to < 64; ++to) {
            ASSERT_EQ(distance(Square(from), Square(to).bitboard()), king_steps(from, to));
        }
    }
}

TEST(Distance, to_a_set_is_the_least_distance_to_a_member) {
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

TEST(Distance, empty_set_is_eight_away) {
    Distance const distance;
    for (int from = 0; from < 64; ++from) {
        EXPECT_EQ(distance(Square(from), BitBoard()), 8);
    }
}

TEST(Distance, no_square_is_eight_away_from_everything) {
    Distance const distance;
    EXPECT_EQ(distance(Square(), Square(0)), 8);
    EXPECT_EQ(distance(Square(63), Square()), 8);
    EXPECT_EQ(distance(Square(), Square()), 8);
    EXPECT_EQ(distance(Square(), ~BitBoard()), 8);
}

}  // namespace

}  // namespace orvelin::test
