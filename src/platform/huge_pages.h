#pragma once

#include <cstddef>

namespace orvelin {

/// Asks the system to back this memory by huge pages, for which the start must be aligned. A mere
/// wish: where it is not granted, or not known, all goes on a little slower.
void ask_for_huge_pages(void* start, std::size_t bytes);

}  // namespace orvelin
