#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace orvelin::fuzz {

/// A file that lives in memory and can be opened by name as long as the object lives.
class MemoryFile {
 public:
    /// Holds the parts, one behind the other.
    explicit MemoryFile(std::string_view first, std::string_view second = {})
        : descriptor_(memfd_create("input", MFD_CLOEXEC)) {
        if (descriptor_ < 0) {
            throw std::runtime_error("no file in memory");
        }
        append(first);
        append(second);
    }
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(MemoryFile const&) = delete;
    MemoryFile& operator=(MemoryFile const&) = delete;

    std::string name() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
    void append(std::string_view bytes) {
        while (!bytes.empty()) {
            ssize_t const written = write(descriptor_, bytes.data(), bytes.size());
            if (written <= 0) {
                throw std::runtime_error("no room for a file in memory");
            }
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    int descriptor_;
};

}  // namespace orvelin::fuzz
