#include "platform/path.h"

namespace orvelin {

std::filesystem::path path_of(std::string const& name) {
    return name;
}

std::string name_of(std::filesystem::path const& path) {
    return path.string();
}

}  // namespace orvelin
