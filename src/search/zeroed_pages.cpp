#include "search/zeroed_pages.h"

#include <limits>
#include <new>
#include <sys/mman.h>

namespace orvelin {

ZeroedPages::ZeroedPages(std::size_t bytes) {
    if (bytes > std::numeric_limits<std::size_t>::max() - page) {
        throw std::bad_array_new_length();
    }
    std::size_t space = bytes + page;
    memory_.reset(std::calloc(space, 1));
    if (memory_ == nullptr) {
        throw std::bad_alloc();
    }
    start_ = memory_.get();
    std::align(page, bytes, start_, space);
    // A mere wish: without such pages all goes on, a little slower.
    if (bytes <= most_huge) {
        madvise(start_, bytes, MADV_HUGEPAGE);
    }
}

}  // namespace orvelin
