#include "evaluation/pht_record.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "position/masks.h"
#include "support/squares.h"

namespace orvelin::test {

namespace {

PHTrecord analysed(std::vector<std::string> const& white, std::vector<std::string> const& black) {
    PHTrecord record;
    record.set_pawns(squares(white), squares(black));
    return record;
}

/// What the record holds for one side, found square by square on a board where that side moves up.
struct Expected {
    explicit Expected(BitBoard const& own, BitBoard const& enemy) : own_(own), enemy_(enemy) {
        for (int id = 0; id < 64; ++id) {
            if (!holds(own_, id % 8, id / 8)) {
                continue;
            }
            add_pawn(id % 8, id / 8);
        }
        for (int id = 0; id < 64; ++id) {
            add_square(id % 8, id / 8);
        }
        add_connected();
        bool previous = false;
        for (int file = 0; file < 8; ++file) {
            bool const present = file_has(own_, file);
            islands += present && !previous ? 1 : 0;
            previous = present;
        }
    }

    static bool holds(BitBoard const& set, int file, int rank) {
        if (file < 0 || file > 7 || rank < 0 || rank > 7) {
            return false;
        }
        return static_cast<bool>(set & Square(file + 8 * rank).bitboard());
    }
    static bool file_has(BitBoard const& set, int file) {
        for (int rank = 0; rank < 8; ++rank) {
            if (holds(set, file, rank)) {
                return true;
            }
        }
        return false;
    }
    static int value(int rank) { return rank >= 3 && rank <= 6 ? 25 << (rank - 3) : 0; }

    void add_pawn(int file, int rank) {
        Square const square(file + 8 * rank);
        bool friend_beside = false;
        bool held = false;
        for (int r = 0; r < 8; ++r) {
            for (int f = file - 1; f <= file + 1; ++f) {
                if (f != file && r <= rank && holds(own_, f, r)) {
                    friend_beside = true;
                }
                if (r > rank && holds(enemy_, f, r)) {
                    held = true;
                }
            }
        }
        if (!friend_beside) {
            weak.set_square(square);
        }
        if (!held) {
            passed.set_square(square);
        }
        if (!file_has(own_, file - 1) && !file_has(own_, file + 1)) {
            ++isolated;
        }
        bool second = false;
        for (int r = rank + 1; r <= rank + 4; ++r) {
            second = second || holds(own_, file, r);
        }
        doubled += second ? 1 : 0;
        rookpawns += file == 0 || file == 7 ? 1 : 0;
    }

    void add_square(int file, int rank) {
        Square const square(file + 8 * rank);
        if (!file_has(own_, file)) {
            open_files.set_square(square);
        }
        if (holds(passed, file, rank - 1)) {
            stop.set_square(square);
        }
        for (int r = rank - 7; r <= rank - 2; ++r) {
            if (holds(passed, file, r)) {
                ahead.set_square(square);
            }
        }
        if (file_has(passed, file) && !holds(passed, file, rank) && !holds(stop, file, rank) &&
            !holds(ahead, file, rank)) {
            behind.set_square(square);
        }
    }

    void add_connected() {
        for (int id = 0; id < 64; ++id) {
            int const file = id % 8;
            if (!holds(passed, file, id / 8)) {
                continue;
            }
            bool const connected = file_has(passed, file - 1) || file_has(passed, file + 1);
            passer_score += value(id / 8) * (connected ? 2 : 1);
        }
    }

