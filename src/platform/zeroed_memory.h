#pragma once

#include <cstddef>

namespace orvelin {

/// So many bytes, all zero, or a null pointer when there is no memory; std::free gives them back.
/// They are not touched where the system has them zeroed.
void* zeroed_memory(std::size_t bytes);

}  // namespace orvelin
