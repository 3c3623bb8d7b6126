#include <algorithm>
#include <io.h>

#include "platform/byte_output.h"

namespace orvelin {

namespace {

/// The library writes no more than an int tells at once, and consoles take less.
constexpr std::size_t most = 16384;

}  // namespace

std::optional<std::size_t> ByteOutput::write_some(std::string_view bytes) const {
    int const written =
        _write(descriptor_, bytes.data(), static_cast<unsigned int>(std::min(bytes.size(), most)));
    if (written < 0 || (written == 0 && !bytes.empty())) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(written);
}

}  // namespace orvelin
