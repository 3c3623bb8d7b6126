#include "generation/magic_number.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <map>

#include "generation/bishop_mask.h"
#include "generation/magic_moves.h"
#include "generation/rook_mask.h"

namespace orvelin::test {

namespace {

constexpr std::uint32_t bishop_shifts[64] = {58, 59, 59, 59, 59, 59, 59, 58,  //
                                             59, 59, 59, 59, 59, 59, 59, 59,  //
                                             59, 59, 57, 57, 57, 57, 59, 59,  //
                                             59, 59, 57, 54, 55, 57, 59, 59,  //
                                             59, 59, 57, 55, 55, 57, 59, 59,  //
                                             59, 59, 57, 57, 57, 57, 59, 59,  //
                                             59, 59, 59, 59, 59, 59, 59, 59,  //
                                             58, 59, 59, 59, 59, 59, 59, 58};

constexpr std::uint32_t rook_shifts[64] = {52, 53, 53, 53, 53, 53, 53, 52,  //
                                           53, 54, 54, 54, 54, 54, 54, 53,  //
                                           53, 54, 54, 54, 54, 54, 54, 53,  //
                                           53, 54, 54, 54, 54, 54, 54, 53,  //
                                           53, 54, 54, 54, 54, 54, 54, 53,  //
                                           53, 54, 54, 54, 54, 53, 54, 53,  //
                                           53, 54, 54, 54, 54, 54, 54, 53,  //
                                           52, 53, 53, 53, 52, 53, 53, 52};

constexpr int d4 = 27;
constexpr int f6 = 45;
constexpr int e8 = 60;

}  // namespace

TEST(MagicNumber, ShiftsAreTheStatedOnes) {
    MagicNumber const numbers;
    for (int s = 0; s < 64; ++s) {
        EXPECT_EQ(numbers.bishop(s).shift, bishop_shifts[s]) << s;
        EXPECT_EQ(numbers.rook(s).shift, rook_shifts[s]) << s;
    }
}

TEST(MagicNumber, IndexIsAsWideAsTheMaskButForThreeSquares) {
    MagicNumber const numbers;
    BishopMask const bishops;
    RookMask const rooks;
    for (int s = 0; s < 64; ++s) {
        int const bishop_bits = 64 - static_cast<int>(numbers.bishop(s).shift);
        int const rook_bits = 64 - static_cast<int>(numbers.rook(s).shift);
        EXPECT_EQ(bishop_bits - bishops.get_mask(Square(s)).popcount(), s == d4 ? 1 : 0) << s;
        EXPECT_EQ(rook_bits - rooks.get_mask(Square(s)).popcount(), s == f6 || s == e8 ? 1 : 0)
            << s;
    }
}

TEST(MagicNumber, GivenMultipliersStandAsTheyAre) {
    struct row_t {
        int square;
        std::uint64_t bishop;
        std::uint64_t rook;
    };
    constexpr row_t rows[5] = {{0, 0x014501040C040041, 0x108001228011C002},
                               {1, 0x000921040C004602, 0xA04010004004E000},
                               {27, 0x0C01001214004202, 0x092100210010010C},
                               {35, 0x5108020180080080, 0x8405080181801001},
                               {63, 0x0C40020821002482, 0x82010000820C2145}};
    MagicNumber const numbers;
    for (row_t const& row : rows) {
        EXPECT_EQ(numbers.bishop(row.square).magic, row.bishop) << row.square;
        EXPECT_EQ(numbers.rook(row.square).magic, row.rook) << row.square;
    }
}

TEST(MagicNumber, NoMultiplierMixesDifferentAttackSets) {
    MagicNumber const numbers;
    BishopMask const bishops;
    RookMask const rooks;
    for (int s = 0; s < 64; ++s) {
        Square const square(s);
        std::map<std::uint64_t, BitBoard> seen;
        magic_t const& bishop = numbers.bishop(s);
        for (BitBoard const& set : MagicMoves::possible_occupancies(bishops.get_mask(square))) {
            BitBoard const attacks = MagicMoves::bishop_moves(square, set);
            auto const found = seen.emplace((to_ull(set) * bishop.magic) >> bishop.shift, attacks);
            ASSERT_TRUE(found.first->second == attacks) << "bishop " << s;
        }
        seen.clear();
        magic_t const& rook = numbers.rook(s);
        for (BitBoard const& set : MagicMoves::possible_occupancies(rooks.get_mask(square))) {
            BitBoard const attacks = MagicMoves::rook_moves(square, set);
            auto const found = seen.emplace((to_ull(set) * rook.magic) >> rook.shift, attacks);
            ASSERT_TRUE(found.first->second == attacks) << "rook " << s;
        }
    }
}

TEST(MagicNumber, EveryRecordTakesTwoWords) {
    EXPECT_EQ(sizeof(magic_t), 16U);
}

TEST(MagicNumber, NoSquareMapsEverythingToIndexZero) {
    MagicNumber const numbers;
    for (magic_t const* number : {&numbers.bishop(64), &numbers.rook(64)}) {
        EXPECT_LT(number->shift, 64U);
        EXPECT_EQ((~std::uint64_t{0} * number->magic) >> number->shift, 0U);
    }
}

}  // namespace orvelin::test
