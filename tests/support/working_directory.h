#pragma once

#include <filesystem>
#include <string>
#include <system_error>

#include "support/temporary_directory.h"

namespace orvelin::test {

/// Runs this process in a fresh directory for the object's life.
class WorkingDirectory {
 public:
    WorkingDirectory() { std::filesystem::current_path(directory_.path()); }
    ~WorkingDirectory() {
        std::error_code ignored;
        std::filesystem::current_path(old_, ignored);
    }
    WorkingDirectory(WorkingDirectory const&) = delete;
    WorkingDirectory& operator=(WorkingDirectory const&) = delete;

    /// Path of a file in the directory.
    std::string file(std::string const& name) const { return directory_.file(name); }

 private:
    std::filesystem::path const old_ = std::filesystem::current_path();
    TemporaryDirectory directory_;
};

}  // namespace orvelin::test
