#include "platform/huge_pages.h"

namespace orvelin {

// The memory is one piece of the browser's.
void ask_for_huge_pages(void*, std::size_t) {}

}  // namespace orvelin
