#include "platform/path.h"

namespace orvelin {

std::filesystem::path path_of(std::string const& name) {
    return name;
}

}  // namespace orvelin
