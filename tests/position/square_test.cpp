#include "position/square.h"

#include <gtest/gtest.h>

#include "position/bit_board.h"
#include "position/masks.h"
#include "support/logic_error_text.h"

namespace orvelin {
namespace {

using test::logic_error_text;

TEST(Square, DefaultIsNoSquareWithAnEmptySet) {
    EXPECT_EQ(Square().id(), 64);
    EXPECT_EQ(to_ull(Square::bb[64]), 0U);
    EXPECT_EQ(BitBoard().get_first_square(), Square());
    EXPECT_EQ(Square().name(), "no_square");
}

TEST(Square, TableOfSetsHoldsOneBitForEachSquare) {
    ASSERT_EQ(Square::bb.size(), 65U);
    std::uint64_t bit = 1;
    for (std::size_t i = 0; i < 64; ++i, bit *= 2) {
        EXPECT_EQ(to_ull(Square::bb[i]), bit) << i;
    }
    EXPECT_EQ(&Square(17).bitboard(), &Square::bb[17]);
    EXPECT_EQ(&Square().bitboard(), &Square::bb[64]);
}

TEST(Square, NumbersFilesAndRanksFromA1) {
    for (int rank = 0; rank < 8; ++rank) {
        for (int file = 0; file < 8; ++file) {
            const std::string name{"abcdefgh"[file], "12345678"[rank]};
            const Square square(name);
            EXPECT_EQ(square.id(), 8 * rank + file);
            EXPECT_EQ(square.file(), name[0]);
            EXPECT_EQ(square.rank(), name[1]);
            EXPECT_EQ(square.file_number(), file);
            EXPECT_EQ(square.rank_number(), rank);
            EXPECT_EQ(square.name(), name);
        }
    }
}

TEST(Square, NoSquareHasFileAAndRankNine) {
    EXPECT_EQ(Square().file(), 'a');
    EXPECT_EQ(Square().rank(), '9');
    EXPECT_EQ(Square().file_number(), 0);
    EXPECT_EQ(Square().rank_number(), 8);
}

TEST(Square, ColorIsOneOnLightSquares) {
    for (int i = 0; i < 64; ++i) {
        bool const light = static_cast<bool>(white_squares & Square(i).bitboard());
        EXPECT_EQ(Square(i).color(), light ? 1 : 0) << i;
    }
    EXPECT_EQ(Square("a1").color(), 0);
    EXPECT_EQ(Square("b1").color(), 1);
    for (int const off_board : {64, 65, 66, 71, 72, 1001, -1, -2, -64}) {
        EXPECT_EQ(Square(off_board).color(), 0) << off_board;
    }
}

TEST(Square, ReadsTextAndTestsOnlyTheIdItAddsUpTo) {
    EXPECT_EQ(Square("h8").id(), 63);
    EXPECT_EQ(Square("i1").name(), "a2");
    EXPECT_EQ(Square("A5").id(), 0);
}

TEST(Square, RefusesTextOfWrongLength) {
    const std::string expected = "Square::Square(string)  size() error";
    for (char const* text : {"", "a", "e44"}) {
        EXPECT_EQ(logic_error_text([&] { Square{std::string(text)}; }), expected) << text;
    }
}

TEST(Square, RefusesTextOutsideTheBoard) {
    const std::string expected = "Square::Square(string)  out of range";
    for (char const* text : {"a0", "a9", "i8", "`1", "\xff\xff", "\x80\x7f",
                             "\x80"
                             "1"}) {
        EXPECT_EQ(logic_error_text([&] { Square{std::string(text)}; }), expected) << text;
    }
}

// Characters count as signed numbers, whatever the machine takes a char for.
TEST(Square, TextBeyondAsciiIsReadInSignedArithmetic) {
    EXPECT_EQ(Square("\xe1"
                     "A")
                  .id(),
              0);
}

TEST(Square, RefusesToNameIdsOutsideTheTable) {
    EXPECT_EQ(logic_error_text([] { (void)Square(65).name(); }), "Square::name()const msquare=65");
    EXPECT_EQ(logic_error_text([] { (void)Square(-1).name(); }), "Square::name()const msquare=-1");
}

TEST(Square, StoresAnyIdAsItIs) {
    EXPECT_EQ(Square(-3).id(), -3);
    EXPECT_EQ(Square(1000).id(), 1000);
}

TEST(Square, IndexIsTheIdForArrays) {
    for (int i = 0; i <= 64; ++i) {
        EXPECT_EQ(index(Square(i)), static_cast<std::size_t>(i));
    }
}

TEST(Square, ComparesSignedIds) {
    const Square low(-1);
    const Square high(5);
    EXPECT_TRUE(low < high);
    EXPECT_TRUE(high > low);
    EXPECT_TRUE(low <= high);
    EXPECT_TRUE(high >= high);
    EXPECT_TRUE(low != high);
    EXPECT_TRUE(high == Square(5));
    EXPECT_FALSE(high <= low);
    EXPECT_FALSE(low >= high);
}

TEST(Square, StepsByInteger) {
    Square square(10);
    EXPECT_EQ((square += 5).id(), 15);
    EXPECT_EQ((square -= 7).id(), 8);
    EXPECT_EQ((++square).id(), 9);
    EXPECT_EQ((square++).id(), 9);
    EXPECT_EQ((square--).id(), 10);
    EXPECT_EQ((--square).id(), 8);
    EXPECT_EQ((square + 8).id(), 16);
    EXPECT_EQ((8 + square).id(), 16);
    EXPECT_EQ((square - 3).id(), 5);
    EXPECT_EQ(Square(20) - Square(31), -11);
}

TEST(Square, IntegerMinusSquareIsSquareMinusInteger) {
    EXPECT_EQ((3 - Square(20)).id(), 17);
}

TEST(Square, FlipAndFlopMirror) {
    EXPECT_EQ(flip(Square("e2")).name(), "e7");
    EXPECT_EQ(flop(Square("e2")).name(), "d2");
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(flip(flip(Square(i))).id(), i);
        EXPECT_EQ(flop(flop(Square(i))).id(), i);
        EXPECT_EQ(flip(Square(i)).id(), 8 * (7 - i / 8) + i % 8);
        EXPECT_EQ(flop(Square(i)).id(), 8 * (i / 8) + 7 - i % 8);
    }
}

static_assert(sizeof(Square) == 4);

}  // namespace
}  // namespace orvelin