    BitBoard own_;
    BitBoard enemy_;
    BitBoard passed, stop, ahead, behind, weak, open_files;
    int passer_score = 0;
    int doubled = 0;
    int isolated = 0;
    int islands = 0;
    int rookpawns = 0;
};

BitBoard mirrored(BitBoard set) {
    set.flip();
    return set;
}

void compare_with_slow_analysis(BitBoard const& white, BitBoard const& black) {
    PHTrecord record;
    record.set_pawns(white, black);
    Expected const w(white, black);
    Expected const b(mirrored(black), mirrored(white));
    EXPECT_EQ(record.white_passed, w.passed);
    EXPECT_EQ(record.white_stop, w.stop);
    EXPECT_EQ(record.white_ahead, w.ahead);
    EXPECT_EQ(record.white_behind, w.behind);
    EXPECT_EQ(record.white_weak, w.weak);
    EXPECT_EQ(record.white_open_files, w.open_files);
    EXPECT_EQ(record.black_passed, mirrored(b.passed));
    EXPECT_EQ(record.black_stop, mirrored(b.stop));
    EXPECT_EQ(record.black_ahead, mirrored(b.ahead));
    EXPECT_EQ(record.black_behind, mirrored(b.behind));
    EXPECT_EQ(record.black_weak, mirrored(b.weak));
    EXPECT_EQ(record.black_open_files, mirrored(b.open_files));
    EXPECT_EQ(record.white_passer_score, w.passer_score);
    EXPECT_EQ(record.black_passer_score, b.passer_score);
    EXPECT_EQ(record.doubled, b.doubled - w.doubled);
    EXPECT_EQ(record.weak, b.weak.popcount() - w.weak.popcount());
    EXPECT_EQ(record.isolated, b.isolated - w.isolated);
    EXPECT_EQ(record.islands, b.islands - w.islands);
    EXPECT_EQ(record.rookpawns, b.rookpawns - w.rookpawns);
}

/// A random set that keeps each square with probability 2^-draws.
std::uint64_t sparse_set(std::mt19937_64& random, int draws) {
    std::uint64_t set = random();
    for (int draw = 1; draw < draws; ++draw) {
        set &= random();
    }
    return set;
}

TEST(PHTrecord, AgreesWithASlowAnalysisOnRandomStructures) {
    std::mt19937_64 random(20240501);
    std::uint64_t const pawn_ranks = 0x00FFFFFFFFFFFF00;
    for (int round = 0; round < 3000 && !testing::Test::HasFailure(); ++round) {
        std::uint64_t const white = sparse_set(random, round % 5 == 0 ? 5 : 3) & pawn_ranks;
        std::uint64_t const black =
            sparse_set(random, round % 3 == 0 ? 5 : 3) & pawn_ranks & ~white;
        compare_with_slow_analysis(BitBoard(white), BitBoard(black));
    }
}

TEST(PHTrecord, AgreesWithASlowAnalysisWithPawnsOnTheEndRanks) {
    std::mt19937_64 random(3);
    for (int round = 0; round < 300 && !testing::Test::HasFailure(); ++round) {
        std::uint64_t const white = sparse_set(random, 3);
        std::uint64_t const black = sparse_set(random, 3) & ~white;
        compare_with_slow_analysis(BitBoard(white), BitBoard(black));
    }
}

TEST(PHTrecord, IslandTableCountsTheRunsOfEveryMask) {
    ASSERT_EQ(PHTrecord::pawn_island_table.size(), 256U);
    for (unsigned mask = 0; mask < 256; ++mask) {
        int runs = 0;
        for (unsigned file = 0; file < 8; ++file) {
            bool const here = ((mask >> file) & 1U) != 0;
            bool const before = file > 0 && ((mask >> (file - 1)) & 1U) != 0;
            runs += here && !before ? 1 : 0;
        }
        EXPECT_EQ(PHTrecord::pawn_island_table[mask], runs) << mask;
    }
    EXPECT_EQ(PHTrecord::pawn_island_table[0], 0);
    EXPECT_EQ(PHTrecord::pawn_island_table[0b01010101], 4);
}

TEST(PHTrecord, NewRecordIsZero) {
    PHTrecord const record;
    EXPECT_EQ(record.key, 0U);
    EXPECT_FALSE(record.white_open_files);
    EXPECT_FALSE(record.black_open_files);
    EXPECT_EQ(record.white_passer_score, 0);
    EXPECT_EQ(record.rookpawns, 0);
    EXPECT_EQ(record.relations.kings, king_relations_t::no_kings);
}

TEST(PHTrecord, ClearZeroesAllFields) {
    PHTrecord record = analysed({"a2", "a3", "h6"}, {"c7"});
    record.key = 12;
    record.clear();
    EXPECT_EQ(record.key, 0U);
    for (BitBoard const& set :
         {record.white_passed, record.white_stop, record.white_ahead, record.white_behind,
          record.white_weak, record.white_open_files, record.black_passed, record.black_stop,
          record.black_ahead, record.black_behind, record.black_weak, record.black_open_files}) {
        EXPECT_FALSE(set);
    }
    for (int number : {record.white_passer_score, record.black_passer_score, record.doubled,
                       record.weak, record.isolated, record.islands, record.rookpawns}) {
        EXPECT_EQ(number, 0);
    }
}

TEST(PHTrecord, SetPawnsLeavesTheKey) {
    PHTrecord record;
    record.key = 99;
    record.set_pawns(rank2, rank7);
    EXPECT_EQ(record.key, 99U);
}

TEST(PHTrecord, SetPawnsForgetsTheKingsOfAnotherStructure) {
    PHTrecord record = analysed({"e4"}, {"d5"});
    EXPECT_EQ(record.relations.kings, king_relations_t::no_kings);
    record.relations.kings = 4;
    record.set_pawns(squares({"e4"}), BitBoard());
    EXPECT_EQ(record.relations.kings, king_relations_t::no_kings);
}

TEST(PHTrecord, NoPawnsAtAllOpenEveryFile) {
    PHTrecord const record = analysed({}, {});
    EXPECT_EQ(record.white_open_files, ~BitBoard());
    EXPECT_EQ(record.black_open_files, ~BitBoard());
    EXPECT_EQ(record.islands, 0);
}

TEST(PHTrecord, PawnOneStepFromPromotionHasNoSquareAheadOfItsStop) {
    PHTrecord const record = analysed({"h7"}, {});
    EXPECT_EQ(record.white_stop, squares({"h8"}));
    EXPECT_FALSE(record.white_ahead);
    EXPECT_EQ(record.white_behind, squares({"h1", "h2", "h3", "h4", "h5", "h6"}));
    EXPECT_EQ(record.white_passer_score, 200);
}

TEST(PHTrecord, PassedPawnNearHomeScoresNothing) {
    PHTrecord const record = analysed({"a3"}, {});
    EXPECT_EQ(record.white_passed, squares({"a3"}));
    EXPECT_EQ(record.white_passer_score, 0);
}

TEST(PHTrecord, PassedPawnValuesByRank) {
    EXPECT_EQ(analysed({"d4"}, {}).white_passer_score, 25);
    EXPECT_EQ(analysed({"d5"}, {}).white_passer_score, 50);
    EXPECT_EQ(analysed({"d6"}, {}).white_passer_score, 100);
    EXPECT_EQ(analysed({"d7"}, {}).white_passer_score, 200);
    EXPECT_EQ(analysed({}, {"d5"}).black_passer_score, 25);
    EXPECT_EQ(analysed({}, {"d4"}).black_passer_score, 50);
    EXPECT_EQ(analysed({}, {"d3"}).black_passer_score, 100);
    EXPECT_EQ(analysed({}, {"d2"}).black_passer_score, 200);
}

TEST(PHTrecord, LonePawnIsBothWeakAndIsolated) {
    PHTrecord const white = analysed({"e4"}, {});
    EXPECT_EQ(white.white_weak, squares({"e4"}));
    EXPECT_EQ(white.weak, -1);
    EXPECT_EQ(white.isolated, -1);
    PHTrecord const black = analysed({}, {"e5"});
    EXPECT_EQ(black.black_weak, squares({"e5"}));
    EXPECT_EQ(black.weak, 1);
    EXPECT_EQ(black.isolated, 1);
}

TEST(PHTrecord, RearmostOfTwoNeighboursIsWeakButNotIsolated) {
    PHTrecord const record = analysed({"d3", "e4"}, {});
    EXPECT_EQ(record.white_weak, squares({"d3"}));
    EXPECT_EQ(record.isolated, 0);
}

TEST(PHTrecord, PassedPawnsOnAdjacentFilesAreConnectedAtAnyRank) {
    PHTrecord const record = analysed({"a7", "b2"}, {});
    EXPECT_EQ(record.white_passed, squares({"a7", "b2"}));
    EXPECT_EQ(record.white_passer_score, 400);
    EXPECT_EQ(analysed({"a7", "c2"}, {}).white_passer_score, 200);
    EXPECT_EQ(analysed({}, {"g4", "h3"}).black_passer_score, 300);
}

TEST(PHTrecord, EnemyPawnLevelOnAnAdjacentFileDoesNotStopAPassedPawn) {
    EXPECT_EQ(analysed({"e5"}, {"d5"}).white_passed, squares({"e5"}));
    EXPECT_FALSE(analysed({"e5"}, {"d6"}).white_passed);
    EXPECT_FALSE(analysed({"e5"}, {"e7"}).white_passed);
    EXPECT_TRUE(analysed({"e5"}, {"c6"}).white_passed);
}

TEST(PHTrecord, DoubledReachesFourRanksAheadOnly) {
    EXPECT_EQ(analysed({"c2", "c3"}, {}).doubled, -1);
    EXPECT_EQ(analysed({"c2", "c6"}, {}).doubled, -1);
    EXPECT_EQ(analysed({"c2", "c7"}, {}).doubled, 0);
    EXPECT_EQ(analysed({"c2", "c3", "c4"}, {}).doubled, -2);
    EXPECT_EQ(analysed({}, {"c7", "c3"}).doubled, 1);
    EXPECT_EQ(analysed({}, {"c7", "c2"}).doubled, 0);
}

TEST(PHTrecord, IslandsAndRookpawnsAreBlackMinusWhite) {
    PHTrecord const record = analysed({"a2", "c2", "d3"}, {"a7", "c7", "e6", "h7", "h6"});
    EXPECT_EQ(record.islands, 2);
    EXPECT_EQ(record.rookpawns, 2);
}

}  // namespace

}  // namespace orvelin::test
