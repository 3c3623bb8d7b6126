#include "search/transposition_table.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <new>
#include <random>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace orvelin {
namespace {

TTrecord record_of(std::uint64_t key, unsigned char date = 1) {
    TTrecord record;
    record.set_key(key);
    record.set_draft(5);
    record.set_date(date);
    record.set_move(TTmove(std::uint16_t{0x1234}));
    return record;
}

TEST(TranspositionTable, StartsWith128MiBEnabledAndWithoutThreshold) {
    TranspositionTable table;
    EXPECT_EQ(table.get_size(), 128);
    EXPECT_EQ(table.buckets(), 2097152U);
    EXPECT_EQ(table.get_threshold(), 0U);
    EXPECT_TRUE(table.enabled());
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(table.get_uchar_adress()) % 64, 0U);
}

TEST(TranspositionTable, FreshTableGivesNoHit) {
    TranspositionTable const table;
    for (std::uint64_t key = 1; key < 5000; key = key * 3 + 1) {
        EXPECT_EQ(table.find(key), nullptr);
        EXPECT_EQ(table.find(key << 20), nullptr);
        TTrecord record;
        record.set_key(key);
        EXPECT_FALSE(table.read(record));
    }
    EXPECT_EQ(table.hashfull(1), 0);
}

TEST(TranspositionTable, StoresAndFinds) {
    TranspositionTable table;
    table.write(record_of(0xabcdef0123456789U));
    TTrecord const* const found = table.find(0xabcdef0123456789U);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(*found, record_of(0xabcdef0123456789U));
    EXPECT_EQ(table.bucket(0xabcdef0123456789U & 0x1fffff).find(0xabcdef0123456789U), found);
    TTrecord record;
    record.set_key(0xabcdef0123456789U);
    EXPECT_TRUE(table.read(record));
    EXPECT_EQ(record, *found);
    EXPECT_EQ(table.find(0xbbcdef0123456789U), nullptr);
}

TEST(TranspositionTable, BucketZeroIsNeverUsed) {
    TranspositionTable table;
    std::uint64_t const key = std::uint64_t{5} << 40;
    table.write(record_of(key));
    EXPECT_EQ(table.find(key), nullptr);
    EXPECT_EQ(table.bucket(0).find(key), nullptr);
    TTrecord record;
    record.set_key(key);
    EXPECT_FALSE(table.read(record));
}

TEST(TranspositionTable, ThresholdTakesTheLowBucketsOutOfUse) {
    TranspositionTable table;
    table.write(record_of(93750));
    table.write(record_of(93751));
    table.set_threshold_buckets(93750);
    EXPECT_EQ(table.threshold_buckets(), 93750U);
    EXPECT_EQ(table.find(93750), nullptr);
    EXPECT_NE(table.find(93751), nullptr);
    table.write(record_of(17));
    table.set_threshold_buckets(0);
    EXPECT_NE(table.find(93750), nullptr);
    EXPECT_EQ(table.find(17), nullptr);
}

TEST(TranspositionTable, ThresholdInBytesIsShiftedArithmetically) {
    TranspositionTable table;
    table.set_threshold(6000000);
    EXPECT_EQ(table.threshold_buckets(), 93750U);
    EXPECT_EQ(table.get_threshold(), 6000000U);
    table.set_threshold(6000063);
    EXPECT_EQ(table.get_threshold(), 6000000U);
    table.set_threshold(-1);
    EXPECT_EQ(table.threshold_buckets(), std::numeric_limits<std::uint64_t>::max());
    table.write(record_of(12345));
    EXPECT_EQ(table.find(12345), nullptr);
}

TEST(TranspositionTable, ThresholdAboveTheTableTakesItAllOutOfUse) {
    TranspositionTable table;
    table.set_size(6);
    table.write(record_of(65535));
    table.set_threshold_buckets(93750);
    table.write(record_of(65534));
    EXPECT_EQ(table.find(65535), nullptr);
    table.clear();
    table.set_threshold(-1);
    table.clear();
    table.set_threshold_buckets(0);
    EXPECT_NE(table.find(65535), nullptr);
    EXPECT_EQ(table.find(65534), nullptr);
}

TEST(TranspositionTable, DisabledTableNeitherStoresNorFinds) {
    TranspositionTable table;
    table.write(record_of(77));
    table.set_enabled(false);
    EXPECT_FALSE(table.enabled());
    table.write(record_of(78));
    EXPECT_EQ(table.find(77), nullptr);
    TTrecord record;
    record.set_key(77);
    EXPECT_FALSE(table.read(record));
    table.set_enabled(true);
    EXPECT_NE(table.find(77), nullptr);
    EXPECT_EQ(table.find(78), nullptr);
}

