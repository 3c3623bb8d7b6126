#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

#include "search/bucket.h"
#include "search/tt_record.h"
#include "search/zeroed_pages.h"

namespace orvelin {

/// What the search remembers per position: best move, score with its bound, depth, date.
///
/// Owns one array of buckets, a power of two of them, indexed by the low bits of the key. A
/// bucket is in use only when its index is above the threshold: the low end of the array is
/// lent out as plain memory while an endgame table is built there, and bucket 0 is never
/// used (oddity 76). The analysis thread alone reads and stores records during a search; the main
/// thread may take hashfull() meanwhile, a snapshot, and clear(). The analysis thread may change
/// the threshold, which waits for a clear() under way, so that lent memory is never cleared. Size
/// and switch are changed between searches only.
///
/// Buckets are marked as written in groups of the size of a memory page, so that clear() costs
/// what was written since the last one, and little of the size of the table. Every bucket above the
/// threshold that is not empty lies in a marked group.
class TranspositionTable {
 public:
    /// Buckets of a new table: 128 MiB.
    static constexpr std::uint64_t default_buckets = std::uint64_t{1} << 21;
    /// Buckets that are marked as written together, 4 KiB; divides every size.
    static constexpr std::uint64_t buckets_per_group = 64;

    TranspositionTable();
    TranspositionTable(TranspositionTable const&) = delete;
    TranspositionTable& operator=(TranspositionTable const&) = delete;
    ~TranspositionTable() = default;

    /// Size in MiB.
    int get_size() const;
    /// Makes the table as large as fits into so many MiB (at least 6), in a power of two of
    /// buckets. A new size empties the table; the same size keeps all.
    /// Throws std::bad_array_new_length for a size that cannot be told in bytes, which no `int`
    /// of MiB reaches, and std::bad_alloc when there is no memory; the table is then empty and
    /// stores nothing.
    void set_size(int megabytes);
    /// Number of buckets.
    std::uint64_t buckets() const { return size_; }

    /// Takes the first `bytes` of the array out of use. A negative number leaves no bucket.
    void set_threshold(int bytes);
    /// The threshold in bytes.
    std::uint64_t get_threshold() const { return threshold_ * sizeof(Bucket); }
    /// The threshold itself: the index of the last bucket that is out of use.
    std::uint64_t threshold_buckets() const { return threshold_; }
    void set_threshold_buckets(std::uint64_t index);

    /// Per mille of the records that have this date, from the first 1000 buckets. The
    /// sample counts bucket 0 and those below the threshold in, though they are not in use
    /// (oddity 30).
    int hashfull(unsigned char date) const;

    /// Empties the buckets above the threshold; those at and below it keep their bytes. Costs
    /// what was written since the last clear, and a look at one byte for each 4 KiB of the table.
    void clear();

    bool enabled() const { return enabled_; }
    void set_enabled(bool enabled) { enabled_ = enabled; }

    /// The record of this key in its place, nullptr when there is none or the table is
    /// disabled. Valid until the next write.
    TTrecord const* find(std::uint64_t key) const {
        std::uint64_t const index = key & (size_ - 1);
        return in_use(index) ? buckets_[index].find(key) : nullptr;
    }

    /// Asks the processor to fetch the bucket of this key; changes nothing and waits for nothing.
    void prefetch(std::uint64_t key) const {
        std::uint64_t const index = key & (size_ - 1);
        if (index < size_) {
            __builtin_prefetch(buckets_ + index);
        }
    }

    /// Fills in the value for the key that the record comes with, as Bucket::read.
    bool read(TTrecord& record) const {
        std::uint64_t const index = record.get_key() & (size_ - 1);
        return in_use(index) && buckets_[index].read(record);
    }

    /// Stores the record, as Bucket::write; nothing for a bucket that is not in use.
    void write(TTrecord const& record) {
        std::uint64_t const index = record.get_key() & (size_ - 1);
        if (in_use(index)) {
            buckets_[index].write(record);
            // Behind the record: a clear() on the other thread between the two then leaves a mark
            // too many, and never a record without one.
            mark_written(index);
        }
    }

    /// The bucket of that index, below buckets(); not checked. Whoever writes to it has done so
    /// before the next clear().
    Bucket& bucket(std::uint64_t index) {
        mark_written(index);
        return buckets_[index];
    }
    Bucket const& bucket(std::uint64_t index) const { return buckets_[index]; }

    /// Start of the array as plain memory, for the tables that are built in its low end. Only the
    /// bytes of buckets at and below the threshold may be written.
    unsigned char* get_uchar_adress() { return reinterpret_cast<unsigned char*>(buckets_); }

 private:
    void allocate(std::uint64_t size);
    void mark_written(std::uint64_t index) {
        written_[index / buckets_per_group].store(1, std::memory_order_release);
    }

    bool in_use(std::uint64_t index) const {
        // The last test is for a table whose allocation failed: its size is 0.
        return enabled_ && index > threshold_ && index < size_;
    }

    Bucket* buckets_ = nullptr;
    std::uint64_t size_ = 0;
    std::uint64_t threshold_ = 0;
    std::mutex threshold_mutex_;
    bool enabled_ = true;
    /// By group, 1 when a bucket of it can have been written since it was last emptied. Bytes, so
    /// that marking one reads nothing and cannot lose the mark of a neighbour.
    std::unique_ptr<std::atomic<unsigned char>[]> written_;
    ZeroedPages memory_;
};

}  // namespace orvelin
