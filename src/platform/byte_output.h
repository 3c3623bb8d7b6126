#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace orvelin {

/// A file descriptor to write bytes to, as they are.
class ByteOutput {
 public:
    /// The descriptor stays open.
    explicit ByteOutput(int descriptor) : descriptor_(descriptor) {}

    /// Writes some of the bytes, waiting until one at least is taken, and returns their number;
    /// nothing when none will ever be taken.
    std::optional<std::size_t> write_some(std::string_view bytes) const;

    int descriptor() const { return descriptor_; }

 private:
    int descriptor_;
};

}  // namespace orvelin
