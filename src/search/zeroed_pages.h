#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace orvelin {

/// Memory for a large table that is read and written at random.
///
/// The system gives it zeroed, page by page when it is first touched, so that an unused table
/// costs nothing. Up to 256 MiB huge pages are asked for: they spare a search a fault for every
/// 4 KiB and most misses of address translation. The system zeroes such a page in one go, which in
/// larger tables would hold the first seconds of a search up. The start is aligned to such a page.
class ZeroedPages {
 public:
    /// Size and alignment of the pages that are asked for.
    static constexpr std::size_t page = std::size_t{1} << 21;
    /// Most bytes for which they are asked for.
    static constexpr std::size_t most_huge = std::size_t{1} << 28;

    /// No memory.
    ZeroedPages() = default;
    /// So many bytes. Throws std::bad_array_new_length for a number that leaves no room for the
    /// alignment, and std::bad_alloc when there is no memory.
    explicit ZeroedPages(std::size_t bytes);

    void* data() const { return start_; }

 private:
    struct Release {
        void operator()(void* memory) const { std::free(memory); }
    };

    std::unique_ptr<void, Release> memory_;
    void* start_ = nullptr;
};

}  // namespace orvelin
