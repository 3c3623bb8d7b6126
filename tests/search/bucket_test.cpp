#include "search/bucket.h"

#include <array>
#include <cstdint>
#include <gtest/gtest.h>

namespace orvelin {
namespace {

constexpr unsigned char today = 4;
TTmove const some_move(std::uint16_t{0x1234});

TTrecord record_of(std::uint64_t key, unsigned char draft, bound_t bound = lower_bound,
                   unsigned char date = today) {
    TTrecord record;
    record.set_key(key);
    record.set_draft(draft);
    record.set_bound(bound);
    record.set_date(date);
    return record;
}

struct Entry {
    unsigned char draft;
    bound_t bound = lower_bound;
    unsigned char date = today;
};

/// Keys 1 to 4 in the slots 0 to 3.
Bucket bucket_of(std::array<Entry, 4> const& entries) {
    Bucket bucket;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        // One date for all at first: a slot of another date would be taken again.
        bucket.write(record_of(i + 1, entries[i].draft, entries[i].bound));
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        bucket.write(record_of(i + 1, entries[i].draft, entries[i].bound, entries[i].date));
    }
    return bucket;
}

/// Which of the keys 1 to 4 a new record pushes out, 0 for none.
std::uint64_t replaced_key(Bucket const& original, TTrecord const& record) {
    Bucket bucket = original;
    bucket.write(record);
    EXPECT_NE(bucket.find(record.get_key()), nullptr);
    for (std::uint64_t key = 1; key <= 4; ++key) {
        if (bucket.find(key) == nullptr) {
            return key;
        }
    }
    return 0;
}

TEST(Bucket, IsOneCacheLine) {
    EXPECT_EQ(sizeof(Bucket), 64U);
    EXPECT_EQ(alignof(Bucket), 64U);
}

TEST(Bucket, FillsItsSlotsInOrder) {
    Bucket const bucket = bucket_of({{{5}, {3}, {3}, {7}}});
    TTrecord const* const first = bucket.find(1);
    ASSERT_NE(first, nullptr);
    for (std::uint64_t key = 1; key <= 4; ++key) {
        EXPECT_EQ(bucket.find(key), first + (key - 1));
    }
    EXPECT_EQ(bucket.has_date(today), 4);
    EXPECT_EQ(bucket.has_date(today + 1), 0);
}

TEST(Bucket, ShallowestOfTheCurrentDateGoesTiesToTheLowerSlot) {
    EXPECT_EQ(replaced_key(bucket_of({{{5}, {3}, {3}, {7}}}), record_of(9, 1)), 2U);
}

TEST(Bucket, ExactRecordIsPassedOver) {
    EXPECT_EQ(replaced_key(bucket_of({{{5}, {3, exact_value}, {3}, {7}}}), record_of(9, 1)), 3U);
}

TEST(Bucket, FourExactRecordsGiveUpTheFirst) {
    EXPECT_EQ(
        replaced_key(
            bucket_of({{{5, exact_value}, {3, exact_value}, {3, exact_value}, {7, exact_value}}}),
            record_of(9, 1)),
        1U);
}

TEST(Bucket, ExactFirstSlotGivesWayToAnyOther) {
    EXPECT_EQ(replaced_key(bucket_of({{{1, exact_value}, {90}, {80}, {101}}}), record_of(9, 1)),
              3U);
}

TEST(Bucket, DraftsFromAHundredAndTwoOnAreNoCandidates) {
    EXPECT_EQ(replaced_key(bucket_of({{{200}, {102}, {150}, {103}}}), record_of(9, 1)), 1U);
    EXPECT_EQ(replaced_key(bucket_of({{{200}, {102}, {101}, {103}}}), record_of(9, 1)), 3U);
}

TEST(Bucket, FirstSlotGoesWhenNoneIsShallower) {
    EXPECT_EQ(replaced_key(bucket_of({{{3}, {3}, {4}, {3}}}), record_of(9, 1)), 1U);
}

TEST(Bucket, FirstSlotOfAnotherDateGoes) {
    EXPECT_EQ(replaced_key(bucket_of({{{5}, {3}, {9, exact_value, 3}, {1, lower_bound, 2}}}),
                           record_of(9, 1)),
              3U);
    // A date ahead of the current one is as old as any other.
    EXPECT_EQ(replaced_key(bucket_of({{{5}, {9, exact_value, 200}, {3}, {1}}}), record_of(9, 1)),
              2U);
}

TEST(Bucket, SameKeyIsReplacedWhateverItsAgeAndDepth) {
    Bucket bucket = bucket_of({{{5, lower_bound, 1}, {9, exact_value}, {3}, {7}}});
    EXPECT_EQ(replaced_key(bucket, record_of(2, 2)), 0U);
    bucket.write(record_of(2, 2));
    EXPECT_EQ(bucket.find(2)->get_draft(), 2);
    EXPECT_TRUE(bucket.find(2)->is_lowerbound());
    EXPECT_EQ(bucket.find(1)->get_date(), 1);
}

TEST(Bucket, MovelessRecordOfTheSameKeyKeepsTheMove) {
    Bucket bucket;
    TTrecord record = record_of(1, 9);
    record.set_move(some_move);
    bucket.write(record);
    bucket.write(record_of(1, 2, upper_bound, today + 1));
    EXPECT_EQ(bucket.find(1)->get_move(), some_move);
    EXPECT_EQ(bucket.find(1)->get_draft(), 2);
    EXPECT_EQ(bucket.find(1)->get_date(), today + 1);
    EXPECT_TRUE(bucket.find(1)->is_upperbound());
}

TEST(Bucket, MovelessRecordOfAnotherKeyHasNoMove) {
    Bucket bucket;
    for (std::uint64_t key = 1; key <= 4; ++key) {
        TTrecord record = record_of(key, 9);
        record.set_move(some_move);
        bucket.write(record);
    }
    bucket.write(record_of(9, 1));
    ASSERT_NE(bucket.find(9), nullptr);
    EXPECT_TRUE(bucket.find(9)->get_move().nomove());
}

TEST(Bucket, ReadFillsInTheValue) {
    Bucket bucket;
    TTrecord stored = record_of(7, 9, exact_value);
    stored.set_move(some_move);
    stored.set_score(-123, 0);
    bucket.write(stored);
    TTrecord record;
    record.set_key(7);
    EXPECT_TRUE(bucket.read(record));
    EXPECT_EQ(record, stored);
}

TEST(Bucket, ReadOfAMovelessRecordLeavesTheMoveThatCameIn) {
    Bucket bucket;
    bucket.write(record_of(7, 9));
    TTrecord record;
    record.set_key(7);
    record.set_move(some_move);
    record.set_draft(1);
    EXPECT_TRUE(bucket.read(record));
    EXPECT_EQ(record.get_move(), some_move);
    EXPECT_EQ(record.get_draft(), 9);
}

TEST(Bucket, ReadWithoutAHitLeavesTheRecord) {
    Bucket bucket;
    bucket.write(record_of(7, 9));
    TTrecord record = record_of(8, 3);
    EXPECT_FALSE(bucket.read(record));
    EXPECT_EQ(record, record_of(8, 3));
}

TEST(Bucket, ClearEmptiesAllRecords) {
    Bucket bucket = bucket_of({{{5}, {3}, {3}, {7}}});
    bucket.clear();
    EXPECT_EQ(bucket.has_date(0), 4);
    EXPECT_EQ(bucket.find(1), nullptr);
}

TEST(Bucket, DumpShowsScoreAndDraftOfEachRecord) {
    Bucket bucket;
    TTrecord record = record_of(1, 12);
    record.set_score(-45, 0);
    bucket.write(record);
    EXPECT_EQ(bucket.dump(),
              "  score=-45  draft=12\n"
              "  score=0  draft=0\n"
              "  score=0  draft=0\n"
              "  score=0  draft=0\n");
}

}  // namespace
}  // namespace orvelin
