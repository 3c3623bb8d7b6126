#include "platform/path.h"

namespace orvelin {

// From plain text it would be made by the code page of the user.
std::filesystem::path path_of(std::string const& name) {
    return std::u8string(name.begin(), name.end());
}

}  // namespace orvelin
