#include "generation/tables.h"

#include <cstring>
#include <gtest/gtest.h>
#include <type_traits>

#include "support/shared_tables.h"

namespace orvelin::test {

TEST(Tables, HoldsEverythingReadyForUse) {
    Tables const& tables = shared_tables();
    EXPECT_EQ(tables.attacks.knight(Square("a1")).popcount(), 2);
    EXPECT_EQ(tables.connections.queen_attacks(Square("d4")).popcount(), 27);
    EXPECT_EQ(tables.lmr_table.value(101, 255), 22);
}

TEST(Tables, FirstKeysArePublishedOnesAndSecondAreNot) {
    Tables const& tables = shared_tables();
    HashKeys const first = make_polyglot_keys();
    HashKeys const second = make_random_keys();
    EXPECT_EQ(std::memcmp(&tables.hash_keys, &first, sizeof(HashKeys)), 0);
    EXPECT_EQ(std::memcmp(&tables.hash_keys2, &second, sizeof(HashKeys)), 0);
    EXPECT_NE(std::memcmp(&tables.hash_keys, &tables.hash_keys2, sizeof(HashKeys)), 0);
}

TEST(Tables, NewTablesHaveATranspositionTableOf128Megabytes) {
    Tables const tables;
    EXPECT_EQ(tables.transposition_table.get_size(), 128);
}

TEST(Tables, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<Tables>);
    EXPECT_FALSE(std::is_copy_assignable_v<Tables>);
}

}  // namespace orvelin::test
