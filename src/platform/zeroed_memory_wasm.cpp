#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "platform/zeroed_memory.h"

namespace orvelin {

// Memory that was never given out is zero, and what the library has been given it never gives back:
// all beyond the end so far is new. std::calloc writes to all of it nevertheless, which makes the
// browser find real memory for tables of which little may ever be used. That holds for the
// allocator that is linked by default, and for one thread, which is all that these modules have.
void* zeroed_memory(std::size_t bytes) {
    auto const used = reinterpret_cast<std::uintptr_t>(sbrk(0));
    void* const memory = std::malloc(bytes);
    auto const start = reinterpret_cast<std::uintptr_t>(memory);
    if (memory != nullptr && start < used) {
        std::memset(memory, 0, std::min(bytes, used - start));
    }
    return memory;
}

}  // namespace orvelin
