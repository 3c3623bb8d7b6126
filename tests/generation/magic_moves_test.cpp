#include "generation/magic_moves.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "support/logic_error_text.h"

namespace orvelin {

/// Reaches into the tables to damage them.
struct MagicMovesDamager {
    static std::vector<unsigned char>& bishop_index(MagicMoves& moves, std::size_t square) {
        return moves.bishop_index_[square];
    }
    static std::vector<unsigned char>& rook_index(MagicMoves& moves, std::size_t square) {
        return moves.rook_index_[square];
    }
    static std::vector<BitBoard>& magic_bishop_moves(MagicMoves& moves, std::size_t square) {
        return moves.magic_bishop_moves_[square];
    }
    static std::vector<BitBoard>& bishop_attacks(MagicMoves& moves, std::size_t square) {
        return moves.bishop_attacks_[square];
    }
    static std::vector<BitBoard>& rook_attacks(MagicMoves& moves, std::size_t square) {
        return moves.rook_attacks_[square];
    }
    static void index_bishops(MagicMoves& moves) { moves.index_bishops(); }
    static void index_rooks(MagicMoves& moves) { moves.index_rooks(); }
};

}  // namespace orvelin

namespace orvelin::test {

namespace {

/// The tables as the engine has them.
MagicMoves const& built_magic_moves() {
    static MagicMoves const moves;
    return moves;
}

/// The tables with the working tables kept.
MagicMoves const& built_with_raw_tables() {
    static MagicMoves const moves(true);
    return moves;
}

std::string selftest_output(MagicMoves const& moves, bool expected) {
    testing::internal::CaptureStdout();
    bool const ok = moves.selftest_ok();
    std::string const output = testing::internal::GetCapturedStdout();
    EXPECT_EQ(ok, expected);
    return output;
}

std::string hexadecimal(BitBoard const& set) {
    char text[17];
    std::snprintf(text, sizeof(text), "%llx", static_cast<unsigned long long>(to_ull(set)));
    return text;
}

}  // namespace

TEST(MagicMoves, LookUpEqualsTheRayWalkForEverySubsetOfEveryMask) {
    MagicMoves const& moves = built_magic_moves();
    for (int s = 0; s < 64; ++s) {
        Square const square(s);
        for (BitBoard const& set :
             MagicMoves::possible_occupancies(moves.rook_masks().get_mask(square))) {
            ASSERT_TRUE(moves.rook(square, set) == MagicMoves::rook_moves(square, set)) << s;
        }
        for (BitBoard const& set :
             MagicMoves::possible_occupancies(moves.bishop_masks().get_mask(square))) {
            ASSERT_TRUE(moves.bishop(square, set) == MagicMoves::bishop_moves(square, set)) << s;
        }
    }
}

TEST(MagicMoves, OccupancyOutsideTheMaskDoesNotCount) {
    MagicMoves const& moves = built_magic_moves();
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        Square const square(static_cast<int>(random() % 64));
        BitBoard const occupied = BitBoard(random() & random()) | square.bitboard();
        BitBoard const& rook_mask = moves.rook_masks().get_mask(square);
        BitBoard const& bishop_mask = moves.bishop_masks().get_mask(square);
        ASSERT_EQ(moves.rook(square, occupied), moves.rook(square, occupied & rook_mask));
        ASSERT_EQ(moves.bishop(square, occupied), moves.bishop(square, occupied & bishop_mask));
        ASSERT_EQ(moves.rook(square, occupied), MagicMoves::rook_moves(square, occupied));
        ASSERT_EQ(moves.bishop(square, occupied), MagicMoves::bishop_moves(square, occupied));
    }
}

TEST(MagicMoves, EveryIndexIsBelowTheSizeOfItsList) {
    for (int s = 0; s < 64; ++s) {
        for (unsigned char const i : built_magic_moves().bishop_index(s)) {
            ASSERT_LT(i, built_magic_moves().bishop_attacks(s).size()) << s;
        }
        for (unsigned char const i : built_magic_moves().rook_index(s)) {
            ASSERT_LT(i, built_magic_moves().rook_attacks(s).size()) << s;
        }
    }
}

