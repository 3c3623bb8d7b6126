#include "search/zeroed_pages.h"

#include <limits>
#include <new>

#include "platform/huge_pages.h"
#include "platform/zeroed_memory.h"

namespace orvelin {

ZeroedPages::ZeroedPages(std::size_t bytes) {
    if (bytes > std::numeric_limits<std::size_t>::max() - page) {
        throw std::bad_array_new_length();
    }
    std::size_t space = bytes + page;
    memory_.reset(zeroed_memory(space));
    if (memory_ == nullptr) {
        throw std::bad_alloc();
    }
    start_ = memory_.get();
    std::align(page, bytes, start_, space);
    if (bytes <= most_huge) {
        ask_for_huge_pages(start_, bytes);
    }
}

}  // namespace orvelin
