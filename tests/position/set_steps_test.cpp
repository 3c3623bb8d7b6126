#include "position/set_steps.h"

#include <functional>
#include <gtest/gtest.h>
#include <random>

#include "position/side.h"
#include "support/squares.h"

namespace orvelin::test {

namespace {

/// The squares of the board that have a member of the set at a place given by `related`, which
/// takes file and rank steps from the member to the square.
BitBoard found_one_by_one(BitBoard const& set, std::function<bool(int, int)> const& related) {
    BitBoard result;
    for (int to = 0; to < 64; ++to) {
        for (int from = 0; from < 64; ++from) {
            if ((set & Square(from).bitboard()) && related(to % 8 - from % 8, to / 8 - from / 8)) {
                result.set_square(Square(to));
            }
        }
    }
    return result;
}

void compare(BitBoard const& set) {
    auto const expect = [&set](BitBoard const& steps, auto related) {
        EXPECT_EQ(steps, found_one_by_one(set, related)) << set.dump();
    };
    expect(beside(set), [](int file, int rank) { return rank == 0 && (file == 1 || file == -1); });
    expect(king_block(set),
           [](int file, int rank) { return file >= -1 && file <= 1 && rank >= -1 && rank <= 1; });
    expect(fill_up(set), [](int file, int rank) { return file == 0 && rank >= 0; });
    expect(fill_down(set), [](int file, int rank) { return file == 0 && rank <= 0; });
    expect(file_fill(set), [](int file, int) { return file == 0; });
    expect(fill_ahead<side::white>(set), [](int file, int rank) { return file == 0 && rank >= 0; });
    expect(fill_ahead<side::black>(set), [](int file, int rank) { return file == 0 && rank <= 0; });
    expect(pawn_attacks<side::white>(set),
           [](int file, int rank) { return rank == 1 && (file == 1 || file == -1); });
    expect(pawn_attacks<side::black>(set),
           [](int file, int rank) { return rank == -1 && (file == 1 || file == -1); });
    for (int ranks = 0; ranks < 8; ++ranks) {
        expect(ahead<side::white>(set, ranks),
               [=](int file, int rank) { return !file && rank == ranks; });
        expect(ahead<side::black>(set, ranks),
               [=](int file, int rank) { return !file && rank == -ranks; });
    }
}

TEST(SetSteps, OfEverySingleSquare) {
    for (int id = 0; id < 64; ++id) {
        compare(Square(id).bitboard());
    }
}

TEST(SetSteps, OfNoneAndAll) {
    compare(BitBoard());
    compare(~BitBoard());
}

TEST(SetSteps, OfRandomSets) {
    std::mt19937_64 random(64);
    for (int round = 0; round < 40; ++round) {
        compare(BitBoard(random() & random()));
    }
}

TEST(SetSteps, ReadLikeThis) {
    EXPECT_EQ(beside(squares({"a4", "h5"})), squares({"b4", "g5"}));
    EXPECT_EQ(king_block(squares({"a1"})), squares({"a1", "a2", "b1", "b2"}));
    EXPECT_EQ(pawn_attacks<side::white>(squares({"a2", "h7", "e8"})), squares({"b3", "g8"}));
    EXPECT_EQ(pawn_attacks<side::black>(squares({"a7", "h2", "e1"})), squares({"b6", "g1"}));
    EXPECT_EQ(ahead<side::white>(squares({"e4"}), 2), squares({"e6"}));
    EXPECT_EQ(ahead<side::black>(squares({"e4"}), 2), squares({"e2"}));
}

}  // namespace

}  // namespace orvelin::test
