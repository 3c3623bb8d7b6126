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
    memory_ = ZeroedPages(size * sizeof(Bucket));
    buckets_ = static_cast<Bucket*>(memory_.data());
    size_ = size;
    touched_.store(false, std::memory_order_relaxed);
}

void TranspositionTable::set_threshold(int bytes) {
    static_assert(sizeof(Bucket) == 1U << 6);
    set_threshold_buckets(static_cast<std::uint64_t>(static_cast<std::int64_t>(bytes >> 6)));
}

void TranspositionTable::set_threshold_buckets(std::uint64_t index) {
    std::lock_guard const lock(threshold_mutex_);
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
    if (!touched_.load(std::memory_order_relaxed) || threshold_ >= size_) {
        return;
    }
    for (std::uint64_t i = threshold_ + 1; i < size_; ++i) {
        buckets_[i].clear();
    }
}

unsigned char* TranspositionTable::get_uchar_adress() {
    touched_.store(true, std::memory_order_relaxed);
    return reinterpret_cast<unsigned char*>(buckets_);
}

}  // namespace orvelin
