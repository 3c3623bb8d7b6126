#include "search/transposition_table.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <limits>
#include <new>

namespace orvelin {

namespace {

constexpr std::uint64_t bytes_per_megabyte = std::uint64_t{1} << 20;
constexpr int min_megabytes = 6;

std::uint64_t buckets_of(int megabytes) {
    auto const wanted = static_cast<std::uint64_t>(std::max(megabytes, min_megabytes));
    return std::bit_floor(wanted * bytes_per_megabyte / sizeof(Bucket));
}

}  // namespace

TranspositionTable::TranspositionTable() {
    allocate(default_buckets);
}

int TranspositionTable::get_size() const {
    return static_cast<int>(size_ * sizeof(Bucket) / bytes_per_megabyte);
}

void TranspositionTable::set_size(int megabytes) {
    std::uint64_t const size = buckets_of(megabytes);
    if (size != size_) {
        allocate(size);
    }
}

/// The old array goes first, so that both need never fit into memory together.
void TranspositionTable::allocate(std::uint64_t size) {
    size_ = 0;
    buckets_ = nullptr;
    memory_ = ZeroedPages();
    if (size > std::numeric_limits<std::size_t>::max() / sizeof(Bucket)) {
        throw std::bad_array_new_length();
    }
    written_ = std::make_unique<std::atomic<unsigned char>[]>(size / buckets_per_group);
    memory_ = ZeroedPages(size * sizeof(Bucket));
    buckets_ = static_cast<Bucket*>(memory_.data());
    size_ = size;
}

void TranspositionTable::set_threshold(int bytes) {
    static_assert(sizeof(Bucket) == 1U << 6);
    set_threshold_buckets(static_cast<std::uint64_t>(static_cast<std::int64_t>(bytes >> 6)));
}

void TranspositionTable::set_threshold_buckets(std::uint64_t index) {
    std::lock_guard const lock(threshold_mutex_);
    // What comes back into use may have been written as plain memory.
    if (index < threshold_ && size_ > 0) {
        std::uint64_t const last = std::min(threshold_, size_ - 1) / buckets_per_group;
        for (std::uint64_t group = index / buckets_per_group; group <= last; ++group) {
            written_[group].store(1, std::memory_order_release);
        }
    }
    threshold_ = index;
}

int TranspositionTable::hashfull(unsigned char date) const {
    std::uint64_t const sample = std::min<std::uint64_t>(size_, 1000);
    int count = 0;
    for (std::uint64_t i = 0; i < sample; ++i) {
        count += buckets_[i].has_date(date);
    }
    return count >> 2;
}

void TranspositionTable::clear() {
    std::lock_guard const lock(threshold_mutex_);
    if (threshold_ >= size_) {
        return;
    }
    std::uint64_t const first = threshold_ + 1;
    for (std::uint64_t group = first / buckets_per_group; group < size_ / buckets_per_group;
         ++group) {
        std::atomic<unsigned char>& mark = written_[group];
        if (mark.load(std::memory_order_relaxed) == 0) {
            continue;
        }
        std::uint64_t const begin = group * buckets_per_group;
        std::uint64_t const end = begin + buckets_per_group;
        // The mark goes before the buckets are emptied, so that one set meanwhile stays. A group
        // that the threshold divides keeps its mark for the part that is not emptied.
        if (begin >= first) {
            mark.exchange(0, std::memory_order_acq_rel);
        }
        for (std::uint64_t i = std::max(begin, first); i < end; ++i) {
            buckets_[i].clear();
        }
    }
}

}  // namespace orvelin
