#pragma once

#include <filesystem>

namespace orvelin {

/// Makes an empty file that was not there, with the permissions of another, if there is one, else
/// those of any new file of this user. False when there is one of the name already.
/// @throws std::system_error when it cannot be made.
bool create_new_file(std::filesystem::path const& name, std::filesystem::path const& like);

/// @throws std::system_error with the reason when the user may not write the file.
void check_writable(std::filesystem::path const& name);

}  // namespace orvelin