TEST(MagicMoves, IndexTablesAreAsLongAsTheShiftSays) {
    std::size_t bishop_bytes = 0;
    std::size_t rook_bytes = 0;
    for (int s = 0; s < 64; ++s) {
        MagicNumber const& numbers = built_magic_moves().magic_numbers();
        EXPECT_EQ(built_magic_moves().bishop_index(s).size(),
                  std::size_t{1} << (64 - numbers.bishop(s).shift));
        EXPECT_EQ(built_magic_moves().rook_index(s).size(),
                  std::size_t{1} << (64 - numbers.rook(s).shift));
        bishop_bytes += built_magic_moves().bishop_index(s).size();
        rook_bytes += built_magic_moves().rook_index(s).size();
    }
    EXPECT_EQ(bishop_bytes, 5760U);
    EXPECT_EQ(rook_bytes, 105472U);
}

TEST(MagicMoves, DistinctSetsAreAscendingAndCountedWithoutTheEmptyOne) {
    auto const count = [](std::vector<BitBoard> const& sets) {
        EXPECT_TRUE(
            std::adjacent_find(sets.begin(), sets.end(), [](BitBoard const& a, BitBoard const& b) {
                return to_ull(a) >= to_ull(b);
            }) == sets.end());
        bool const starts_empty = to_ull(sets.front()) == 0;
        return sets.size() - (starts_empty ? 1 : 0);
    };
    std::size_t bishops = 0;
    std::size_t rooks = 0;
    std::size_t most_bishops = 0;
    std::size_t most_rooks = 0;
    for (int s = 0; s < 64; ++s) {
        std::size_t const b = count(built_magic_moves().bishop_attacks(s));
        std::size_t const r = count(built_magic_moves().rook_attacks(s));
        bishops += b;
        rooks += r;
        most_bishops = std::max(most_bishops, b);
        most_rooks = std::max(most_rooks, r);
    }
    EXPECT_EQ(bishops, 1428U);
    EXPECT_EQ(rooks, 4900U);
    EXPECT_EQ(most_bishops, 108U);
    EXPECT_EQ(most_rooks, 144U);
}

TEST(MagicMoves, NoSquareHasNoMoves) {
    for (BitBoard const& occupied : {BitBoard(), BitBoard(~std::uint64_t{0})}) {
        EXPECT_FALSE(built_magic_moves().bishop(Square(), occupied));
        EXPECT_FALSE(built_magic_moves().rook(Square(), occupied));
        EXPECT_FALSE(MagicMoves::bishop_moves(Square(), occupied));
        EXPECT_FALSE(MagicMoves::rook_moves(Square(), occupied));
        EXPECT_FALSE(MagicMoves::bishop_moves(Square(-1), occupied));
        EXPECT_FALSE(MagicMoves::rook_moves(Square(-1), occupied));
    }
}

TEST(MagicMoves, ReferenceWalksStopAtTheFirstMan) {
    BitBoard const occupied{Square("d6"), Square("d7"), Square("f4"), Square("b2"), Square("a1")};
    EXPECT_EQ(MagicMoves::rook_moves(Square("d4"), occupied),
              (BitBoard{Square("d5"), Square("d6"), Square("d3"), Square("d2"), Square("d1"),
                        Square("e4"), Square("f4"), Square("c4"), Square("b4"), Square("a4")}));
    EXPECT_EQ(MagicMoves::bishop_moves(Square("d4"), occupied),
              (BitBoard{Square("e5"), Square("f6"), Square("g7"), Square("h8"), Square("e3"),
                        Square("f2"), Square("g1"), Square("c5"), Square("b6"), Square("a7"),
                        Square("c3"), Square("b2")}));
}

TEST(MagicMoves, PossibleOccupanciesCountInBinary) {
    BitBoard const mask{Square("c1"), Square("a2"), Square("h8")};
    std::vector<BitBoard> const sets = MagicMoves::possible_occupancies(mask);
    ASSERT_EQ(sets.size(), 8U);
    EXPECT_FALSE(sets[0]);
    EXPECT_EQ(sets[1], BitBoard{Square("c1")});
    EXPECT_EQ(sets[2], BitBoard{Square("a2")});
    EXPECT_EQ(sets[4], BitBoard{Square("h8")});
    EXPECT_EQ(sets[5], (BitBoard{Square("c1"), Square("h8")}));
    EXPECT_EQ(sets[7], mask);
    EXPECT_EQ(MagicMoves::possible_occupancies(BitBoard()).size(), 1U);
}