TEST(TranspositionTable, SizeIsRoundedDownToAPowerOfTwo) {
    TranspositionTable table;
    for (int const megabytes : {0, 3, 5, 6, 7, -100, std::numeric_limits<int>::min()}) {
        table.set_size(megabytes);
        EXPECT_EQ(table.buckets(), 65536U);
        EXPECT_EQ(table.get_size(), 4);
    }
    table.set_size(8);
    EXPECT_EQ(table.buckets(), 131072U);
    table.set_size(100);
    EXPECT_EQ(table.buckets(), 1048576U);
    EXPECT_EQ(table.get_size(), 64);
    table.set_size(128);
    EXPECT_EQ(table.buckets(), 2097152U);
}

TEST(TranspositionTable, SameBucketCountKeepsTheContents) {
    TranspositionTable table;
    table.write(record_of(77));
    table.set_size(128);
    table.set_size(129);
    table.set_size(255);
    EXPECT_NE(table.find(77), nullptr);
    table.set_size(127);
    EXPECT_EQ(table.find(77), nullptr);
}

/// Writes one byte into every byte of the first buckets, as an endgame table may that has them.
void fill_lent(TranspositionTable& table, std::uint64_t buckets, unsigned char byte) {
    table.set_threshold_buckets(buckets - 1);
    std::fill_n(table.get_uchar_adress(), buckets * sizeof(Bucket), byte);
    table.set_threshold_buckets(0);
}

TEST(TranspositionTable, NewSizeComesEmptyAlsoBelowTheThreshold) {
    TranspositionTable table;
    table.set_size(8);
    for (int round = 0; round < 4; ++round) {
        fill_lent(table, table.buckets(), 1);
        table.set_threshold_buckets(1000);
        table.set_size(round % 2 == 0 ? 6 : 8);
        EXPECT_EQ(table.hashfull(0), 1000);
        EXPECT_EQ(table.bucket(table.buckets() - 1).has_date(0), 4);
        EXPECT_EQ(table.threshold_buckets(), 1000U);
    }
}

TEST(TranspositionTable, ClearEmptiesWhatLiesAboveTheThreshold) {
    TranspositionTable table;
    table.set_size(6);
    fill_lent(table, table.buckets(), 1);
    table.set_threshold_buckets(10);
    table.clear();
    EXPECT_EQ(table.bucket(0).has_date(1), 4);
    EXPECT_EQ(table.bucket(10).has_date(1), 4);
    EXPECT_EQ(table.bucket(11).has_date(1), 0);
    EXPECT_EQ(table.bucket(65535).has_date(1), 0);
    table.set_threshold_buckets(0);
    table.clear();
    EXPECT_EQ(table.bucket(0).has_date(1), 4);
    EXPECT_EQ(table.bucket(1).has_date(1), 0);
}

TEST(TranspositionTable, ClearWorksAgainAfterEachWrite) {
    TranspositionTable table;
    table.clear();
    table.write(record_of(77));
    table.clear();
    EXPECT_EQ(table.find(77), nullptr);
    table.bucket(78).write(record_of(78));
    table.clear();
    EXPECT_EQ(table.find(78), nullptr);
}

TEST(TranspositionTable, ClearEmptiesWhateverWasWrittenAndNothingElse) {
    constexpr std::uint64_t buckets = 65536;
    TranspositionTable table;
    table.set_size(6);
    std::mt19937_64 random(17);
    for (int round = 0; round < 200; ++round) {
        std::uint64_t const threshold = round % 3 == 0 ? 0 : random() % buckets;
        table.set_threshold_buckets(threshold);
        std::uint64_t const lent = random() % (threshold + 1);
        std::fill_n(table.get_uchar_adress(), lent * sizeof(Bucket), static_cast<unsigned char>(3));
        for (std::uint64_t writes = random() % 300; writes > 0; --writes) {
            table.write(record_of(random() | 1));
        }
        std::vector<int> kept;
        for (std::uint64_t i = 0; i <= threshold; ++i) {
            kept.push_back(std::as_const(table).bucket(i).has_date(0));
        }
        table.clear();
        for (std::uint64_t i = 0; i < buckets; ++i) {
            int const expected = i <= threshold ? kept[i] : Bucket::slots;
            ASSERT_EQ(std::as_const(table).bucket(i).has_date(0), expected) << round << ' ' << i;
        }
    }
}

TEST(TranspositionTable, ClearEmptiesWhatWasLent) {
    TranspositionTable table;
    table.set_size(8);
    fill_lent(table, 93751, 1);
    table.clear();
    for (std::uint64_t i = 1; i <= 93751; ++i) {
        ASSERT_EQ(std::as_const(table).bucket(i).has_date(0), Bucket::slots) << i;
    }
}

/// Memory of this process that is really there, in MiB.
long resident_megabytes() {
    std::ifstream statistics("/proc/self/statm");
    long size = 0;
    long resident = 0;
    statistics >> size >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024) / 1024;
}

