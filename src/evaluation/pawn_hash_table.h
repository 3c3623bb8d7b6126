#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "evaluation/pht_record.h"

namespace orvelin {

/// Keeps the analysis of pawn structures by pawn key.
///
/// Owns 16384 records, allocated once; the size has nothing to do with the hash option. One slot
/// for each index, the low 14 bits of the key, and a write always replaces the slot. A slot never
/// written has key 0, so the key of a board without pawns finds it as a match. Used by the one
/// thread that owns it; what was written is valid for ever, so a new game keeps it.
class PawnHashTable {
 public:
    /// Number of records.
    static constexpr std::uint32_t slots = 16384;

    /// Allocates the records, all of them empty.
    PawnHashTable();

    /// Empties every record. The counters and the current record stay.
    void clear();

    /// The record of `key`, or none; counted as read() is. It stays where it is until a write to
    /// the same slot.
    PHTrecord* find(std::uint64_t key);
    /// Asks the processor to fetch the slot of `key`; changes nothing and waits for nothing.
    void prefetch(std::uint64_t key) const {
        char const* const first = reinterpret_cast<char const*>(&table_[key & (size_ - 1)]);
        for (std::size_t i = 0; i < sizeof(PHTrecord); i += cache_line) {
            __builtin_prefetch(first + i);
        }
    }
    /// The slot of `key`, to be filled with its record.
    PHTrecord& slot(std::uint64_t key) { return table_[key & (size_ - 1)]; }

    /// Looks `key` up: on a match the record becomes the current one and the result is true. A miss
    /// is counted as first or conflicting read and leaves the current record alone.
    bool read(std::uint64_t key);

    /// Stores the current record in the slot of its key.
    void write();

    /// The record of the last successful read or the last set_current().
    PHTrecord const& get_current() const { return current_; }
    /// Makes `record` the current one, for write().
    void set_current(PHTrecord const& record) { current_ = record; }

    /// One line of text: usage in percent and the read counters.
    std::string stats() const;

 private:
    static constexpr std::size_t cache_line = 64;

    std::uint64_t first_ = 0;        ///< reads that met an empty slot
    std::uint64_t conflicting_ = 0;  ///< reads that met another key
    std::uint64_t total_ = 0;        ///< all reads
    std::uint32_t size_ = slots;
    PHTrecord current_;
    std::unique_ptr<PHTrecord[]> table_;
};

inline PHTrecord* PawnHashTable::find(std::uint64_t key) {
    ++total_;
    PHTrecord& record = slot(key);
    if (record.key == key) {
        return &record;
    }
    if (record.key == 0) {
        ++first_;
    } else {
        ++conflicting_;
    }
    return nullptr;
}

}  // namespace orvelin
