// The endgame tables of the root search in the memory of the transposition table.

#include <algorithm>
#include <limits>
#include <new>
#include <string>

#include "search/bucket.h"
#include "search/endgame_tables_fixture.h"
#include "support/test_config.h"

namespace orvelin::test {

TEST_F(EndgameTables, APawnGivesTheMemoryBack) {
    root_with("KBNk", kbnk_floor + spare);
    ASSERT_GE(kbnk().progress(), 0);
    ASSERT_EQ(threshold(), last_lent);
    root_with("KBNkp", 60000);
    EXPECT_EQ(threshold(), 0U);
    EXPECT_EQ(kbnk().progress(), -1);
    EXPECT_EQ(kqkr().progress(), -1);
    // The buckets that were lent store again.
    set_material("KBNkp");
    search(6);
    EXPECT_GT(records(1, last_lent), 0);
    // The next table begins again.
    root_with("KBNk", kbnk_floor);
    EXPECT_EQ(threshold(), last_lent);
    EXPECT_EQ(kbnk().progress(), -1);
}

TEST_F(EndgameTables, ASecondTableTakesTheMemoryOfAnUnfinishedFirst) {
    root_with("KBNk", kbnk_floor + spare);
    int const progress = kbnk().progress();
    ASSERT_GE(progress, 0);
    bytes_t const first = bytes_of(kbnk());
    root_with("KQkr", kqkr_floor + spare);
    EXPECT_GE(kqkr().progress(), 0);
    EXPECT_EQ(threshold(), last_lent);
    bytes_t const second = bytes_of(kqkr());
    EXPECT_NE(second, first);
    // Kept: the first table holds on to its progress, though its bytes are another's now.
    EXPECT_EQ(kbnk().progress(), progress);
    EXPECT_EQ(bytes_of(kbnk()), second);
    int const second_progress = kqkr().progress();
    root_with("KBNk", kbnk_floor + spare);
    EXPECT_TRUE(kbnk().progress() > progress || kbnk().ready());
    EXPECT_EQ(kqkr().progress(), second_progress);
    EXPECT_EQ(bytes_of(kbnk()), bytes_of(kqkr()));
    root_with("Kk", 1);
    EXPECT_EQ(kbnk().progress(), -1);
    EXPECT_EQ(kqkr().progress(), -1);
    EXPECT_EQ(threshold(), 0U);
}

TEST_F(EndgameTables, ForgettingEndsBothTables) {
    root_with("KBNk", kbnk_floor + spare);
    root_with("KQkr", kqkr_floor + spare);
    ASSERT_GE(kbnk().progress(), 0);
    ASSERT_GE(kqkr().progress(), 0);
    analysis_.forget();
    EXPECT_EQ(kbnk().progress(), -1);
    EXPECT_EQ(kqkr().progress(), -1);
    EXPECT_EQ(threshold(), 0U);
}

TEST_F(EndgameTables, ATooSmallHashIsNotLent) {
    set_material("KBNk");
    analysis_.set_hash_size(7);
    ASSERT_EQ(probe_.table().buckets(), 65536U);
    figures_t const expected = search(6);
    // The clock stands still: a table would be built to its end.
    for (std::string const material : {"KBNk", "KQkr"}) {
        set_material(material);
        time().set_movetime(600000);
        threshold(last_lent);
        root();
        EXPECT_EQ(threshold(), 0U);
        EXPECT_EQ(kbnk().progress(), -1);
        EXPECT_EQ(kqkr().progress(), -1);
    }
    set(fen_of("KBNk"));
    analysis_.clear();
    time().set_movetime(600000);
    EXPECT_EQ(search(6), expected);
    EXPECT_GT(records(1, 65535), 0);
}

TEST_F(EndgameTables, TheSmallestHashThatIsLentServesTheSearchAboveTheTable) {
    ASSERT_EQ(probe_.table().buckets(), 131072U);
    root_with("KBNk", kbnk_floor + spare);
    ASSERT_GE(kbnk().progress(), 0);
    bytes_t const bytes = bytes_of(kbnk());
    int const in_table = records(0, last_lent);
    set_material("KBNk");
    search(8);
    EXPECT_EQ(bytes_of(kbnk()), bytes);
    probe_.date(1);
    EXPECT_EQ(records(0, last_lent), in_table);
    probe_.date(2);
    EXPECT_EQ(records(kbnk().size() / sizeof(Bucket), last_lent), 0);
    EXPECT_GT(records(last_lent + 1, 131071), 100);
}

TEST_F(EndgameTables, ANewHashSizeEndsATableAndTheSameSizeDoesNot) {
    root_with("KBNk", kbnk_floor + spare);
    int const progress = kbnk().progress();
    ASSERT_GE(progress, 0);
    analysis_.set_hash_size(15);
    EXPECT_EQ(kbnk().progress(), progress);
    analysis_.set_hash_size(16);
    EXPECT_EQ(kbnk().progress(), -1);
    root_with("KBNk", kbnk_floor);
    EXPECT_EQ(kbnk().progress(), -1);
    // All zero: the new memory, in which nothing has been built.
    EXPECT_EQ(kbnk()[0], 0);
    root_with("KQkr", kqkr_floor + spare);
    EXPECT_GE(kqkr().progress(), 0);
    analysis_.set_hash_size(6);
    EXPECT_EQ(kqkr().progress(), -1);
    // With the threshold of the larger table nothing is in use until the next root.
    EXPECT_EQ(threshold(), last_lent);
    root_with("KQkr", 60000);
    EXPECT_EQ(threshold(), 0U);
    EXPECT_EQ(kqkr().progress(), -1);
}

// The sanitizers' allocators have their own answer to such a size.
#if !ORVELIN_SHORT_TESTS
TEST_F(EndgameTables, WithoutAnyHashThereIsNoTable) {
    root_with("KBNk", kbnk_floor + spare);
    ASSERT_GE(kbnk().progress(), 0);
    EXPECT_THROW(analysis_.set_hash_size(std::numeric_limits<int>::max()), std::bad_alloc);
    root_with("KBNk", 60000);
    EXPECT_EQ(kbnk().progress(), -1);
    EXPECT_EQ(threshold(), 0U);
    analysis_.set_hash_size(8);
    root_with("KBNk", kbnk_floor + spare);
    EXPECT_GE(kbnk().progress(), 0);
}
#endif

TEST_F(EndgameTables, TheSearchIsTheSameWithATableAsWithoutOne) {
    for (std::string const material : {"KBNk", "KQkr"}) {
        threshold(0);
        set_material(material);
        probe_.date(1);
        figures_t const without = search(8);
        ASSERT_EQ(threshold(), last_lent);
        ASSERT_EQ(std::max(kbnk().progress(), kqkr().progress()), -1);

        set_material(material);
        time().set_movetime((material == "KBNk" ? kbnk_floor : kqkr_floor) + spare);
        EXPECT_EQ(search(8), without);
        EXPECT_GE(std::max(kbnk().progress(), kqkr().progress()), 0);
        root_with("KPk", 1);
    }
}

TEST_F(EndgameTables, TheClearingOfAWeakenedSearchLeavesTheTableAlone) {
    root_with("KBNk", kbnk_floor + spare);
    bytes_t const bytes = bytes_of(kbnk());
    int const progress = kbnk().progress();
    set_material("KBNk");
    analysis_.set_uci_elo(1500);
    analysis_.set_uci_limitstrength(true);
    analysis_.set_depth(3);
    // It waits for the end of this time, too short for a table.
    analysis_.set_wtime(420);
    analysis_.iterative_search();
    analysis_.set_uci_limitstrength(false);
    EXPECT_EQ(kbnk().progress(), progress);
    EXPECT_EQ(bytes_of(kbnk()), bytes);
}

}  // namespace orvelin::test