TEST(MagicMoves, WorkingTablesAreDroppedToTenEmptyEntries) {
    for (int s = 0; s < 64; ++s) {
        EXPECT_EQ(built_magic_moves().magic_bishop_moves(s), std::vector<BitBoard>(10)) << s;
        EXPECT_EQ(built_magic_moves().magic_rook_moves(s), std::vector<BitBoard>(10)) << s;
    }
}

TEST(MagicMoves, ConstructedTablesHoldTheAttackSetOfEachIndex) {
    MagicMoves::raw_tables_t const bishops = built_magic_moves().construct_magic_bishop_moves();
    MagicMoves::raw_tables_t const rooks = built_magic_moves().construct_magic_rook_moves();
    for (int s = 0; s < 64; ++s) {
        auto const i = static_cast<std::size_t>(s);
        EXPECT_EQ(bishops[i], built_with_raw_tables().magic_bishop_moves(s)) << s;
        EXPECT_EQ(rooks[i], built_with_raw_tables().magic_rook_moves(s)) << s;
        EXPECT_EQ(bishops[i].size(), built_magic_moves().bishop_index(s).size()) << s;
        EXPECT_EQ(rooks[i].size(), built_magic_moves().rook_index(s).size()) << s;
    }
}

TEST(MagicMoves, SizeIsTheSumOfTheSixArrays) {
    for (MagicMoves const* moves : {&built_magic_moves(), &built_with_raw_tables()}) {
        std::size_t bytes = 0;
        for (int s = 0; s < 64; ++s) {
            bytes += 8 * moves->magic_bishop_moves(s).size() + moves->bishop_index(s).size() +
                     8 * moves->bishop_attacks(s).size() + 8 * moves->magic_rook_moves(s).size() +
                     moves->rook_index(s).size() + 8 * moves->rook_attacks(s).size();
        }
        EXPECT_EQ(moves->size(), static_cast<int>(bytes));
    }
    // Ten entries are left of each working table; a full one has a word for each index byte.
    EXPECT_EQ(built_with_raw_tables().size() - built_magic_moves().size(),
              8 * (5760 + 105472) - 2 * 64 * 10 * 8);
}

TEST(MagicMoves, SelftestPassesSilentlyOnSoundTables) {
    EXPECT_EQ(selftest_output(built_with_raw_tables(), true), "");
}

TEST(MagicMoves, SelftestReportsEqualBishopSets) {
    MagicMoves damaged(true);
    auto& sets = MagicMovesDamager::bishop_attacks(damaged, 9);
    sets[4] = sets[2];
    EXPECT_EQ(selftest_output(damaged, false),
              "\nMagicMoves::selftest_ok() error in bishopattacks   square=9   i=2   j=4\n");
}

TEST(MagicMoves, SelftestReportsEqualRookSets) {
    MagicMoves damaged(true);
    auto& sets = MagicMovesDamager::rook_attacks(damaged, 63);
    sets[7] = sets[0];
    EXPECT_EQ(selftest_output(damaged, false),
              "\nMagicMoves::selftest_ok() error in rookattacks   square=63   i=0   j=7\n");
}

TEST(MagicMoves, SelftestReportsAWrongBishopIndex) {
    MagicMoves damaged(true);
    unsigned char& index = MagicMovesDamager::bishop_index(damaged, 10)[3];
    index = index == 0 ? 1 : 0;
    EXPECT_EQ(selftest_output(damaged, false),
              "square=10\nindex=3\nmagic_bishop_moves: " +
                  hexadecimal(damaged.magic_bishop_moves(10)[3]) +
                  "\nbishop_attacks: " + hexadecimal(damaged.bishop_attacks(10)[index]) + "\n");
}

TEST(MagicMoves, SelftestReportsAWrongRookIndex) {
    MagicMoves damaged(true);
    unsigned char& index = MagicMovesDamager::rook_index(damaged, 20)[17];
    index = index == 0 ? 1 : 0;
    EXPECT_EQ(
        selftest_output(damaged, false),
        "square=20\nindex=17\nmagic_rook_moves: " + hexadecimal(damaged.magic_rook_moves(20)[17]) +
            "\nrook_attacks: " + hexadecimal(damaged.rook_attacks(20)[index]) + "\n");
}