TEST(TranspositionTable, ClearTouchesOnlyWhatWasWritten) {
    TranspositionTable table;
    table.set_size(1024);
    for (int round = 0; round < 3; ++round) {
        for (std::uint64_t key = 1; key < 500; ++key) {
            table.write(record_of(key * 31337));
        }
        long const before = resident_megabytes();
        table.clear();
        EXPECT_EQ(table.find(31337), nullptr);
        EXPECT_LT(resident_megabytes(), before + 100);
    }
}

TEST(TranspositionTable, ARecordIsNeverLeftBehindByAClearOnAnotherThread) {
    TranspositionTable table;
    table.set_size(6);
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (std::uint64_t key = 1; !done; key = key * 5 % 65536 + 1) {
            table.write(record_of(key));
        }
    });
    for (int left = 300; left > 0; --left) {
        table.clear();
    }
    done = true;
    writer.join();
    table.clear();
    for (std::uint64_t i = 1; i < table.buckets(); ++i) {
        ASSERT_EQ(std::as_const(table).bucket(i).has_date(0), Bucket::slots) << i;
    }
}

TEST(TranspositionTable, HashfullIsAThousandWhenTheSampleIsFull) {
    TranspositionTable table;
    for (std::uint64_t index = 0; index < 1000; ++index) {
        for (std::uint64_t i = 1; i <= 4; ++i) {
            table.bucket(index).write(record_of((i << 32) + index, 9));
        }
    }
    EXPECT_EQ(table.hashfull(9), 1000);
    EXPECT_EQ(table.hashfull(8), 0);
}

TEST(TranspositionTable, HashfullSamplesTheFirstThousandBuckets) {
    TranspositionTable table;
    for (std::uint64_t key = 1; key <= 7; ++key) {
        table.write(record_of(key, 9));
    }
    EXPECT_EQ(table.hashfull(9), 1);
    table.write(record_of(999, 9));
    EXPECT_EQ(table.hashfull(9), 2);
    for (std::uint64_t key = 1000; key <= 1100; ++key) {
        table.write(record_of(key, 9));
    }
    EXPECT_EQ(table.hashfull(9), 2);
    // Buckets below the threshold belong to the sample all the same.
    table.set_threshold_buckets(93750);
    EXPECT_EQ(table.hashfull(9), 2);
}

TEST(TranspositionTable, HashfullMayBeTakenWhileTheSearchWrites) {
    TranspositionTable table;
    std::thread searcher([&table] {
        for (std::uint64_t key = 1; key < 20000; ++key) {
            table.write(record_of(key % 1000, 9));
        }
    });
    int highest = 0;
    for (int i = 0; i < 20; ++i) {
        highest = std::max(highest, table.hashfull(9));
    }
    searcher.join();
    EXPECT_LE(highest, 250);
    EXPECT_EQ(table.hashfull(9), 999 / 4);
}

TEST(TranspositionTable, LentMemoryIsNotClearedByAnotherThread) {
    TranspositionTable table;
    table.set_size(6);
    std::atomic<bool> done{false};
    std::thread clearer([&] {
        for (int left = 30; left > 0; --left) {
            table.clear();
            // A mutex is not fair: the pause lets the other thread in.
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        done = true;
    });
    std::size_t const bytes = 1000 * sizeof(Bucket);
    bool kept = true;
    for (unsigned char round = 1; !done; ++round) {
        table.set_threshold_buckets(1000);
        unsigned char* const lent = table.get_uchar_adress();
        std::fill_n(lent, bytes, round);
        kept = kept && std::all_of(lent, lent + bytes, [&](auto byte) { return byte == round; });
        table.set_threshold_buckets(0);
        table.write(record_of(round));
    }
    clearer.join();
    EXPECT_TRUE(kept);
}

// The allocators of the sanitizers end the process where the plain one reports a failure.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) && !defined(__has_feature)
#define ORVELIN_PLAIN_ALLOCATOR 1
#elif defined(__has_feature)
#if !__has_feature(address_sanitizer) && !__has_feature(thread_sanitizer)
#define ORVELIN_PLAIN_ALLOCATOR 1
#endif
#endif

#ifdef ORVELIN_PLAIN_ALLOCATOR
TEST(TranspositionTable, TooLargeASizeFailsAndLeavesAnEmptyTable) {
    TranspositionTable table;
    EXPECT_THROW(table.set_size(std::numeric_limits<int>::max()), std::bad_alloc);
    EXPECT_EQ(table.buckets(), 0U);
    table.write(record_of(77));
    EXPECT_EQ(table.find(77), nullptr);
    EXPECT_EQ(table.hashfull(0), 0);
    table.clear();
    table.set_size(6);
    table.write(record_of(77));
    EXPECT_NE(table.find(77), nullptr);
}
#endif

}  // namespace
}  // namespace orvelin
