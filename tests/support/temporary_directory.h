#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace orvelin::test {

/// A fresh directory, removed with its contents at the end of the object's life.
class TemporaryDirectory {
 public:
    TemporaryDirectory() {
        std::string name =
            (std::filesystem::temp_directory_path() / "orvelin_test_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no directory " + name);
        }
        path_ = name;
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDirectory(TemporaryDirectory const&) = delete;
    TemporaryDirectory& operator=(TemporaryDirectory const&) = delete;

    std::filesystem::path const& path() const { return path_; }
    /// Path of a file in the directory.
    std::string file(std::string const& name) const { return (path_ / name).string(); }

 private:
    std::filesystem::path path_;
};

}  // namespace orvelin::test
