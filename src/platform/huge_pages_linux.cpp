#include <sys/mman.h>

#include "platform/huge_pages.h"

namespace orvelin {

void ask_for_huge_pages(void* start, std::size_t bytes) {
    madvise(start, bytes, MADV_HUGEPAGE);
}

}  // namespace orvelin
