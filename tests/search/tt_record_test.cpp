#include "search/tt_record.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace orvelin {
namespace {

TTmove const some_move(std::uint16_t{0x1234});

TEST(TTrecord, StartsAtZero) {
    TTrecord const record;
    EXPECT_EQ(record.get_key(), 0U);
    EXPECT_EQ(record.get_value(), 0U);
    EXPECT_TRUE(record.get_move().nomove());
    EXPECT_TRUE(record.is_upperbound());
    EXPECT_EQ(sizeof(TTrecord), 16U);
}

TEST(TTrecord, PacksItsFields) {
    TTrecord record;
    record.set_key(0x0123456789abcdefU);
    record.set_date(0xab);
    record.set_draft(0xcd);
    record.set_bound(exact_value);
    record.set_score(-2, 0);
    record.set_move(some_move);
    EXPECT_EQ(record.get_key(), 0x0123456789abcdefU);
    EXPECT_EQ(record.get_value(), 0x1234fffe02cdab00U);
    EXPECT_EQ(record.get_date(), 0xab);
    EXPECT_EQ(record.get_draft(), 0xcd);
    EXPECT_EQ(record.get_score(9), -2);
    EXPECT_EQ(record.get_move(), some_move);
}

TEST(TTrecord, BoundIsOneOfThree) {
    TTrecord upper;
    upper.set_bound(upper_bound);
    EXPECT_TRUE(upper.is_upperbound() && !upper.is_lowerbound() && !upper.is_exact_value());
    TTrecord lower;
    lower.set_bound(lower_bound);
    EXPECT_TRUE(!lower.is_upperbound() && lower.is_lowerbound() && !lower.is_exact_value());
    TTrecord exact;
    exact.set_bound(exact_value);
    EXPECT_TRUE(!exact.is_upperbound() && !exact.is_lowerbound() && exact.is_exact_value());
}

TEST(TTrecord, MateScoresAreRelativeToTheNode) {
    TTrecord record;
    record.set_score(29990, 3);
    EXPECT_EQ(record.get_score(0), 29993);
    EXPECT_EQ(record.get_score(5), 29988);
    record.set_score(-29990, 3);
    EXPECT_EQ(record.get_score(0), -29993);
    EXPECT_EQ(record.get_score(5), -29988);
}

TEST(TTrecord, OrdinaryScoresStayAsTheyAre) {
    TTrecord record;
    for (int const score : {0, 1, -1, 29897, -29897}) {
        record.set_score(score, 50);
        EXPECT_EQ(record.get_score(50), score);
        EXPECT_EQ(record.get_score(0), score);
    }
    record.set_score(29898, 2);
    EXPECT_EQ(record.get_score(0), 29900);
    record.set_score(-29898, 2);
    EXPECT_EQ(record.get_score(0), -29900);
}

TEST(TTrecord, ScoreReplacesItsFieldAndIsCutToSixteenBits) {
    TTrecord record;
    record.set_date(7);
    record.set_move(some_move);
    record.set_score(-1, 0);
    record.set_score(100, 0);
    EXPECT_EQ(record.get_value(), 0x1234006400000700U);
    record.set_score(0x12345, 0);
    EXPECT_EQ(record.get_score(0), 0x2345);
}

TEST(TTrecord, OtherSettersAddBits) {
    TTrecord record;
    record.set_date(0x05);
    record.set_date(0x0a);
    record.set_draft(0x10);
    record.set_draft(0x01);
    record.set_bound(lower_bound);
    record.set_bound(exact_value);
    record.set_move(TTmove(std::uint16_t{0x1000}));
    record.set_move(TTmove(std::uint16_t{0x0040}));
    EXPECT_EQ(record.get_value(), 0x1040000003110f00U);
}

TEST(TTrecord, ClearZeroesBothWords) {
    TTrecord record;
    record.set_key(1);
    record.set_value(2);
    record.clear();
    EXPECT_EQ(record, TTrecord());
}

TEST(TTrecord, ComparesBothWords) {
    TTrecord record;
    record.set_key(1);
    record.set_value(2);
    TTrecord other(record);
    EXPECT_TRUE(record == other);
    other.set_key(3);
    EXPECT_TRUE(record != other);
    other = record;
    other.set_value(4);
    EXPECT_TRUE(record != other);
}

TEST(TTrecord, AssignmentKeepsTheMoveOfTheSameKey) {
    TTrecord target;
    target.set_key(5);
    target.set_move(some_move);
    target.set_draft(9);
    TTrecord moveless;
    moveless.set_key(5);
    moveless.set_draft(2);
    moveless.set_date(3);
    target = moveless;
    EXPECT_EQ(target.get_value(), 0x1234000000020300U);

    TTrecord with_move;
    with_move.set_key(5);
    with_move.set_move(TTmove(std::uint16_t{0x4321}));
    target = with_move;
    EXPECT_EQ(target.get_value(), 0x4321000000000000U);
}

TEST(TTrecord, AssignmentOfAnotherKeyTakesEverything) {
    TTrecord target;
    target.set_key(5);
    target.set_move(some_move);
    TTrecord moveless;
    moveless.set_key(6);
    moveless.set_date(3);
    target = moveless;
    EXPECT_EQ(target.get_key(), 6U);
    EXPECT_EQ(target.get_value(), 0x300U);
}

}  // namespace
}  // namespace orvelin
