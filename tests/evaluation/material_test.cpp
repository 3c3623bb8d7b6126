#include "evaluation/material.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>

#include "evaluation/material_warmup.h"

namespace orvelin {
namespace {

// One piece of each kind in one half of the word.
constexpr std::uint64_t pawn = 0x1;
constexpr std::uint64_t knight = 0x10;
constexpr std::uint64_t bishop = 0x100;
constexpr std::uint64_t rook = 0x1000;
constexpr std::uint64_t queen = 0x10000;

constexpr std::uint64_t key_of(std::uint64_t white, std::uint64_t black) {
    return white << 32 | black;
}

int value(std::uint64_t white, std::uint64_t black) {
    static Material table;
    MaterialIndex material;
    material.set_index(key_of(white, black));
    return table.get_eval(material);
}

TEST(MaterialTest, BareKings) {
    EXPECT_EQ(value(0, 0), 0);
}

TEST(MaterialTest, StartMaterialCancels) {
    EXPECT_EQ(value(0x12228, 0x12228), 0);
}

TEST(MaterialTest, QueenAgainstRookIsFixed) {
    EXPECT_EQ(value(queen, rook), 450);
    EXPECT_EQ(value(rook, queen), -450);
}

TEST(MaterialTest, RookAgainstKnightIsInsideTheDrawnBand) {
    EXPECT_EQ(value(rook, knight), 27);
    EXPECT_EQ(value(knight, rook), -27);
}

TEST(MaterialTest, RookAgainstBishopAndPawnFavoursThePawn) {
    EXPECT_EQ(value(rook, bishop + pawn), -50);
    EXPECT_EQ(value(bishop + pawn, rook), 50);
}

TEST(MaterialTest, LoneMinorAgainstPawns) {
    EXPECT_EQ(value(knight, pawn), -50);
    EXPECT_EQ(value(pawn, knight), 50);
    EXPECT_EQ(value(knight, 3 * pawn), -65);
}

TEST(MaterialTest, BishopPairAndTradeDown) {
    EXPECT_EQ(value(2 * bishop + 4 * pawn, bishop + 4 * pawn), 480);
}

TEST(MaterialTest, ThreeBishopsGetNoPairBonus) {
    EXPECT_EQ(value(3 * bishop, 0), 975);
    EXPECT_EQ(value(2 * bishop, 0), 700);
}

TEST(MaterialTest, LoneBishop) {
    EXPECT_EQ(value(bishop, 0), 25);
}

TEST(MaterialTest, FivePawnsAgainstFour) {
    EXPECT_EQ(value(5 * pawn, 4 * pawn), 145);
}

TEST(MaterialTest, WithoutPawnsDifferentNumbersOfPiecesKeepTheSum) {
    EXPECT_EQ(value(queen + rook, rook), 1000);
    EXPECT_EQ(value(rook, queen + rook), -1000);
    EXPECT_EQ(value(queen, 2 * rook), (1000 - 2 * 525) / 10);
}

TEST(MaterialTest, WithoutPawnsAMinorPieceKeepsTheSum) {
    EXPECT_EQ(value(queen + knight, rook + knight), 1000 - 525);
    EXPECT_EQ(value(rook + bishop, queen + bishop), 525 - 1000);
}

TEST(MaterialTest, AMinorPieceAndAPawnGainNothingOfARookThatIsNotAlone) {
    EXPECT_EQ(value(bishop + pawn, rook + pawn), 250 - 525 - 10 + 10);
    EXPECT_EQ(value(bishop + pawn, rook + knight), 5 + 100 + 250 - 525 - 325);
    EXPECT_EQ(value(bishop + pawn, 2 * rook), 5 + 25 + 100 + 250 - 2 * 525);
    EXPECT_EQ(value(bishop + pawn, rook + queen), 5 + 100 + 250 - 525 - 1000);
    EXPECT_EQ(value(rook + pawn, bishop + pawn), 525 - 250 + 10 - 10);
    EXPECT_EQ(value(rook + knight, bishop + pawn), -5 - 100 - 250 + 525 + 325);
}

// The rule sets in beyond a lead of 70; the sums are multiples of five.
TEST(MaterialTest, ALeadOfExactlySeventyIsNotTradedDown) {
    EXPECT_EQ(value(queen + rook + pawn, queen + bishop + 2 * pawn), 70);
    EXPECT_EQ(value(queen + bishop + 2 * pawn, queen + rook + pawn), -70);
    EXPECT_EQ(value(3 * pawn + rook, 5 * pawn + bishop), 75 + 3 * 10 - 10);
    EXPECT_EQ(value(5 * pawn + bishop, 3 * pawn + rook), -75 - 3 * 10 + 10);
}

TEST(MaterialTest, SlotIsTheTopThirteenBitsOfTheProduct) {
    EXPECT_EQ(Material::slot(0), 0U);
    EXPECT_EQ(Material::slot(1), 0x188465003482008ULL >> 51);
    for (tp_row_t const& row : tp) {
        std::uint64_t const product = row.key * 0x188465003482008ULL;
        EXPECT_EQ(Material::slot(row.key), product / (1ULL << 51));
        EXPECT_LT(Material::slot(row.key), Material::size);
    }
}

TEST(MaterialTest, WarmUpRowsFallIntoDifferentSlots) {
    ASSERT_EQ(tp.size(), 1000U);
    EXPECT_EQ(sizeof(tp), 16000U);
    std::set<std::size_t> slots;
    for (tp_row_t const& row : tp) {
        slots.insert(Material::slot(row.key));
    }
    EXPECT_EQ(slots.size(), 1000U);
}

TEST(MaterialTest, WarmUpRowsHoldTheTellingConfigurations) {
    for (std::uint64_t const wanted : {0x100000000ULL, 0x100000001ULL, 0x100000001000ULL,
                                       0x1212800012128ULL, 0x212600002215ULL}) {
        EXPECT_TRUE(std::any_of(tp.begin(), tp.end(), [wanted](tp_row_t const& row) {
            return row.key == wanted;
        })) << wanted;
    }
    EXPECT_EQ(tp.back().key, 0U);
}

TEST(MaterialTest, WarmUpRowsAreConfigurationsOfAGame) {
    for (tp_row_t const& row : tp) {
        EXPECT_EQ(row.key & 0xFFF00000FFF00000ULL, 0U) << std::hex << row.key;
        EXPECT_LE(row.key & 0xF, 8U);
        EXPECT_LE(row.key >> 32 & 0xF, 8U);
    }
}

// The text of a fresh table shows that each row was stored under its key with its value.
TEST(MaterialTest, DumpListsTheWarmUpRowsInSlotOrder) {
    Material const table;
    std::istringstream lines(table.dump());
    std::string line;
    std::size_t count = 0;
    std::size_t last_slot = 0;
    while (std::getline(lines, line)) {
        std::uint64_t const index = std::stoull(line.substr(1));
        MaterialIndex material;
        material.set_index(index);
        EXPECT_GT(Material::slot(index), last_slot);
        last_slot = Material::slot(index);
        EXPECT_EQ(line, "{" + std::to_string(index) + "," + std::to_string(material.value()) +
                            "},\t\t// " + material.str());
        ++count;
    }
    // Bare kings have key 0, which marks an empty slot.
    EXPECT_EQ(count, 999U);
}

TEST(MaterialTest, DumpLineOfAQueenAgainstARook) {
    Material table;
    MaterialIndex material;
    material.set_index(key_of(queen, rook));
    EXPECT_EQ(table.get_eval(material), 450);
    EXPECT_NE(table.dump().find("{281474976714752,450},\t\t// KQkr\n"), std::string::npos);
}

TEST(MaterialTest, AMissOverwritesTheSlot) {
    Material table;
    // Two configurations of one slot, by search: what the table holds is always the last one.
    std::uint64_t const first = key_of(queen + 2 * rook + 8 * pawn, queen + rook);
    std::uint64_t second = 0;
    for (std::uint64_t white = 1; white < 0x33333 && second == 0; ++white) {
        if ((white & 0xF) <= 8 && key_of(white, 5 * pawn) != first &&
            Material::slot(key_of(white, 5 * pawn)) == Material::slot(first)) {
            second = key_of(white, 5 * pawn);
        }
    }
    ASSERT_NE(second, 0U);

    std::string const first_text = "{" + std::to_string(first) + ",";
    std::string const second_text = "{" + std::to_string(second) + ",";
    for (int round = 0; round < 2; ++round) {
        MaterialIndex material;
        material.set_index(first);
        EXPECT_EQ(table.get_eval(material), material.value());
        EXPECT_NE(table.dump().find(first_text), std::string::npos);
        EXPECT_EQ(table.dump().find(second_text), std::string::npos);
        material.set_index(second);
        EXPECT_EQ(table.get_eval(material), material.value());
        EXPECT_EQ(table.get_eval(material), material.value());
        EXPECT_EQ(table.dump().find(first_text), std::string::npos);
        EXPECT_NE(table.dump().find(second_text), std::string::npos);
    }
}

}  // namespace
}  // namespace orvelin
