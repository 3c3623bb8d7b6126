#include "evaluation/pawn_hash_table.h"

#include <gtest/gtest.h>

#include "position/masks.h"

namespace orvelin::test {

namespace {

PHTrecord record_of(std::uint64_t key, std::int32_t doubled) {
    PHTrecord record;
    record.set_pawns(rank2, rank7);
    record.key = key;
    record.doubled = doubled;
    return record;
}

void store(PawnHashTable& table, PHTrecord const& record) {
    table.set_current(record);
    table.write();
}

TEST(PawnHashTable, KeyZeroMatchesAnEmptySlotWithAllFieldsZero) {
    PawnHashTable table;
    table.set_current(record_of(77, 5));
    EXPECT_TRUE(table.read(0));
    PHTrecord const& record = table.get_current();
    EXPECT_EQ(record.key, 0U);
    EXPECT_EQ(record.doubled, 0);
    EXPECT_FALSE(record.white_open_files);
    EXPECT_FALSE(record.black_open_files);
}

TEST(PawnHashTable, WrittenRecordIsReadBack) {
    PawnHashTable table;
    store(table, record_of(0x123456789ABCDEF0, 3));
    table.set_current(PHTrecord());
    ASSERT_TRUE(table.read(0x123456789ABCDEF0));
    EXPECT_EQ(table.get_current().key, 0x123456789ABCDEF0U);
    EXPECT_EQ(table.get_current().doubled, 3);
    EXPECT_EQ(table.get_current().white_open_files, BitBoard());
}

TEST(PawnHashTable, MissLeavesTheCurrentRecordAlone) {
    PawnHashTable table;
    table.set_current(record_of(77, 5));
    EXPECT_FALSE(table.read(78));
    EXPECT_EQ(table.get_current().key, 77U);
}

TEST(PawnHashTable, IndexIsTheLowFourteenBitsAndAWriteReplaces) {
    PawnHashTable table;
    store(table, record_of(5, 1));
    EXPECT_FALSE(table.read(5 + 16384));
    EXPECT_TRUE(table.read(5));
    store(table, record_of(5 + 16384, 2));
    EXPECT_FALSE(table.read(5));
    ASSERT_TRUE(table.read(5 + 16384));
    EXPECT_EQ(table.get_current().doubled, 2);
    store(table, record_of(5 + 8192, 3));
    EXPECT_TRUE(table.read(5 + 16384));
}

TEST(PawnHashTable, KeyZeroMissesOnceAnotherStructureHasItsSlot) {
    PawnHashTable table;
    store(table, record_of(16384, 1));
    EXPECT_FALSE(table.read(0));
    EXPECT_NE(table.stats().find("  conflicting pht reads: 1"), std::string::npos);
}

TEST(PawnHashTable, ClearEmptiesEveryRecord) {
    PawnHashTable table;
    store(table, record_of(5, 1));
    store(table, record_of(16383, 1));
    table.clear();
    EXPECT_FALSE(table.read(5));
    EXPECT_FALSE(table.read(16383));
    EXPECT_EQ(table.stats(),
              "PawnHashTable::stats() usage:   0%  first pht reads: 2  conflicting pht reads: 0  "
              "total reads: 2\n");
}

TEST(PawnHashTable, StatsOfANewTable) {
    EXPECT_EQ(PawnHashTable().stats(),
              "PawnHashTable::stats() usage:   0%  first pht reads: 0  conflicting pht reads: 0  "
              "total reads: 0\n");
}

TEST(PawnHashTable, StatsCountFirstConflictingAndAllReads) {
    PawnHashTable table;
    for (std::uint64_t key = 1; key <= 8192; ++key) {
        store(table, record_of(key, 0));
    }
    EXPECT_TRUE(table.read(1));
    EXPECT_FALSE(table.read(1 + 16384));
    EXPECT_FALSE(table.read(2 + 16384));
    EXPECT_FALSE(table.read(8193));
    EXPECT_EQ(table.stats(),
              "PawnHashTable::stats() usage:  50%  first pht reads: 1  conflicting pht reads: 2  "
              "total reads: 4\n");
}

TEST(PawnHashTable, StatsOfAFullTable) {
    PawnHashTable table;
    for (std::uint64_t key = 1; key <= 16384; ++key) {
        store(table, record_of(key, 0));
    }
    EXPECT_EQ(table.stats(),
              "PawnHashTable::stats() usage: 100%  first pht reads: 0  conflicting pht reads: 0  "
              "total reads: 0\n");
}

}  // namespace

}  // namespace orvelin::test
