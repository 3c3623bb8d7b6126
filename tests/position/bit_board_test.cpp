#include "position/bit_board.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

namespace orvelin {
namespace {

constexpr std::uint64_t full = 0xFFFFFFFFFFFFFFFF;
constexpr int random_words = 2000;

/// Lowest set bit by trial, 64 for none.
int lowest(std::uint64_t word) {
    int id = 0;
    while (id < 64 && ((word >> id) & 1) == 0) {
        ++id;
    }
    return id;
}

int count(std::uint64_t word) {
    int bits = 0;
    for (int i = 0; i < 64; ++i) {
        bits += static_cast<int>((word >> i) & 1);
    }
    return bits;
}

TEST(BitBoard, ScanTableComesFromTheMultiplier) {
    std::array<int, 128> expected{};
    std::set<std::uint64_t> used;
    for (int i = 0; i < 64; ++i) {
        const std::uint64_t entry = (0x0DB8F3FB14C8C21DULL << i) >> 57;
        used.insert(entry);
        expected[entry] = i;
    }
    EXPECT_EQ(used.size(), 64U);
    EXPECT_FALSE(used.contains(0));
    expected[0] = 64;
    for (std::size_t i = 0; i < 128; ++i) {
        EXPECT_EQ(int{BitBoard::m_first_square_id[i]}, expected[i]) << i;
    }
}

TEST(BitBoard, CountTableHoldsTheBitsOfItsIndex) {
    ASSERT_EQ(BitBoard::m_popcnt16.size(), 65536U);
    for (std::size_t i = 0; i < 65536; ++i) {
        ASSERT_EQ(int{BitBoard::m_popcnt16[i]}, count(i)) << i;
    }
}

TEST(BitBoard, DefaultIsEmpty) {
    EXPECT_EQ(to_ull(BitBoard()), 0U);
    EXPECT_FALSE(static_cast<bool>(BitBoard()));
    EXPECT_EQ(BitBoard().get_first_square().id(), 64);
    EXPECT_EQ(BitBoard().get_unique_square().id(), 64);
    EXPECT_EQ(BitBoard().popcount(), 0);
}

TEST(BitBoard, FirstSquareOfH8AndCountOfAFullBoard) {
    EXPECT_EQ(BitBoard({Square("h8")}).get_first_square().id(), 63);
    EXPECT_EQ(BitBoard(full).popcount(), 64);
    EXPECT_EQ(BitBoard(full).get_first_square().id(), 0);
}

TEST(BitBoard, SquareListIsTakenModulo64) {
    EXPECT_EQ(to_ull(BitBoard({Square(0), Square(63)})), 0x8000000000000001U);
    EXPECT_EQ(to_ull(BitBoard({Square(), Square(64 + 5)})), 0x21U);
}

TEST(BitBoard, ScanAndCountAgreeWithTrial) {
    std::mt19937_64 random(1);
    for (int i = 0; i < random_words; ++i) {
        const std::uint64_t word = random() & random();
        const BitBoard board(word);
        EXPECT_EQ(board.get_first_square().id(), lowest(word));
        EXPECT_EQ(board.popcount(), count(word));
        EXPECT_EQ(BitBoard::popcount(word), count(word));
        BitBoard rest = board;
        EXPECT_EQ(rest.take_first_square().id(), lowest(word));
        EXPECT_EQ(to_ull(rest), word & (word - 1));
    }
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(Square(i).bitboard().get_unique_square().id(), i);
    }
}

TEST(BitBoard, SetsAndResetsSquares) {
    BitBoard board;
    board.set_square(Square("c3"));
    board.set_square(Square("h8"));
    board.set_square(Square());
    EXPECT_EQ(to_ull(board), 0x8000000000040000U);
    board.reset_square(Square("h8"));
    board.reset_square(Square("a1"));
    board.reset_square(Square());
    EXPECT_EQ(to_ull(board), 0x40000U);
    board.clear();
    EXPECT_FALSE(static_cast<bool>(board));
}

TEST(BitBoard, ResetSquareTakesTheLowestOut) {
    BitBoard board({Square("b1"), Square("c5")});
    EXPECT_EQ(board.get_reset_square(), Square("b1").bitboard());
    EXPECT_EQ(board, Square("c5").bitboard());
    EXPECT_EQ(board.get_reset_square(), Square("c5").bitboard());
    EXPECT_EQ(board, BitBoard());
}

TEST(BitBoard, ResetSquareOfAnEmptySetIsEmpty) {
    BitBoard board;
    EXPECT_EQ(board.get_reset_square(), BitBoard());
    EXPECT_EQ(board, BitBoard());
}

TEST(BitBoard, TakingSquaresGivesThemInOrderAndThenNone) {
    BitBoard board({Square("h8"), Square("b1"), Square("a1")});
    EXPECT_EQ(board.take_first_square(), Square("a1"));
    EXPECT_EQ(board.take_first_square(), Square("b1"));
    EXPECT_EQ(board, Square("h8").bitboard());
    EXPECT_EQ(board.take_first_square(), Square("h8"));
    EXPECT_EQ(board.take_first_square(), Square());
    EXPECT_EQ(board, BitBoard());
}

TEST(BitBoard, ResetSquareOfARawWordReturnsTheId) {
    std::uint64_t word = 0x8000000000000002;
    EXPECT_EQ(BitBoard::get_reset_square(word), 1);
    EXPECT_EQ(word, 0x8000000000000000U);
    EXPECT_EQ(BitBoard::get_reset_square(word), 63);
    EXPECT_EQ(word, 0U);
    EXPECT_EQ(BitBoard::get_reset_square(word), 64);
    EXPECT_EQ(word, 0U);
}

TEST(BitBoard, SquaresAscend) {
    const std::vector<Square> expected{Square("h1"), Square("a2"), Square("d5"), Square("h8")};
    EXPECT_EQ(BitBoard({Square("h8"), Square("d5"), Square("a2"), Square("h1")}).get_squares(),
              expected);
    EXPECT_TRUE(BitBoard().get_squares().empty());
    EXPECT_EQ(BitBoard(full).get_squares().size(), 64U);
}

TEST(BitBoard, FlipAndFlopMirrorEverySquare) {
    for (int i = 0; i < 64; ++i) {
        BitBoard flipped = Square(i).bitboard();
        flipped.flip();
        EXPECT_EQ(flipped, orvelin::flip(Square(i)).bitboard()) << i;
        BitBoard flopped = Square(i).bitboard();
        flopped.flop();
        EXPECT_EQ(flopped, orvelin::flop(Square(i)).bitboard()) << i;
    }
}

TEST(BitBoard, FlipTwiceAndFlopTwiceAreTheIdentity) {
    std::mt19937_64 random(2);
    for (int i = 0; i < random_words; ++i) {
        const BitBoard before(random());
        BitBoard board = before;
        board.flip();
        board.flip();
        EXPECT_EQ(board, before);
        board.flop();
        board.flop();
        EXPECT_EQ(board, before);
    }
}

TEST(BitBoard, ComparesUnsignedWords) {
    const BitBoard low(1);
    const BitBoard high(0x8000000000000000);
    EXPECT_TRUE(low < high);
    EXPECT_TRUE(high > low);
    EXPECT_FALSE(low > high);
    EXPECT_TRUE(low != high);
    EXPECT_TRUE(low == BitBoard(1));
}

TEST(BitBoard, SetOperations) {
    const BitBoard left(0xF0F0);
    const BitBoard right(0xFF00);
    EXPECT_EQ(to_ull(left & right), 0xF000U);
    EXPECT_EQ(to_ull(left | right), 0xFFF0U);
    EXPECT_EQ(to_ull(left ^ right), 0x0FF0U);
    EXPECT_EQ(to_ull(~left), 0xFFFFFFFFFFFF0F0FU);
    BitBoard board = left;
    EXPECT_EQ(to_ull(board &= right), 0xF000U);
    EXPECT_EQ(to_ull(board |= BitBoard(1)), 0xF001U);
    EXPECT_EQ(to_ull(board ^= BitBoard(3)), 0xF002U);
    EXPECT_EQ(to_ull(board &= std::uint64_t{0x3002}), 0x3002U);
    EXPECT_EQ(to_ull(board |= std::uint64_t{0x10}), 0x3012U);
    EXPECT_EQ(to_ull(board ^= std::uint64_t{0x2}), 0x3010U);
}

TEST(BitBoard, ShiftsAreLogical) {
    EXPECT_EQ(to_ull(BitBoard(full) >> 63), 1U);
    EXPECT_EQ(to_ull(BitBoard(full) << 63), 0x8000000000000000U);
    BitBoard board(0x8000000000000001);
    EXPECT_EQ(to_ull(board >>= 1), 0x4000000000000000U);
    EXPECT_EQ(to_ull(board <<= 1), 0x8000000000000000U);
}

TEST(BitBoard, DumpAndWriteShowRankEightFirst) {
    const BitBoard board({Square("a1"), Square("h1"), Square("b7")});
    const std::string expected =
        "0002000000000081\n"
        "00000000\n"
        "01000000\n"
        "00000000\n"
        "00000000\n"
        "00000000\n"
        "00000000\n"
        "00000000\n"
        "10000001\n";
    EXPECT_EQ(board.dump(), expected);
    testing::internal::CaptureStdout();
    board.write();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\n" + expected);
    EXPECT_EQ(BitBoard(0xABCDEF0000000000).dump().substr(0, 17), "abcdef0000000000\n");
}

static_assert(sizeof(BitBoard) == 8);

// The whole word is multiplied, so that the answer for two kings is fixed too.
TEST(BitBoard, UniqueSquareMultipliesTheWordAsItStands) {
    int others = 0;
    for (int low = 0; low < 63; ++low) {
        const BitBoard pair({Square(low), Square(63)});
        const std::uint64_t product = to_ull(pair) * 0x0DB8F3FB14C8C21D;
        const Square unique = pair.get_unique_square();
        EXPECT_EQ(unique.id(), BitBoard::m_first_square_id[product >> 57]) << low;
        others += unique == pair.get_first_square() ? 0 : 1;
    }
    EXPECT_GT(others, 0);
}

}  // namespace
}  // namespace orvelin
