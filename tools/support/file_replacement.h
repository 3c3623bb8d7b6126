#pragma once

#include <filesystem>
#include <string_view>

namespace orvelin::tools {

/// A file that is written whole or not at all.
///
/// The new content goes into a temporary file in the same folder, which commit() renames onto the
/// target. Without commit() the temporary file is removed and the target stays as it was. A file
/// that is replaced hands its permissions on; a symbolic link stays and its file is replaced.
class FileReplacement {
 public:
    /// Creates the empty temporary file.
    /// @throws std::runtime_error when it cannot, when the target is something else than a file or
    /// when it must not be written.
    explicit FileReplacement(std::filesystem::path const& target);
    ~FileReplacement();
    FileReplacement(FileReplacement const&) = delete;
    FileReplacement& operator=(FileReplacement const&) = delete;

    /// The temporary file, to be written and closed before commit().
    std::filesystem::path const& path() const { return temporary_; }
    /// Puts the temporary file in the target's place.
    /// @throws std::runtime_error when it cannot.
    void commit();

 private:
    void create();

    std::filesystem::path target_;
    std::filesystem::path temporary_;
};

/// Replaces a file by this content.
/// @throws std::runtime_error when it cannot; the file is then as it was.
void write_file(std::filesystem::path const& target, std::string_view content);

}  // namespace orvelin::tools
