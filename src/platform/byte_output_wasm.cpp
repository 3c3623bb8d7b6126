#include "platform/byte_output.h"
#include "platform/wasm_imports.h"

namespace orvelin {

std::optional<std::size_t> ByteOutput::write_some(std::string_view bytes) const {
    orvelin_write(bytes.data(), static_cast<int>(bytes.size()));
    return bytes.size();
}

}  // namespace orvelin