TEST(MagicMoves, SelftestGoesBySquareBishopBeforeRook) {
    MagicMoves damaged(true);
    auto& bishops = MagicMovesDamager::bishop_attacks(damaged, 9);
    bishops[4] = bishops[2];
    auto& rooks = MagicMovesDamager::rook_attacks(damaged, 9);
    rooks[7] = rooks[0];
    EXPECT_EQ(selftest_output(damaged, false),
              "\nMagicMoves::selftest_ok() error in bishopattacks   square=9   i=2   j=4\n");
    auto& rooks_before = MagicMovesDamager::rook_attacks(damaged, 8);
    rooks_before[7] = rooks_before[0];
    EXPECT_EQ(selftest_output(damaged, false),
              "\nMagicMoves::selftest_ok() error in rookattacks   square=8   i=0   j=7\n");
}

TEST(MagicMoves, SelftestLooksForEqualSetsBeforeItLooksAtAnIndex) {
    MagicMoves damaged(true);
    unsigned char& index = MagicMovesDamager::bishop_index(damaged, 0)[0];
    index = index == 0 ? 1 : 0;
    auto& sets = MagicMovesDamager::rook_attacks(damaged, 63);
    sets[7] = sets[0];
    EXPECT_EQ(selftest_output(damaged, false),
              "\nMagicMoves::selftest_ok() error in rookattacks   square=63   i=0   j=7\n");
}

TEST(MagicMoves, SelftestLooksAtAllBishopsBeforeItLooksAtARook) {
    MagicMoves damaged(true);
    unsigned char& bishop = MagicMovesDamager::bishop_index(damaged, 63)[3];
    bishop = bishop == 0 ? 1 : 0;
    unsigned char& rook = MagicMovesDamager::rook_index(damaged, 0)[0];
    rook = rook == 0 ? 1 : 0;
    std::string const output = selftest_output(damaged, false);
    EXPECT_EQ(output.substr(0, output.find(':')), "square=63\nindex=3\nmagic_bishop_moves");
}

TEST(MagicMoves, SelftestReportsAnIndexBeyondTheList) {
    MagicMoves damaged(true);
    MagicMovesDamager::bishop_index(damaged, 10)[3] = 255;
    ASSERT_LE(damaged.bishop_attacks(10).size(), 255U);
    EXPECT_EQ(selftest_output(damaged, false), "square=10\nindex=3\nmagic_bishop_moves: " +
                                                   hexadecimal(damaged.magic_bishop_moves(10)[3]) +
                                                   "\nbishop_attacks: 0\n");
}

TEST(MagicMoves, SelftestReportsAShortWorkingTable) {
    MagicMoves damaged(true);
    MagicMovesDamager::magic_bishop_moves(damaged, 10).resize(5);
    BitBoard const& found = damaged.bishop_attacks(10)[damaged.bishop_index(10)[5]];
    ASSERT_TRUE(found);
    EXPECT_EQ(
        selftest_output(damaged, false),
        "square=10\nindex=5\nmagic_bishop_moves: 0\nbishop_attacks: " + hexadecimal(found) + "\n");
}

TEST(MagicMoves, SelftestFailsWithoutTheWorkingTables) {
    std::string const output = selftest_output(built_magic_moves(), false);
    EXPECT_EQ(output.substr(0, output.find(':')), "square=0\nindex=0\nmagic_bishop_moves");
}

TEST(MagicMoves, ConstructorRefusesABishopSetThatIsNotInTheList) {
    MagicMoves damaged(true);
    EXPECT_NO_THROW(MagicMovesDamager::index_bishops(damaged));
    MagicMovesDamager::bishop_attacks(damaged, 27).pop_back();
    EXPECT_NO_THROW(MagicMovesDamager::index_rooks(damaged));
    EXPECT_EQ(logic_error_text([&] { MagicMovesDamager::index_bishops(damaged); }),
              "MagicMoves error(1) in constructor");
}

TEST(MagicMoves, ConstructorRefusesARookSetThatIsNotInTheList) {
    MagicMoves damaged(true);
    EXPECT_NO_THROW(MagicMovesDamager::index_rooks(damaged));
    MagicMovesDamager::rook_attacks(damaged, 63).pop_back();
    EXPECT_NO_THROW(MagicMovesDamager::index_bishops(damaged));
    EXPECT_EQ(logic_error_text([&] { MagicMovesDamager::index_rooks(damaged); }),
              "MagicMoves error(2) in constructor");
}

}  // namespace orvelin::test
