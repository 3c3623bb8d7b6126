#include "platform/path.h"

namespace orvelin {

// From plain text it would be made by the code page of the user.
std::filesystem::path path_of(std::string const& name) {
    return std::u8string(name.begin(), name.end());
}

std::string name_of(std::filesystem::path const& path) {
    std::u8string const text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace orvelin
