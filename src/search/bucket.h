#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "search/tt_record.h"

namespace orvelin {

/// Four records that share an index of the transposition table, one cache line.
///
/// Holds its records and nothing else. A position key stands in at most one of them, the
/// zero key of empty records aside.
/// The same key is replaced however deep it was (oddity 77); four exact entries of this search give
/// up the first (oddity 78).
class alignas(64) Bucket {
 public:
    static constexpr int slots = 4;

    /// Empties all records.
    void clear();

    /// How many of the records have this date.
    int has_date(unsigned char date) const;

    /// The record of this key, nullptr when there is none.
    TTrecord const* find(std::uint64_t key) const {
        for (TTrecord const& record : records_) {
            if (record.get_key() == key) {
                return &record;
            }
        }
        return nullptr;
    }

    /// Fills in the value for the key that the record comes with; a stored value without a
    /// move leaves the record its own move. False when no slot has the key.
    bool read(TTrecord& record) const;

    /// Stores the record: over the one of the same key, else over one of another search,
    /// else over the shallowest that is not exact.
    void write(TTrecord const& record) { slot_for(record) = record; }

    /// Debug text, one line a record.
    std::string dump() const;

 private:
    TTrecord& slot_for(TTrecord const& record);
    TTrecord& shallowest_slot();

    std::array<TTrecord, slots> records_{};
};

static_assert(sizeof(Bucket) == 64);

inline void Bucket::clear() {
    for (TTrecord& record : records_) {
        record.clear();
    }
}

inline int Bucket::has_date(unsigned char date) const {
    int count = 0;
    for (TTrecord const& record : records_) {
        count += record.get_date() == date ? 1 : 0;
    }
    return count;
}

inline bool Bucket::read(TTrecord& record) const {
    TTrecord const* const stored = find(record.get_key());
    if (stored == nullptr) {
        return false;
    }
    record = *stored;
    return true;
}

inline TTrecord& Bucket::slot_for(TTrecord const& record) {
    for (TTrecord& slot : records_) {
        if (slot.get_key() == record.get_key()) {
            return slot;
        }
    }
    for (TTrecord& slot : records_) {
        if (slot.get_date() != record.get_date()) {
            return slot;
        }
    }
    return shallowest_slot();
}

inline TTrecord& Bucket::shallowest_slot() {
    constexpr int protected_draft = 102;
    TTrecord* target = &records_[0];
    int limit = target->get_draft();
    if (target->is_exact_value() || limit >= protected_draft) {
        limit = protected_draft;
    }
    for (std::size_t i = 1; i < records_.size(); ++i) {
        TTrecord& slot = records_[i];
        if (slot.get_draft() < limit && !slot.is_exact_value()) {
            target = &slot;
            limit = slot.get_draft();
        }
    }
    return *target;
}

}  // namespace orvelin
