#pragma once

#include <filesystem>
#include <string>

namespace orvelin {

/// The path of a file from its name in text: of Linux any bytes, elsewhere UTF-8.
std::filesystem::path path_of(std::string const& name);
/// The name of a path in such a text.
std::string name_of(std::filesystem::path const& path);

}  // namespace orvelin
